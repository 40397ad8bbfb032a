#pragma once

#include <functional>
#include <string>

#include "behaviortree_cpp/bt_factory.h"

namespace vemra::robot {

/// Whether a tree is the stand-in for one that has a name in the registry and no description.
[[nodiscard]] bool isUnwritten(const BT::Tree& tree);

/// From now on, such stand-ins tell `met` the name of their tree whenever they are ticked. They fail as
/// before.
void watchUnwritten(BT::BehaviorTreeFactory& factory, std::function<void(const std::string& tree)> met);

}  // namespace vemra::robot
