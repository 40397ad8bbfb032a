#pragma once

/// What the ways of finding the place on a stored map share.

#include "trees/navigation/search.h"

namespace vemra::trees {

/// The user's walls do not count for a robot that does not know where it is.
inline Nodes walls_off()
{
    return row(sensor_held_off("PolygonVirtualWall"), sensor_held_off("VirtualWall"));
}

/// Nor does its dock's wall, while the dock's field does.
inline Nodes dock_as_obstacle()
{
    return row(sensor_held_on("DockField"), sensor_held_off("ChargerVirtualWall"));
}

/// A turn to an absolute heading, tried `attempts` times.
inline Node turn_to(const char* attempts, const char* heading_deg)
{
    return RetryUntilSuccesful(attempts, guarded(Rotate{.angle_deg = heading_deg,
                                                        .angular_velocity_deg_s = "120",
                                                        .false_relative_true_absolute = "true"}));
}

/// One leg of a cross, to a place given by its offset from the centre. A leg that is blocked does not stop
/// the walk.
inline Nodes walk_leg(const char* offset_mm)
{
    return row(
        CoordOffset{
            .base_point = "${crossline_center}", .offset_mm = offset_mm, .out_point = "navi_target_point"},
        ForceSuccess(SubtreeCondition{"NaviOnePointProc"}));
}

inline Nodes walk_to_center()
{
    return row(key::crossline_center.copy_to(key::navi_target_point),
               ForceSuccess(SubtreeCondition{"NaviOnePointProc"}));
}

inline Nodes note_place(const char* center, const char* yaw)
{
    return row(BlackboardCopy{"current_coord", center}, BlackboardCopy{"current_yaw_deg", yaw});
}

/// A walk along a cross, back to where it began and turned as before. The map stays as it is.
inline Nodes walk_cross()
{
    const auto draw_nothing = [] { return SetMapDrawMode{.draw_mode = "None"}; };
    return row(Delay{100}, note_place("crossline_center", "crossline_original_yaw"), draw_nothing(),
               walk_leg("1000;0"), draw_nothing(), walk_leg("-1000;0"), draw_nothing(), walk_to_center(),
               key::current_coord.copy_to(key::crossline_center), draw_nothing(), walk_leg("0;1000"),
               draw_nothing(), walk_leg("0;-1000"), draw_nothing(), walk_to_center(),
               turn_to("1", "${crossline_original_yaw}"), Stop{});
}

/// The walk of the older forms: it ends in failure unless the place was found by then.
inline Nodes walk_has_failed()
{
    return row(key::relocalize_failed.set("true"), Delay{1});
}

/// Looks for the place beside a walk, which ends it in failure.
inline Node look_while_walking(Nodes companions, Node walk)
{
    return ForceSuccess(
        DoWhile(companions, std::move(walk),
                BB_Precondition(
                    key::relocalize_failed,
                    FallbackStar(SlamActiveRelocalize{}, ForceFailure(key::relocalize_failed.set("true"))))));
}

inline Nodes end_walk()
{
    return row(key::tof_reset_map.set(1), Stop{}, account_motion("Stop"),
               erase(key::relocalize_first_yaw, key::relocalize_second_yaw, key::relocalize_final_yaw),
               IfThenElseStar(key::relocalize_failed.is("false"), key::relocalize_failed.erase(),
                              ForceFailure(key::relocalize_failed.erase())));
}

}  // namespace vemra::trees
