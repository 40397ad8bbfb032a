#pragma once

/// Searches over the map, and what the robot does with the ways that they find.

#include "trees/idioms.h"
#include "trees/navigation/goal.h"

namespace vemra::trees {

/// A search over the map. What is left out the search does without.
struct Search
{
    const char* mode;
    const char* target = "default";
    const char* region = "${gridmap_limit}";
    const char* output = "navi_target_point";
    const char* tolerance = nullptr;   ///< failures that a bridge of the way may have had
    const char* chain_mask = nullptr;  ///< whether it keeps within the chains
};

inline Node search(const Search& what)
{
    AwesomeSearch node{.output_point = what.output,
                       .region = what.region,
                       .search_mode = what.mode,
                       .source_point = "${current_coord}",
                       .target = what.target};
    if (what.tolerance != nullptr)
        node.failure_tolerance = what.tolerance;
    if (what.chain_mask != nullptr)
        node.chain_mask = what.chain_mask;
    return node;
}

/// A search over the whole map along bridges that have not failed yet.
inline Node search_map(const char* mode, const char* target = "default",
                       const char* output = "navi_target_point")
{
    return search({.mode = mode, .target = target, .output = output, .tolerance = "0"});
}

/// The way back to where this clean began.
inline Node search_way_to_origin(const char* tolerance)
{
    return search({.mode = "Origin", .target = "${navi_target_point}", .tolerance = tolerance});
}

inline Node account_motion(const char* motion)
{
    return MotionActionAccount{.bb = "current_motion_type", .cur_mode = "Motion", .detail_type = motion};
}

inline Node points_within(const char* distance_mm, const char* a, const char* b)
{
    return ArePointsTooClose{.distance_mm = distance_mm, .point_mm_a = a, .point_mm_b = b};
}

// --- going there --------------------------------------------------------------------------------

/// Where the drive fails, the robot follows the walls to the goal.
inline Nodes follow_walls_to_goal(const char* search_mode)
{
    return row(key::navi_followwall_mode.set(search_mode), SubtreeCondition{"NavigateFollowWall"});
}

/// The worst bridge on the way has never failed.
inline Node way_is_sound()
{
    return BoolMatch{"${path_bridge_max_failure_cnt} < 1", "true"};
}

/// The spot of the robot's own track nearest to the origin.
inline Node find_track_near_origin()
{
    return FindNearestInTrajectory{
        .out_point_grid = "navi_target_point", .search_for = "slamclear", .start_from = "${origin_point}"};
}

/// Drives the way to the goal, and follows the walls where that fails.
inline Node drive_or_follow_walls()
{
    return FallbackStar(SubtreeCondition{"NavigateProc"}, SequenceStar(follow_walls_to_goal("Target")));
}

/// Polygon walls aside, there is a way.
inline Node only_polygon_wall_bars(Node search_again)
{
    return without_sensor("PolygonVirtualWall", std::move(search_again));
}

}  // namespace vemra::trees
