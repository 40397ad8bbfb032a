#include "trees/cleaning/selected_mode.h"

namespace {

// A schedule that comes when the rooms are nearly done goes on with them.
Node scheduled_start()
{
    return SequenceStar(IfThenElseStar(SequenceStar(key_is("task_state", "completing"),
                                                    key_is("last_clean_mode", "SelectAreaCleanMode")),
                                       SequenceStar(SaySomething{"Areaselect order in completing process"},
                                                    SetBlackboard{"task_state", "area_cleaning"}),
                                       SaySomething{"Areaselect normal  order process"}),
                        play("9"), SetBlackboard{"start_clean_method_app", "6"});
}

Node take_new_rooms()
{
    return when(SequenceStar(BoolMatch{"${is_ordering_task}", "false"},
                             FallbackStar(present("Areas_Clean_Set_List_Ping"),
                                          SequenceStar(BoolMatch{"${SwitchCleanSet} == 1", "true"},
                                                       ForceFailure(SetSelectAreaCleanList{})))),
                BlackboardCopy{"Areas_Clean_Set_List_Ping", "Areas_Clean_Set_List"},
                BlackboardCopy{"Areas_Clean_Set_List_Ping", "Areas_Clean_Set_List_Pong"},
                erase("Areas_Clean_Set_List_Ping"), SetSelectAreaCleanList{});
}

Node clean_rooms()
{
    return SequenceStar(
        choose_map_of_rooms(), SetBlackboard{"is_draw_area_cleaning", "false"},
        whichever_way(SequenceStar(restart_after_error(), SubtreeCondition{"CleanSelectedAreas.xml"}),
                      row(SetBlackboard{"segment_map_info", "segment_map"}, erase("order_map"),
                          erase("order_map_original"))));
}

}  // namespace

// Rooms that the user picked are cleaned; there must be a stored map with rooms.
TREE(AreaSelectModeIndex)
{
    return IfThenElseStar(
        SequenceStar(IsReuseInfoExist{}, present("segment_map")),
        cleaning_task(
            {.states = {"area_cleaning", "area_lowpower", "area_lowpower_pause"},
             .task_type = "AreaClean",
             .mode_name = "SelectAreaCleanMode",
             .continue_work = "clean_area",

             .take_input = row(PresetBlackboardForMaps{}, SetSelectAreaCleanList{}),
             .mode_gate_early = row(NeedInitialAutoMode{}),
             .entry_message = "enter area clean,task state is",
             .presets_after = row(erase("have_trapped_type")),

             .scheduled_start = scheduled_start(),
             .start_music = play("56"),
             .leave_dock = SubtreeCondition{"AdvPreAutoOnCharger"},

             .closed_search_states = states({"search_charge"}),
             .mark_reloc = row(SetBlackboard{"select_area_reloc_flag", "true"}),
             .no_restart_message = "no need restart  area",
             .other_task = row(
                 states({"completing", "charge", "part_cleaning", "zone_cleaning", "zone_lowpower",
                         "cleaning", "lowpower", "point_cleaning", "point_lowpower"}),
                 SequenceStar(key_is("task_state", "precleaning"), last_mode_was_not("SelectAreaCleanMode"))),
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
