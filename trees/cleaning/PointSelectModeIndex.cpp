#include "trees/cleaning/selected_mode.h"

namespace {

Node take_new_point()
{
    return when(key::Select_Point_Set_Ping.present(),
                key::Select_Point_Set_Ping.copy_to(key::Select_Point_Set), key::Select_Point_Set_Ping.erase(),
                key::reset_point_cleaning.erase());
}

}  // namespace

// The floor around a point that the user tapped is cleaned.
TREE(PointSelectModeIndex)
{
    return cleaning_task(
        {.states = {"point_cleaning", "point_lowpower", "point_lowpower_pause"},
         .task_type = "PointClean",
         .mode_name = "SelectPointCleanMode",
         .continue_work = "clean_point_select",

         .take_input = row(PresetBlackboardForMaps{}, SetPointCleaningArea{}, SetDrawAreaSegmentMap{}),
         .mode_gate_early = row(NeedInitialAutoMode{}),
         .entry_message = "enter point clean,task state is",
         .presets_after = row(key::have_trapped_type.erase()),

         .scheduled_start = play(9),
         .start_music = play(76),
         .leave_dock = SubtreeCondition{"AdvPreAutoOnCharger"},

         .closed_search_states = states({"search_charge"}),
         .forget_input = row(key::reset_point_cleaning.erase()),
         .no_restart_message = "no need restart  point select",
         .other_task =
             row(states({"completing", "charge", "part_cleaning", "zone_cleaning", "zone_lowpower",
                         "area_cleaning", "area_lowpower", "cleaning", "lowpower"}),
                 key::reset_point_cleaning.present(),
                 Sequence(key::task_state.is("precleaning"), last_mode_was_not("SelectPointCleanMode"))),
         .give_up_old_task = clean_the_home_instead(),

         .companions = row(go_home_when_called("clean_point")),
         .take_new_input = row(take_new_point()),
         .first_turn = turn_once(),
         .wash_condition = wash_by_area(),
         .wash_account = account_washes_by_area(),
         .set_area = row(SetPointCleaningArea{}, SetDrawAreaSegmentMap{}),
         .coverage = clean_drawn(),

         .on_success = end_selected_task(),
         .dirty_record = "point_lowpower",
         .at_low_power = note_place_of_low_power()});
}
