#pragma once

#include "behaviortree_cpp/bt_factory.h"

namespace vemra::test {

// Puts a node below a control node or a decorator.
inline void hang(BT::TreeNode& parent, BT::TreeNode& child)
{
    if (auto* control = dynamic_cast<BT::ControlNode*>(&parent))
        control->addChild(&child);
    else
        dynamic_cast<BT::DecoratorNode&>(parent).setChild(&child);
}

}  // namespace vemra::test
