#include "trees/cleaning/restart.h"

namespace {

Node turned_more_than_half()
{
    return RetryUntilSuccesful(
        -1, Sequence(BoolMatch{"${start_yaw} != ${current_yaw_deg}", "true"},
                     BoolMatch{"${current_odom_yaw_deg} - ${start_odom_yaw} > 180", "true"}));
}

// The robot looks around before the map begins. The turn ends by odometry; the motion is only its drive.
Node look_around()
{
    return ForceSuccess(Sequence(
        BoolMatch{"true", "true"}, key::current_odom_yaw_deg.copy_to(key::start_odom_yaw),
        key::current_yaw_deg.copy_to(key::start_yaw), SubtreeCondition{"Escape"},
        ActionDecorator(SubtreeCondition{"Back2cm"}), SaySomething{"GetIMUPose 1"}, InitRollPitchCheck{},
        DoWhile(
            RollPitchMinMaxUpdate{},
            guarded(Rotate{
                .angle_deg = "360", .angular_velocity_deg_s = "60", .false_relative_true_absolute = "false"}),
            Sequence(InDockField{}, key::robot_indock.set("true")), turned_more_than_half()),
        Stop{}, key::skip_first_rotate.flag(), GetIMUPose{"IMU_POSE_TurnEnd"}, SaySomething{"GetIMUPose 2"},
        note_drift_on_dock(),
        key::start_from_charger_yaw_deg.set_typed(
            "${current_yaw_deg} - ${current_odom_yaw_deg} + ${start_odom_yaw}")));
}

}  // namespace

// Begins the task on a new map, whose origin is where the robot stands.
TREE(RestartCleaning)
{
    return Sequence(
        first_escape(),
        SequenceStar(
            erase(key::virtual_wall_lines, key::virtual_wall_rects, key::virtual_wall_mop_rects),
            GetTimeUsInt64{"cleaning_start_time_us"},
            FromFloatToPlainPoseMm{
                .coord_x_mm = "0", .coord_y_mm = "0", .out_key = "initial_pose", .yaw_deg = "0"},
            SetOdometry{"${initial_pose}"}, ResetMap{}, SlamReset{}, key::reuse_cleaning.set_typed(0),

            look_around(),

            PresetBlackboard{},
            reset_task({.after_clean_complete = row(key::restart_cleaning_from_err_mode.erase()),
                        .before_origin_in_enclave = row(key::do_not_reset_trial_token.set("false")),
                        .before_warning =
                            row(key::pretend_reuse_cleaning.set("false"), key::reset_mop_line.set("true"),
                                key::need_clean_steps.set("true"), key::pretend_reuse_cleaning_token.erase()),
                        .at_end = row(forget_start(), erase(key::virtual_wall_temp_flag, key::last_scan_pose,
                                                            key::last_review_pose))})));
}
