#include "trees/conditions.h"
#include "trees/relocalising/dialogue.h"

namespace {

// The walk of a fixed cross, which the dialogue has replaced.
Node walk_fixed_cross()
{
    const auto leg = [](const char* offset_mm) {
        return row(SetMapDrawMode{.draw_mode = "None"}, walk_leg(offset_mm));
    };
    return SequenceStar(Delay{100}, note_place("crossline_center", "crossline_original_yaw"), leg("1000;0"),
                        leg("-1000;0"), walk_to_center(), BlackboardCopy{"current_coord", "crossline_center"},
                        leg("0;1000"), leg("0;-1000"), walk_to_center(),
                        turn_to("1", "${crossline_original_yaw}"));
}

// Odometry stands in for the pose while the robot goes back to where it began. Cannot run.
Node back_to_origin()
{
    return SubTree("BackToOrigin",
                   SequenceStar(BlackboardCopy{"current_pose", "current_pose_back"},
                                BlackboardCopy{"crossline_center_odom", "navi_target_point"},
                                ParallelNode(4, BlackboardCopy{"current_pose", "current_pose_back"},
                                             BlackboardCopy{"current_odom", "current_pose"},
                                             SubtreeCondition{"NaviOnePointProc"},
                                             BlackboardCopy{"current_pose_back", "current_pose"}),
                                turn_to("1", "${crossline_original_odom_yaw}"),
                                BlackboardCopy{"current_pose_back", "current_pose"}));
}

Node settle()
{
    return SequenceStar(Stop{}, RelocMap{"end"}, Delay{100}, SetBlackboard{"tof_reset_map", "1"},
                        account_motion("Stop"));
}

// All motion is beside SLAM's search, whose end halts it wherever it stands.
Node look_for_place()
{
    return DoWhile(StackBlackboard{"relocalize_start_move"}, walls_off(), dock_as_obstacle(),
                   IfThenElseStar(BoolMatch{"true", "true"}, dialogue(), walk_fixed_cross()),
                   SlamActiveRelocalize{});
}

Node relocalise()
{
    return SequenceStar(
        SetBlackboard{"reset_mop_line", "true"}, SetBlackboard{"tof_reset_map", "1"},
        SetBlackboard{"robot_status", "clean_reloc"}, account_motion("Reloc"), erase("relocalize_start_move"),
        erase("rotate_reloc_finish"), BlackboardCopy{"current_odom", "crossline_center_odom"},
        BlackboardCopy{"current_odom_yaw_deg", "crossline_original_odom_yaw"},
        IfThenElseStar(look_for_place(),
                       IfThenElseStar(BoolMatch{"true", "true"}, settle(), back_to_origin()),
                       IfThenElseStar(BoolMatch{"true", "true"}, ForceFailure(settle()), back_to_origin())));
}

}  // namespace

// Finds the robot's place on a stored map, in a dialogue with SLAM. The track of the task comes back
// afterwards.
TREE(ActiveRelocalize_LdsInteractive)
{
    return PostProcess(
        DoWhile(StackBlackboard{"trace_time_map"}, StackBlackboard{"robot_trajectory"},
                StackBlackboard{"combined_trace_map_ready"},
                SequenceStar(when(present("gong_motion_type"), erase("gong_motion_type")),
                             erase("trace_time_map"), erase("robot_trajectory"),
                             erase("combined_trace_map_ready"),
                             DoWhile(StackBlackboard{"in_lds_reloc_proc"}, StackBlackboard{"wmap"},
                                     StepUtility{.new_step_status = "Open"}, AlwaysFailure{},
                                     set_flag("gridmap_token_draw_map"), TraceLogger{},
                                     SetMapDrawMode{.draw_mode = "None", .LockState = "true"},
                                     Sequence(ForceSuccess(SubtreeCondition{"EscapeCoat"}), relocalise())))),
        RelocMap{"end"});
}
