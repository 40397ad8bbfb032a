#pragma once

#include "behaviortree_cpp/decorator_node.h"

namespace BT {

/// Makes of its child one action: a memory-less composite does not enter it again in the run in which it
/// has ended. The result is the child's.
class ActionDecoratorNode : public DecoratorNode
{
public:
    explicit ActionDecoratorNode(const std::string& name) : DecoratorNode(name) { setCountsAsAction(); }

protected:
    NodeStatus tick() override
    {
        setStatus(NodeStatus::RUNNING);
        return child_node_->visit();
    }
};

}  // namespace BT
