#pragma once

#include <vector>

#include "behaviortree_cpp/control_node.h"
#include "behaviortree_cpp/decorator_node.h"

namespace vemra::app {

/// The children of a node as it was built, in their order; a leaf has none.
inline std::vector<const BT::TreeNode*> childrenOf(const BT::TreeNode& node)
{
    if (const auto* control = dynamic_cast<const BT::ControlNode*>(&node))
        return {control->children().begin(), control->children().end()};
    if (const auto* decorator = dynamic_cast<const BT::DecoratorNode*>(&node);
        decorator && decorator->child())
        return {decorator->child()};
    return {};
}

}  // namespace vemra::app
