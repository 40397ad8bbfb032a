#include "trees/cleaning/restart.h"

namespace {

Node turned_more_than_half()
{
    return RetryUntilSuccesful(
        -1, SequenceStar(BoolMatch{"${start_yaw} != ${current_yaw_deg}", "true"},
                         BoolMatch{"${current_odom_yaw_deg} - ${start_odom_yaw} > 180", "true"}));
}

// The robot looks around before the map begins. The turn ends by odometry; the motion is only its drive.
Node look_around()
{
    return ForceSuccess(Sequence(
        BoolMatch{"true", "true"}, BlackboardCopy{"current_odom_yaw_deg", "start_odom_yaw"},
        BlackboardCopy{"current_yaw_deg", "start_yaw"}, SubtreeCondition{"Escape"},
        ActionDecorator(SubtreeCondition{"Back2cm"}), SaySomething{"GetIMUPose 1"}, InitRollPitchCheck{},
        DoWhile(RollPitchMinMaxUpdate{},
                Sequence(SubtreeCondition{"Escape"}, Rotate{.angle_deg = "360",
                                                            .angular_velocity_deg_s = "60",
                                                            .false_relative_true_absolute = "false"}),
                Sequence(InDockField{}, SetBlackboard{"robot_indock", "true"}), turned_more_than_half()),
        Stop{}, set_flag("skip_first_rotate"), GetIMUPose{"IMU_POSE_TurnEnd"}, SaySomething{"GetIMUPose 2"},
        note_drift_on_dock(),
        SetBlackboardWithType{"start_from_charger_yaw_deg", "float",
                              "${current_yaw_deg} - ${current_odom_yaw_deg} + ${start_odom_yaw}"}));
}

}  // namespace

// Begins the task on a new map, whose origin is where the robot stands.
TREE(RestartCleaning)
{
    return Sequence(
        first_escape(),
        SequenceStar(
            erase("virtual_wall_lines"), erase("virtual_wall_rects"), erase("virtual_wall_mop_rects"),
            GetTimeUsInt64{"cleaning_start_time_us"},
            FromFloatToPlainPoseMm{
                .coord_x_mm = "0", .coord_y_mm = "0", .out_key = "initial_pose", .yaw_deg = "0"},
            SetOdometry{"${initial_pose}"}, ResetMap{}, SlamReset{},
            SetBlackboardWithType{"reuse_cleaning", "int", "0"},

            look_around(),

            PresetBlackboard{},
            reset_task({.after_clean_complete = row(erase("restart_cleaning_from_err_mode")),
                        .before_origin_in_enclave = row(SetBlackboard{"do_not_reset_trial_token", "false"}),
                        .before_warning = row(SetBlackboard{"pretend_reuse_cleaning", "false"},
                                              SetBlackboard{"reset_mop_line", "true"},
                                              SetBlackboard{"need_clean_steps", "true"},
                                              erase("pretend_reuse_cleaning_token")),
                        .at_end = row(forget_start(), erase("virtual_wall_temp_flag"),
                                      erase("last_scan_pose"), erase("last_review_pose"))})));
}
