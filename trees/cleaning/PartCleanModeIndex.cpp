#include "trees/cleaning/cleaning_mode.h"

namespace {

Node show_status()
{
    return choose({{switched_off(), key::robot_status.set("clean_mop")},
                   {switched_off(), key::robot_status.set("clean_sweep_mop")}},
                  key::robot_status.set("clean_part_sweep"));
}

Node start_music()
{
    return choose({{switched_off(), play(127)}, {switched_off(), play(128)}}, play(8));
}

Node turn_first()
{
    return IfThenElseStar(
        key::skip_first_rotate.present(), key::skip_first_rotate.erase(),
        ForceSuccess(Sequence(SubtreeCondition{"EscapeCoat"}, ActionDecorator(SubtreeCondition{"Back2cm"}),
                              SetMapDrawMode{.draw_mode = "None"}, turn_half_round())));
}

// There is no way to take a spot up again after a charge.
Node clean_spot()
{
    return DoWhile(
        key::part_clean_appmap_flag.set("true"), key::gridmap_token_draw_map.flag(), MoveCleanSysModeSet{},
        SubtreeCondition{"auto_cleanmode_set.xml"}, sensor_off("PolygonVirtualWall"),
        IfThenElse(RobotPowerGetLowerThan{"15"},
                   SequenceStar(key::task_state.set("part_lowpower"), play(48), go_home(), Delay{5}),
                   Sequence(ConditionTimerSecs{.secs_out_key = "clean_time_for_app", .start_from = "0"},
                            SubtreeCondition{"NeighborCleaningMode.xml"})));
}

Node done()
{
    return SequenceStar(
        key::task_state.set("completing"),
        SaySomething{"PartClean complete, set task_state = completing to make cleanlog cf = 1"},
        SubtreeCondition{"AdvCleanComplete"}, play(12));
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
        SequenceStar(Stop{}, key::skip_first_rotate.erase(), SubtreeCondition{"WashBeforeClean"},
                     erase(key::robot_standby_flag, key::need_back_mode_temp, key::need_back_mode_changed),
                     SubtreeCondition{"AdvPreAutoOnCharger"}, key::have_trapped_type.erase(),
                     key::kicked.set("false"),

                     show_status(), key::tof_reset_map.set(1),
                     Loop(15, SetCleanSystem{.Brush = "1", .Fan = "0", .Pump = "0", .SideBrush = "0"}),
                     set_mop_gear_if_any(), start_music(), Led_Mode_Set{"BUTTON_LED_PartCleaning"},
                     SubtreeCondition{"OtherModePreset"}, SaySomething{"Start PartClean Mode!"},

                     key::task_state.set("part_cleaning"), key::disable_reuse_reloc_once.set("true"),
                     when(key::start_from_charger.present(), key::start_from_charger.set("false")),
                     SubtreeCondition{"AdvRestartCleaning"}, SlamStart{}, SubtreeCondition{"ForceDelay"},
                     MotionActionAccount{"current_motion_type", "Motion", "Gong"},

                     key::moved_during_pause.set("false"), key::last_clean_mode.set("PartCleanMode"),
                     key::record_charge_pose_start.set("false"), key::robot_moved.set("false"),
                     key::from_charge_fake_flag.erase(), key::current_area_val.set_typed(0),
                     key::rotate_target_angle.set(0), erase(key::breakpoint_wash, key::mop_is_dirty),

                     turn_first(), SubtreeCondition{"PreprocessDealsBeforeCleaning.xml"},
                     key::Have_Clean_Before_AutoDust.flag(), ForceSuccess(SubtreeCondition{"Back2cm"}),

                     IfThenElseStar(clean_spot(), done(), shut_in()), key::clean_task_end.set("true"),
                     go_to_standby()));
}
