#include "trees/cleaning/cleaning_mode.h"

namespace {

Node show_status()
{
    return IfThenElseStar(switched_off(), SetBlackboard{"robot_status", "clean_mop"},
                          IfThenElseStar(switched_off(), SetBlackboard{"robot_status", "clean_sweep_mop"},
                                         SetBlackboard{"robot_status", "clean_part_sweep"}));
}

Node start_music()
{
    return IfThenElseStar(switched_off(), play("127"),
                          IfThenElseStar(switched_off(), play("128"), play("8")));
}

Node turn_first()
{
    return IfThenElseStar(
        present("skip_first_rotate"), erase("skip_first_rotate"),
        ForceSuccess(Sequence(SubtreeCondition{"EscapeCoat"}, ActionDecorator(SubtreeCondition{"Back2cm"}),
                              SetMapDrawMode{.draw_mode = "None"}, turn_half_round())));
}

// There is no way to take a spot up again after a charge.
Node clean_spot()
{
    return DoWhile(
        SetBlackboard{"part_clean_appmap_flag", "true"}, set_flag("gridmap_token_draw_map"),
        MoveCleanSysModeSet{}, SubtreeCondition{"auto_cleanmode_set.xml"},
        TemporarilyDisableSensor{.lock_status = "false", .sensor = "PolygonVirtualWall"},
        IfThenElse(
            RobotPowerGetLowerThan{"15"},
            SequenceStar(SetBlackboard{"task_state", "part_lowpower"}, play("48"), go_home(), Delay{5}),
            Sequence(ConditionTimerSecs{.secs_out_key = "clean_time_for_app", .start_from = "0"},
                     SubtreeCondition{"NeighborCleaningMode.xml"})));
}

Node done()
{
    return SequenceStar(
        SetBlackboard{"task_state", "completing"},
        SaySomething{"PartClean complete, set task_state = completing to make cleanlog cf = 1"},
        SubtreeCondition{"AdvCleanComplete"}, play("12"));
}

Node shut_in()
{
    return SequenceStar(ValidateAllBridges{}, report_trap(), Delay{500});
}

}  // namespace

// The spot where the robot stands is cleaned. It stays there afterwards.
TREE(PartCleanModeIndex)
{
    return DoWhile(
        StepUtility{.new_step_status = "Open", .need_trace_invalid = "true"},
        SubtreeCondition{"WashModeJudge"},
        SequenceStar(
            Stop{}, erase("skip_first_rotate"), SubtreeCondition{"WashBeforeClean"},
            erase("robot_standby_flag"), erase("need_back_mode_temp"), erase("need_back_mode_changed"),
            SubtreeCondition{"AdvPreAutoOnCharger"}, erase("have_trapped_type"),
            SetBlackboard{"kicked", "false"},

            show_status(), SetBlackboard{"tof_reset_map", "1"},
            Loop(15, SetCleanSystem{.Brush = "1", .Fan = "0", .Pump = "0", .SideBrush = "0"}),
            set_mop_gear_if_any(), start_music(), Led_Mode_Set{"BUTTON_LED_PartCleaning"},
            SubtreeCondition{"OtherModePreset"}, SaySomething{"Start PartClean Mode!"},

            SetBlackboard{"task_state", "part_cleaning"}, SetBlackboard{"disable_reuse_reloc_once", "true"},
            when(present("start_from_charger"), SetBlackboard{"start_from_charger", "false"}),
            SubtreeCondition{"AdvRestartCleaning"}, SlamStart{}, SubtreeCondition{"ForceDelay"},
            MotionActionAccount{"current_motion_type", "Motion", "Gong"},

            SetBlackboard{"moved_during_pause", "false"}, SetBlackboard{"last_clean_mode", "PartCleanMode"},
            SetBlackboard{"record_charge_pose_start", "false"}, SetBlackboard{"robot_moved", "false"},
            erase("from_charge_fake_flag"), SetBlackboardWithType{"current_area_val", "int", "0"},
            SetBlackboard{"rotate_target_angle", "0"}, erase("breakpoint_wash"), erase("mop_is_dirty"),

            turn_first(), SubtreeCondition{"PreprocessDealsBeforeCleaning.xml"},
            set_flag("Have_Clean_Before_AutoDust"), ForceSuccess(SubtreeCondition{"Back2cm"}),

            IfThenElseStar(clean_spot(), done(), shut_in()), SetBlackboard{"clean_task_end", "true"},
            go_to_standby()));
}
