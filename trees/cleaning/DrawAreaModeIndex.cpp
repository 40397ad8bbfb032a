#include "trees/cleaning/selected_mode.h"

namespace {

Node take_new_rectangles()
{
    return when(key::Draw_Area_Set_Ping.present(), key::Draw_Area_Set_Ping.copy_to(key::Draw_Area_Set),
                key::Draw_Area_Set_Ping.copy_to(key::Draw_Area_Set_Pong), key::Draw_Area_Set_Ping.erase(),
                key::reset_zone_cleaning.erase());
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
         .presets_after = row(key::have_trapped_type.erase()),

         .scheduled_start = play(9),
         .start_music = play(57),
         .leave_dock = SubtreeCondition{"AdvPreAutoOnCharger"},

         .closed_search_states = states({"search_charge"}),
         .mark_reloc = row(key::draw_area_reloc_flag.set("true")),
         .forget_input = row(key::reset_zone_cleaning.erase()),
         .no_restart_message = "no need restart  draw",
         .other_task =
             row(states({"completing", "charge", "part_cleaning", "cleaning", "lowpower", "area_cleaning",
                         "area_lowpower", "point_cleaning", "point_lowpower"}),
                 key::reset_zone_cleaning.present(),
                 Sequence(key::task_state.is("precleaning"), Inverter(key::task_type.is("ZoneClean")))),
         .give_up_old_task = clean_the_home_instead(),

         .companions = row(go_home_when_called("clean_draw")),
         .take_new_input = row(take_new_rectangles()),
         .first_turn = turn_once(),
         .wash_condition = wash_by_area(),
         .wash_account = account_washes_by_area(),
         .set_area = row(SetDrawAreaSegmentMap{}),
         .coverage = clean_drawn(),

         .on_success = end_selected_task(),
         .dirty_record = "zone_lowpower"});
}
