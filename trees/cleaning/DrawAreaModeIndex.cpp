#include "trees/cleaning/selected_mode.h"

namespace {

Node take_new_rectangles()
{
    return when(present("Draw_Area_Set_Ping"), BlackboardCopy{"Draw_Area_Set_Ping", "Draw_Area_Set"},
                BlackboardCopy{"Draw_Area_Set_Ping", "Draw_Area_Set_Pong"}, erase("Draw_Area_Set_Ping"),
                erase("reset_zone_cleaning"));
}

}  // namespace

// Rectangles that the user drew are cleaned.
TREE(DrawAreaModeIndex)
{
    return cleaning_task(
        {.states = {"zone_cleaning", "zone_lowpower", "zone_lowpower_pause"},
         .task_type = "ZoneClean",
         .mode_name = "DrawAreaCleanMode",
         .continue_work = "clean_draw",

         .take_input = row(PresetBlackboardForMaps{}, SetDrawAreaSegmentMap{}),
         .mode_gate_early = row(NeedInitialAutoMode{}),
         .entry_message = "enter zone clean,task state is",
         .presets_after = row(erase("have_trapped_type")),

         .scheduled_start = play("9"),
         .start_music = play("57"),
         .leave_dock = SubtreeCondition{"AdvPreAutoOnCharger"},

         .closed_search_states = states({"search_charge"}),
         .mark_reloc = row(SetBlackboard{"draw_area_reloc_flag", "true"}),
         .forget_input = row(erase("reset_zone_cleaning")),
         .no_restart_message = "no need restart  draw",
         .other_task = row(
             states({"completing", "charge", "part_cleaning", "cleaning", "lowpower", "area_cleaning",
                     "area_lowpower", "point_cleaning", "point_lowpower"}),
             present("reset_zone_cleaning"),
             SequenceStar(key_is("task_state", "precleaning"), Inverter(key_is("task_type", "ZoneClean")))),
         .give_up_old_task = clean_the_home_instead(),

         .companions = row(go_home_when_called("clean_draw")),
         .take_new_input = row(take_new_rectangles()),
         .first_turn = turn_once(),
         .wash_condition = wash_by_area(),
         .wash_account = account_washes_by_area(),
         .coverage = clean_drawn(SetDrawAreaSegmentMap{}),

         .on_success = end_selected_task(),
         .dirty_record = "zone_lowpower"});
}
