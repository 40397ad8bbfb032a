#pragma once

/// Walks of the way home: to a known place of the dock, back to where the run began, and what is reported
/// where there is no way.

#include "trees/navigation/search.h"

namespace vemra::trees {

/// The goal moves to the nearest place of the robot's own track.
inline Node snap_to_track(const char* near)
{
    return FindNearestInTrajectory{
        .out_point_grid = "navi_target_point", .search_for = "slamclear", .start_from = near};
}

inline Node search_known_floor()
{
    return search_map("TargetNoUnknown", "${navi_target_point}");
}

/// Along walls, without leaving traces of free floor.
inline Nodes follow_walls_over_known_floor(const char* mode = "TargetNoUnknown")
{
    return row(SetMapDrawMode{.draw_mode = "BlockOnly"}, follow_walls_to_goal(mode));
}

/// A drive over known floor, or the walls where it fails.
inline Node drive_over_known_floor()
{
    return FallbackStar(SubtreeCondition{"NavigateProcNoUnknown.xml"},
                        SequenceStar(follow_walls_over_known_floor()));
}

/// The user is told once in a run why the robot cannot go on.
template <Steps... Children>
Node report_trap_once(Children&&... steps)
{
    return FallbackStar(key::have_trapped_type.present(), SequenceStar(std::forward<Children>(steps)...));
}

/// A wall of the user bars the way.
inline Node report_barred_by_wall()
{
    return report_trap_once(ValidateAllBridges{}, key::clean_vw_blocked.flag(), key::have_trapped_type.flag(),
                            Delay{50});
}

/// The way to the origin is there once the polygon walls of the user are left aside.
inline Node only_wall_bars_origin(const char* tolerance)
{
    return without_sensor("PolygonVirtualWall",
                          SequenceStar(find_track_near_origin(), search_way_to_origin(tolerance)));
}

/// Where the walks to the dock differ.
struct WalkToDock
{
    const char* last_search = "Target";           ///< the search that also takes doubtful bridges
    const char* follow_mode = "TargetNoUnknown";  ///< how walls are followed where the drive fails
    Node no_way = AlwaysSuccess{};                ///< when even that finds nothing
};

/// Walks to `navi_target_point` until the robot is there or there is no way.
Node walk_to_dock(const WalkToDock& walk = {});

/// Nothing but a wall of the user bars the way: that is told. Else `otherwise` is done.
inline Node tell_what_bars_way(const char* tolerance, Node otherwise = AlwaysSuccess{})
{
    return IfThenElseStar(only_wall_bars_origin(tolerance), report_barred_by_wall(), std::move(otherwise));
}

/// Faces the dock. `charger_type`: 0 the stored dock, 1 the one that the run trusts.
inline Nodes face_dock()
{
    return row(ForceSuccess(CleandockChargerYaw{}), Rotate{.angle_deg = "${face_charger_yaw}",
                                                           .angular_velocity_deg_s = "60",
                                                           .false_relative_true_absolute = "true"});
}

/// The marking turn heard nothing, or there was none.
inline Node no_signal_known()
{
    return FallbackStar(key::marker_signal_type.absent(), SignalTypeMatch{"${marker_signal_type}", "None"});
}

}  // namespace vemra::trees
