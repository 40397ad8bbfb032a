#pragma once

/// The ways of crossing a bridge, one for each kind. Each takes the bridge in hand, `navigation_bridge`, with
/// its two ends, and succeeds when the robot is across.

#include "trees/idioms.h"

namespace vemra::trees {

/// Any bridge of a zigzag or a plain one: straight over it, then along the wall.
Node cross_bridge_move();

/// A stretch that an earlier run has travelled. Being in the current area is enough.
Node cross_history_bridge();

/// A temporary bridge out of a virtual wall.
Node cross_tmp_bridge();

/// A step in the floor, whose ends are learnt.
Node cross_step();

/// The robot stands within `distance_mm` of the point under `key`.
inline Node robot_within(const Port& distance_mm, const std::string& key)
{
    return ArePointsTooClose{
        .distance_mm = distance_mm, .point_mm_a = "${current_pose}", .point_mm_b = "${" + key + "}"};
}

/// The bridge in hand is of kind `type`, once its type was read.
inline Node bridge_is(const char* type)
{
    return key_is("navigation_bridge_type", type);
}

inline Node read_bridge_type()
{
    return BridgeTypeReader{.bridge = "${navigation_bridge}", .out_bridge_type = "navigation_bridge_type"};
}

/// The far side was reached, judged by the search that made the plan.
inline Node bridge_crossed(const std::string& far_end_key, const char* ticks_threshold)
{
    return BridgeCrossed{.bridge_to_point = "${" + far_end_key + "}",
                         .search_mode = "${awesome_search_mode}",
                         .search_region = "${awesome_search_region}",
                         .ticks_threshold = ticks_threshold};
}

/// A companion that leaves `sensor` out of account while its body runs.
inline Node without_sensor(const char* sensor)
{
    return TemporarilyDisableSensor{.lock_status = "false", .sensor = sensor};
}

/// A companion that makes the walls around the charger count while its body runs.
inline Node with_charger_walls()
{
    return TemporarilyEnableSensor{.lock_status = "false", .sensor = "ChargerVirtualWall"};
}

inline Node aim_at(const std::string& point_key)
{
    return BlackboardCopy{.source = point_key, .target = "navi_target_point"};
}

}  // namespace vemra::trees
