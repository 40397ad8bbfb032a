#pragma once

/// The dialogue with SLAM by which the robot finds its place: SLAM says when a turn is enough, where to look
/// next and whether it knows the place; the robot moves and answers.

#include "trees/relocalising/reloc.h"

namespace vemra::trees {

/// The robot's side of it. Runs until SLAM's search ends it.
Node dialogue();

/// To the point that SLAM wants to see, the turn there, and back once there is a verdict.
Node explore_reloc();

/// A short walk, where SLAM has no point.
Node static_crossing();

/// Back to where SLAM wants the robot.
Node navi_back_origin();

// --- SLAM's answers, by their numbers -----------------------------------------------------------

inline Node stop_turning()
{
    return Named("5", SequenceStar(SaySomething{"tolvar rcv 5"}, key::rotate_reloc_finish.erase(), Stop{}));
}

inline Node verdict_is(const char* verdict)
{
    return BoolMatch{"${exp_reloc_result}", verdict};
}

inline Node keep_turning()
{
    return Loop(
        -1,
        Rotate{.angle_deg = "360", .angular_velocity_deg_s = "60", .false_relative_true_absolute = "false"});
}

inline Nodes leave_walk()
{
    return BreakKey{key::go_slam_break}.leave();
}

inline Node report(const char* what)
{
    return SlamReachReloc{what};
}

/// Follows walls where the drive fails.
inline Node drive_to_point(const Nodes& or_else)
{
    return FallbackStar(
        SubtreeCondition{"NavigateProc"},
        SequenceStar(NotTrapped{}, SubtreeCondition{"Escape"}, follow_walls_to_goal("TargetNoUnknown")),
        or_else);
}

inline Node search_target()
{
    return search_map("Target", "${navi_target_point}");
}

}  // namespace vemra::trees
