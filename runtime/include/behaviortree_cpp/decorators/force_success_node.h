#pragma once

#include "behaviortree_cpp/decorator_node.h"

namespace BT {

/// SUCCESS when the child ends, however it ends.
class ForceSuccessDecorator : public DecoratorNode
{
public:
    explicit ForceSuccessDecorator(const std::string& name) : DecoratorNode(name) {}

private:
    NodeStatus tick() override
    {
        setStatus(NodeStatus::RUNNING);
        switch (child_node_->visit()) {
            case NodeStatus::SUCCESS:
            case NodeStatus::FAILURE:
                return NodeStatus::SUCCESS;
            case NodeStatus::RUNNING:
                return NodeStatus::RUNNING;
            default:
                return status();
        }
    }
};

}  // namespace BT
