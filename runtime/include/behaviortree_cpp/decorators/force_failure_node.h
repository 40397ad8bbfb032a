#pragma once

#include "behaviortree_cpp/decorator_node.h"

namespace BT {

/// FAILURE when the child ends, however it ends.
class ForceFailureDecorator : public DecoratorNode
{
public:
    explicit ForceFailureDecorator(const std::string& name) : DecoratorNode(name) {}

private:
    NodeStatus tick() override
    {
        setStatus(NodeStatus::RUNNING);
        switch (child_node_->visit()) {
            case NodeStatus::SUCCESS:
            case NodeStatus::FAILURE:
                return NodeStatus::FAILURE;
            case NodeStatus::RUNNING:
                return NodeStatus::RUNNING;
            default:
                return status();
        }
    }
};

}  // namespace BT
