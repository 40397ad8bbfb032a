#include "trees/idioms.h"
#include "trees/relocalising/dialogue.h"

namespace {

// Odometry stands in for the pose while the robot goes back to where it began. Cannot run.
Node back_to_origin()
{
    return SubTree("BackToOrigin",
                   SequenceStar(key::current_pose.copy_to(key::current_pose_back),
                                key::crossline_center_odom.copy_to(key::navi_target_point),
                                ParallelNode(4, key::current_pose.copy_to(key::current_pose_back),
                                             key::current_odom.copy_to(key::current_pose),
                                             SubtreeCondition{"NaviOnePointProc"},
                                             key::current_pose_back.copy_to(key::current_pose)),
                                turn_to("1", "${crossline_original_odom_yaw}"),
                                key::current_pose_back.copy_to(key::current_pose)));
}

Node settle()
{
    return SequenceStar(Stop{}, RelocMap{"end"}, Delay{100}, key::tof_reset_map.set(1),
                        account_motion("Stop"));
}

// All motion is beside SLAM's search, whose end halts it wherever it stands.
Node look_for_place()
{
    return DoWhile(key::relocalize_start_move.kept(), walls_off(), dock_as_obstacle(),
                   // The walk of a fixed cross, which the dialogue has replaced, cannot run.
                   IfThenElseStar(BoolMatch{"true", "true"}, dialogue(), SequenceStar(walk_cross())),
                   SlamActiveRelocalize{});
}

Node relocalise()
{
    return SequenceStar(
        key::reset_mop_line.set("true"), key::tof_reset_map.set(1), key::robot_status.set("clean_reloc"),
        account_motion("Reloc"), erase(key::relocalize_start_move, key::rotate_reloc_finish),
        key::current_odom.copy_to(key::crossline_center_odom),
        key::current_odom_yaw_deg.copy_to(key::crossline_original_odom_yaw),
        choose({{look_for_place(), IfThenElseStar(BoolMatch{"true", "true"}, settle(), back_to_origin())},
                {BoolMatch{"true", "true"}, ForceFailure(settle())}},
               back_to_origin()));
}

}  // namespace

// Finds the robot's place on a stored map, in a dialogue with SLAM. The track of the task comes back
// afterwards.
TREE(ActiveRelocalize_LdsInteractive)
{
    return PostProcess(
        DoWhile(key::trace_time_map.kept(), key::robot_trajectory.kept(),
                key::combined_trace_map_ready.kept(),
                SequenceStar(when(key::gong_motion_type.present(), key::gong_motion_type.erase()),
                             erase(key::trace_time_map, key::robot_trajectory, key::combined_trace_map_ready),
                             DoWhile(key::in_lds_reloc_proc.kept(), key::wmap.kept(),
                                     StepUtility{.new_step_status = "Open"}, AlwaysFailure{},
                                     key::gridmap_token_draw_map.flag(), TraceLogger{},
                                     SetMapDrawMode{.draw_mode = "None", .LockState = "true"},
                                     Sequence(ForceSuccess(SubtreeCondition{"EscapeCoat"}), relocalise())))),
        RelocMap{"end"});
}
