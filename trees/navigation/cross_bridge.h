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

/// The bridge in hand is of kind `type`, once its type was read.
inline Node bridge_is(const char* type)
{
    return key::navigation_bridge_type.is(type);
}

inline Node read_bridge_type()
{
    return BridgeTypeReader{.bridge = "${navigation_bridge}", .out_bridge_type = "navigation_bridge_type"};
}

/// The far side was reached, judged by the search that made the plan.
inline Node bridge_crossed(const Key& far_end, const char* ticks_threshold)
{
    return BridgeCrossed{.bridge_to_point = far_end.value(),
                         .search_mode = "${awesome_search_mode}",
                         .search_region = "${awesome_search_region}",
                         .ticks_threshold = ticks_threshold};
}

inline Node aim_at(const Key& point)
{
    return point.copy_to(key::navi_target_point);
}

}  // namespace vemra::trees
