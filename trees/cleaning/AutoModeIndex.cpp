#include "trees/cleaning/cleaning_mode.h"
#include "trees/cleaning/preparations.h"

namespace {

// --- start --------------------------------------------------------------------------------------

Node scheduled_music()
{
    return IfThenElseStar(
        SequenceStar(switched_off(), DoesTuobuInstall{}),
        SequenceStar(SaySomething{"set breakpoint here."}, SetBlackboard{"breakpoint_wash", "true"},
                     IfThenElseStar(key_is_true("app_mop_mode"), play("130"), play("129"))),
        play("9"));
}

// A schedule closes the task that is open, unless that is a clean of the whole home.
Node scheduled_start()
{
    const auto begin = [] { return row(scheduled_music(), SetBlackboard{"start_clean_method_app", "7"}); };
    return IfThenElseStar(
        key_is_any("task_state", {"init", "precleaning", "completing", "complete"}), SequenceStar(begin()),
        SequenceStar(
            begin(),
            IfThenElseStar(key_is("task_state", "search_charge"), SubtreeCondition{"SearchChargeEnding"},
                           IfThenElseStar(key_is_any("task_state", {"cleaning", "lowpower"}), AlwaysSuccess{},
                                          SubtreeCondition{"AdvCleanComplete"}))));
}

Node start_music()
{
    return IfThenElseStar(switched_off(),
                          IfThenElseStar(key_is_true("app_mop_mode"), play("61"),
                                         IfThenElseStar(switched_off(), play("126"), play("105"))),
                          IfThenElseStar(DoesRobotUsingWaterBox{}, play("61"), play("7")));
}

Node note_mapping_run()
{
    return optionally(erase("mapping_no_reloc"), present("AutoMappingClean"),
                      SetBlackboard{"mapping_no_reloc", "true"},
                      SetBlackboard{"disable_reuse_reloc_once", "true"}, erase("AutoMappingClean"));
}

// --- restart or resume --------------------------------------------------------------------------

// The place was not found on the task's map: the task is closed and begun again, on a stored map where the
// robot found itself, else on a new one.
Node give_up_old_task()
{
    return SequenceStar(
        ForceSuccess(SubtreeCondition{"AdvCleanComplete"}),
        ForceFailure(IfThenElseStar(
            present("clean_relo_fail_reuse_relo_succ"),
            SequenceStar(erase("clean_relo_fail_reuse_relo_succ"), play("54"),
                         SubtreeCondition{"ReuseRestartCleaning"}, SetBlackboard{"no_restart_flag", "true"}),
            SequenceStar(queue("31"),
                         IfThenElseStar(switched_off(),
                                        SequenceStar(SaySomething{"reloc failed change mode to standby4..."},
                                                     Stop{}, set_flag("need_to_standby")),
                                        SequenceStar(SubtreeCondition{"RestartCleaning"},
                                                     SetBlackboard{"no_restart_flag", "true"}))))));
}

// --- the run ------------------------------------------------------------------------------------

Nodes turn_start_pose()
{
    return row(when(present("start_from_charger_yaw_deg"),
                    PlainPoseMmSetYaw{"start_from_charger_pose", "${start_from_charger_yaw_deg}"},
                    BlackboardCopy{"start_from_charger_pose", "only_charger_in_map"},
                    erase("start_from_charger_yaw_deg")));
}

// On a map without rooms the cloth is washed by the clock.
Node wash_by_the_clock()
{
    return SequenceStar(present("reuse_cleaning"), on_map_with_rooms("false"));
}

Node wash_condition()
{
    return SequenceStar(uses_mop(), present("wash_mop_mode"),
                        FallbackStar(BoolMatch{"${wash_mop_mode} > 0", "true"}, wash_by_the_clock()));
}

Node account_washes()
{
    const auto area = [](const char* reset) {
        return AlwaysSuccess{.area_reset = reset, .ticks = "999999999", .run_once = "0"};
    };
    return IfThenElseStar(
        SequenceStar(uses_mop(), present("wash_mop_mode")),
        Fallback(Sequence(BoolMatch{"${wash_mop_mode} > 0", "true"}, area("${wash_mop_mode}")),
                 Sequence(present("reuse_cleaning"), on_map_with_rooms("false"), area("5"))),
        Delay{999999999});
}

// Once chosen, room by room holds for the whole task.
Node goes_room_by_room()
{
    return FallbackStar(
        BoolMatch{"${is_ordering_task}", "true"}, present("automode_in_segment_map"),
        SequenceStar(on_map_with_rooms(), present("segments_layer"), set_flag("automode_in_segment_map")));
}

Node clean_rooms()
{
    return DoWhile(StackBlackboard{"enable_overall_follow_wall"},
                   SequenceStar(when(switched_off(), set_flag("enable_overall_follow_wall")),
                                IfThenElseStar(present("enable_overall_follow_wall"),
                                               SubtreeCondition{"CleanSelectedAreas", "true"},
                                               SubtreeCondition{"CleanSelectedAreas", "false"})));
}

Node room_by_room()
{
    return SequenceStar(
        SetAutomodeCleaningArea{}, choose_map_of_rooms(), SetBlackboard{"is_draw_area_cleaning", "false"},
        whichever_way(
            SequenceStar(restart_after_error(), clean_rooms()),
            row(IfThenElseStar(present("segment_map"), SetBlackboard{"segment_map_info", "segment_map"},
                               erase("segment_map_info")),
                erase("order_map"), erase("order_map_original"))));
}

// The preset of a new pass leaves these alone.
Node preset_second_pass()
{
    return DoWhile(StackBlackboard{"subregion_fixed"}, StackBlackboard{"subregion_offset_grid"},
                   StackBlackboard{"subregion_offset_x_fix"}, StackBlackboard{"subregion_offset_y_fix"},
                   StackBlackboard{"clean_time_for_app"}, StackBlackboard{"mop_dirty"}, PresetBlackboard{});
}

// A small home is cleaned twice.
Node second_pass()
{
    return SequenceStar(
        erase("small_area_clean_second_time"), SetBlackboard{"small_area_clean_second_time", "true"},
        when(wash_condition(),
             AlwaysSuccess{.area_reset = "${wash_mop_mode}", .ticks = "999999999", .run_once = "1"}),

        SetBlackboard{"reset_map_remain_submap", "true"}, ResetMap{}, erase("reset_map_remain_submap"),
        LaserReset{}, SetBlackboard{"origin_in_enclave", "false"}, erase("oe_map_snap"), preset_second_pass(),

        SetBlackboard{"gong_complete", "false"}, SetBlackboard{"gong_vertically", "true"},
        set_flag("second_time_cleaning"),
        IntAdd{"${follow_wall_frames_consumption}", "-6000", "follow_wall_frames_consumption"},
        SubtreeCondition{"RecursiveAutoMode_FollowGong.xml"});
}

Node whole_home()
{
    return SequenceStar(restart_after_error(), SubtreeCondition{"RecursiveAutoMode_FollowGong.xml"},
                        FallbackStar(present("second_time_cleaning"),
                                     IsAGreaterThanBInt{"${clean_time_for_app}", "600"}, second_pass()));
}

// --- the end ------------------------------------------------------------------------------------

Node done_music()
{
    return IfThenElseStar(switched_off(),
                          IfThenElseStar(key_is_true("app_mop_mode"), play("144"), play("143")), play("12"));
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
         .presets_before = row(erase("carpet_check_changed")),
         .presets_after = row(SetBlackboard{"reset_mop_line", "true"}, erase("have_trapped_type"),
                              erase("automode_in_segment_map"), SetBlackboard{"new_start", "true"}),

         .scheduled_start = scheduled_start(),
         .start_music = start_music(),
         .leave_dock = leave_dock_and_watch_level(),
         .mapping_run = row(note_mapping_run()),

         .closed_search_states = states({"search_charge", "map_cleaning"}),
         .mark_reloc = row(SetBlackboard{"auto_mode_reloc_flag", "true"}),
         .no_restart_message = "no need restart",
         .other_task =
             row(states({"completing", "charge", "part_cleaning", "zone_cleaning", "zone_lowpower",
                         "area_cleaning", "area_lowpower", "point_cleaning", "point_lowpower"}),
                 SequenceStar(key_is("task_state", "precleaning"), last_mode_was_not("AutoCleanMode"))),
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
