#include "trees/cleaning/selected_mode.h"

namespace {

// A schedule that comes when the rooms are nearly done goes on with them.
Node scheduled_start()
{
    return SequenceStar(IfThenElseStar(Sequence(key::task_state.is("completing"),
                                                key::last_clean_mode.is("SelectAreaCleanMode")),
                                       SequenceStar(SaySomething{"Areaselect order in completing process"},
                                                    key::task_state.set("area_cleaning")),
                                       SaySomething{"Areaselect normal  order process"}),
                        play(9), key::start_clean_method_app.set(6));
}

Node take_new_rooms()
{
    return when(SequenceStar(key::is_ordering_task.holds("false"),
                             FallbackStar(key::Areas_Clean_Set_List_Ping.present(),
                                          SequenceStar(BoolMatch{"${SwitchCleanSet} == 1", "true"},
                                                       ForceFailure(SetSelectAreaCleanList{})))),
                key::Areas_Clean_Set_List_Ping.copy_to(key::Areas_Clean_Set_List),
                key::Areas_Clean_Set_List_Ping.copy_to(key::Areas_Clean_Set_List_Pong),
                key::Areas_Clean_Set_List_Ping.erase(), SetSelectAreaCleanList{});
}

Node clean_rooms()
{
    return SequenceStar(
        choose_map_of_rooms(), key::is_draw_area_cleaning.set("false"),
        whichever_way(
            SequenceStar(restart_after_error(), SubtreeCondition{"CleanSelectedAreas.xml"}),
            row(key::segment_map_info.set("segment_map"), erase(key::order_map, key::order_map_original))));
}

}  // namespace

// Rooms that the user picked are cleaned; there must be a stored map with rooms.
TREE(AreaSelectModeIndex)
{
    return IfThenElseStar(
        Sequence(IsReuseInfoExist{}, key::segment_map.present()),
        cleaning_task(
            {.states = {"area_cleaning", "area_lowpower", "area_lowpower_pause"},
             .task_type = "AreaClean",
             .mode_name = "SelectAreaCleanMode",
             .continue_work = "clean_area",

             .take_input = row(PresetBlackboardForMaps{}, SetSelectAreaCleanList{}),
             .mode_gate_early = row(NeedInitialAutoMode{}),
             .entry_message = "enter area clean,task state is",
             .presets_after = row(key::have_trapped_type.erase()),

             .scheduled_start = scheduled_start(),
             .start_music = play(56),
             .leave_dock = SubtreeCondition{"AdvPreAutoOnCharger"},

             .closed_search_states = states({"search_charge"}),
             .mark_reloc = row(key::select_area_reloc_flag.set("true")),
             .no_restart_message = "no need restart  area",
             .other_task =
                 row(states({"completing", "charge", "part_cleaning", "zone_cleaning", "zone_lowpower",
                             "cleaning", "lowpower", "point_cleaning", "point_lowpower"}),
                     Sequence(key::task_state.is("precleaning"), last_mode_was_not("SelectAreaCleanMode"))),
             .give_up_old_task = clean_the_home_instead(),

             .companions = row(go_home_when_called("clean_area")),
             .take_new_input = row(take_new_rooms()),
             .first_turn = turn_once(),
             .wash_condition = wash_by_area(),
             .wash_account = account_washes_by_area(),
             .coverage = clean_rooms(),

             .on_success = end_selected_task(),
             .dirty_record = "area_lowpower",
             .at_low_power = note_place_of_low_power()}),
        go_to_standby());
}
