#pragma once

/// What the ways of finding the place on a stored map share.

#include "trees/navigation/search.h"

namespace vemra::trees {

inline Node lock_off(const char* sensor)
{
    return TemporarilyDisableSensor{.lock_status = "true", .sensor = sensor};
}

inline Node lock_on(const char* sensor)
{
    return TemporarilyEnableSensor{.lock_status = "true", .sensor = sensor};
}

/// The user's walls do not count for a robot that does not know where it is.
inline Nodes walls_off()
{
    return row(lock_off("PolygonVirtualWall"), lock_off("VirtualWall"));
}

/// Nor does its dock's wall, while the dock's field does.
inline Nodes dock_as_obstacle()
{
    return row(lock_on("DockField"), lock_off("ChargerVirtualWall"));
}

/// A turn to an absolute heading, tried `attempts` times.
inline Node turn_to(const char* attempts, const char* heading_deg)
{
    return RetryUntilSuccesful(
        attempts, Sequence(SubtreeCondition{"Escape"}, Rotate{.angle_deg = heading_deg,
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
    return row(BlackboardCopy{"crossline_center", "navi_target_point"},
               ForceSuccess(SubtreeCondition{"NaviOnePointProc"}));
}

/// The walk of the older forms: it ends in failure unless the place was found by then.
inline Nodes walk_has_failed()
{
    return row(SetBlackboard{"relocalize_failed", "true"}, Delay{1});
}

inline Nodes note_place(const char* center, const char* yaw)
{
    return row(BlackboardCopy{"current_coord", center}, BlackboardCopy{"current_yaw_deg", yaw});
}

/// Looks for the place beside a walk, which ends it in failure.
inline Node look_while_walking(Nodes companions, Node walk)
{
    return ForceSuccess(DoWhile(
        companions, std::move(walk),
        BB_Precondition(
            "relocalize_failed",
            FallbackStar(SlamActiveRelocalize{}, ForceFailure(SetBlackboard{"relocalize_failed", "true"})))));
}

inline Nodes end_walk()
{
    return row(SetBlackboard{"tof_reset_map", "1"}, Stop{}, account_motion("Stop"),
               erase("relocalize_first_yaw"), erase("relocalize_second_yaw"), erase("relocalize_final_yaw"),
               IfThenElseStar(key_is("relocalize_failed", "false"), erase("relocalize_failed"),
                              ForceFailure(erase("relocalize_failed"))));
}

}  // namespace vemra::trees
