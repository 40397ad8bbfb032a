#include "trees/cleaning/cleaning_mode.h"
#include "trees/cleaning/preparations.h"

namespace {

// --- start --------------------------------------------------------------------------------------

Node scheduled_music()
{
    return IfThenElseStar(Sequence(switched_off(), DoesTuobuInstall{}),
                          SequenceStar(SaySomething{"set breakpoint here."}, key::breakpoint_wash.set("true"),
                                       IfThenElseStar(key::app_mop_mode.is_true(), play(130), play(129))),
                          play(9));
}

// A schedule closes the task that is open, unless that is a clean of the whole home.
Node scheduled_start()
{
    const auto begin = [] { return row(scheduled_music(), key::start_clean_method_app.set(7)); };
    return IfThenElseStar(
        key::task_state.is_any({"init", "precleaning", "completing", "complete"}), SequenceStar(begin()),
        SequenceStar(begin(),
                     choose({{key::task_state.is("search_charge"), SubtreeCondition{"SearchChargeEnding"}},
                             {key::task_state.is_any({"cleaning", "lowpower"}), AlwaysSuccess{}}},
                            SubtreeCondition{"AdvCleanComplete"})));
}

Node start_music()
{
    return choose(
        {{switched_off(),
          choose({{key::app_mop_mode.is_true(), play(61)}, {switched_off(), play(126)}}, play(105))},
         {DoesRobotUsingWaterBox{}, play(61)}},
        play(7));
}

Node note_mapping_run()
{
    return optionally(key::mapping_no_reloc.erase(), key::AutoMappingClean.present(),
                      key::mapping_no_reloc.set("true"), key::disable_reuse_reloc_once.set("true"),
                      key::AutoMappingClean.erase());
}

// --- restart or resume --------------------------------------------------------------------------

// The place was not found on the task's map: the task is closed and begun again, on a stored map where the
// robot found itself, else on a new one.
Node give_up_old_task()
{
    return SequenceStar(
        ForceSuccess(SubtreeCondition{"AdvCleanComplete"}),
        ForceFailure(IfThenElseStar(
            key::clean_relo_fail_reuse_relo_succ.present(),
            SequenceStar(key::clean_relo_fail_reuse_relo_succ.erase(), play(54),
                         SubtreeCondition{"ReuseRestartCleaning"}, key::no_restart_flag.set("true")),
            SequenceStar(queue(31),
                         IfThenElseStar(switched_off(),
                                        SequenceStar(SaySomething{"reloc failed change mode to standby4..."},
                                                     Stop{}, key::need_to_standby.flag()),
                                        SequenceStar(SubtreeCondition{"RestartCleaning"},
                                                     key::no_restart_flag.set("true")))))));
}

// --- the run ------------------------------------------------------------------------------------

Nodes turn_start_pose()
{
    return row(when(key::start_from_charger_yaw_deg.present(),
                    PlainPoseMmSetYaw{"start_from_charger_pose", "${start_from_charger_yaw_deg}"},
                    key::start_from_charger_pose.copy_to(key::only_charger_in_map),
                    key::start_from_charger_yaw_deg.erase()));
}

// On a map without rooms the cloth is washed by the clock.
Node wash_by_the_clock()
{
    return Sequence(key::reuse_cleaning.present(), on_map_with_rooms("false"));
}

Node wash_condition()
{
    return Sequence(uses_mop(), key::wash_mop_mode.present(),
                    FallbackStar(BoolMatch{"${wash_mop_mode} > 0", "true"}, wash_by_the_clock()));
}

Node account_washes()
{
    const auto area = [](const char* reset) {
        return AlwaysSuccess{.area_reset = reset, .ticks = "999999999", .run_once = "0"};
    };
    return IfThenElseStar(
        Sequence(uses_mop(), key::wash_mop_mode.present()),
        Fallback(Sequence(BoolMatch{"${wash_mop_mode} > 0", "true"}, area("${wash_mop_mode}")),
                 Sequence(key::reuse_cleaning.present(), on_map_with_rooms("false"), area("5"))),
        Delay{999999999});
}

// Once chosen, room by room holds for the whole task.
Node goes_room_by_room()
{
    return FallbackStar(key::is_ordering_task.holds("true"), key::automode_in_segment_map.present(),
                        SequenceStar(on_map_with_rooms(), key::segments_layer.present(),
                                     key::automode_in_segment_map.flag()));
}

Node clean_rooms()
{
    return DoWhile(key::enable_overall_follow_wall.kept(),
                   SequenceStar(when(switched_off(), key::enable_overall_follow_wall.flag()),
                                IfThenElseStar(key::enable_overall_follow_wall.present(),
                                               SubtreeCondition{"CleanSelectedAreas", "true"},
                                               SubtreeCondition{"CleanSelectedAreas", "false"})));
}

Node room_by_room()
{
    return SequenceStar(
        SetAutomodeCleaningArea{}, choose_map_of_rooms(), key::is_draw_area_cleaning.set("false"),
        whichever_way(SequenceStar(restart_after_error(), clean_rooms()),
                      row(IfThenElseStar(key::segment_map.present(), key::segment_map_info.set("segment_map"),
                                         key::segment_map_info.erase()),
                          erase(key::order_map, key::order_map_original))));
}

// The preset of a new pass leaves these alone.
Node preset_second_pass()
{
    return DoWhile(key::subregion_fixed.kept(), key::subregion_offset_grid.kept(),
                   key::subregion_offset_x_fix.kept(), key::subregion_offset_y_fix.kept(),
                   key::clean_time_for_app.kept(), key::mop_dirty.kept(), PresetBlackboard{});
}

// A small home is cleaned twice.
Node second_pass()
{
    return SequenceStar(
        key::small_area_clean_second_time.erase(), key::small_area_clean_second_time.set("true"),
        when(wash_condition(),
             AlwaysSuccess{.area_reset = "${wash_mop_mode}", .ticks = "999999999", .run_once = "1"}),

        key::reset_map_remain_submap.set("true"), ResetMap{}, key::reset_map_remain_submap.erase(),
        LaserReset{}, key::origin_in_enclave.set("false"), key::oe_map_snap.erase(), preset_second_pass(),

        key::gong_complete.set("false"), key::gong_vertically.set("true"), key::second_time_cleaning.flag(),
        key::follow_wall_frames_consumption.plus(-6000),
        SubtreeCondition{"RecursiveAutoMode_FollowGong.xml"});
}

Node whole_home()
{
    return SequenceStar(
        restart_after_error(), SubtreeCondition{"RecursiveAutoMode_FollowGong.xml"},
        FallbackStar(key::second_time_cleaning.present(), key::clean_time_for_app.above(600), second_pass()));
}

// --- the end ------------------------------------------------------------------------------------

Node done_music()
{
    return IfThenElseStar(switched_off(), IfThenElseStar(key::app_mop_mode.is_true(), play(144), play(143)),
                          play(12));
}

}  // namespace

// The whole home is cleaned. The task lives in the keys: each entry works out whether it begins, goes on
// after a pause or a charge, or takes over from another mode.
TREE(AutoModeIndex)
{
    return cleaning_task(
        {.states = {"cleaning", "lowpower", "lowpower_pause"},
         .task_type = "AutoClean",
         .mode_name = "AutoCleanMode",
         .continue_work = "clean_auto",

         .take_input = row(PresetBlackboardForMaps{}),
         .mode_gate_late = row(NeedInitialAutoMode{}),
         .entry_message = "enter auto clean,task state is",
         .presets_before = row(key::carpet_check_changed.erase()),
         .presets_after =
             row(key::reset_mop_line.set("true"), erase(key::have_trapped_type, key::automode_in_segment_map),
                 key::new_start.set("true")),

         .scheduled_start = scheduled_start(),
         .start_music = start_music(),
         .leave_dock = leave_dock_and_watch_level(),
         .mapping_run = row(note_mapping_run()),

         .closed_search_states = states({"search_charge", "map_cleaning"}),
         .mark_reloc = row(key::auto_mode_reloc_flag.set("true")),
         .no_restart_message = "no need restart",
         .other_task = row(states({"completing", "charge", "part_cleaning", "zone_cleaning", "zone_lowpower",
                                   "area_cleaning", "area_lowpower", "point_cleaning", "point_lowpower"}),
                           Sequence(key::task_state.is("precleaning"), last_mode_was_not("AutoCleanMode"))),
         .give_up_old_task = give_up_old_task(),

         .turn_start_pose = turn_start_pose(),
         .first_turn = turn_and_watch_level(),
         .wash_condition = wash_condition(),
         .wash_account = account_washes(),
         .coverage = IfThenElse(goes_room_by_room(), room_by_room(), whole_home()),

         .on_success = row(done_music(), go_home(), restore_clean_mode()),
         .before_trap_report = row(LaserReset{}),
         .dirty_record = "lowpower"});
}
