#pragma once

#include "behaviortree_cpp/decorator_node.h"

namespace BT {

/// Swaps SUCCESS and FAILURE.
class InverterNode : public DecoratorNode
{
public:
    explicit InverterNode(const std::string& name) : DecoratorNode(name) {}

protected:
    NodeStatus tick() override
    {
        setStatus(NodeStatus::RUNNING);
        switch (child_node_->visit()) {
            case NodeStatus::SUCCESS:
                return NodeStatus::FAILURE;
            case NodeStatus::FAILURE:
                return NodeStatus::SUCCESS;
            default:
                return NodeStatus::RUNNING;
        }
    }
};

}  // namespace BT
