#pragma once

#include <string>

#include "behaviortree_cpp/bt_factory.h"
#include "robot/geometry/points.h"

namespace vemra::robot {

/// A tree that looks around for a moment, searches a way to the goal, and enters the tree of that name with
/// the plan in hand, so that a tree which drives along a plan can be tried alone. Where the tree wants a
/// bridge in `navigation_bridge` and does not take up the plan itself, the first bridge of the plan is taken
/// up. It says so where there is no way, or no bridge on it.
[[nodiscard]] BT::Tree goalTree(const BT::BehaviorTreeFactory& factory, const BT::Blackboard::Ptr& blackboard,
                                const std::string& tree, PointMm goal);

}  // namespace vemra::robot
