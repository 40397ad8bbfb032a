#pragma once

#include "behaviortree_cpp/decorator_node.h"

namespace BT {

/// `SubTree`: a stretch of a tree under a name of its own. Transparent.
class DecoratorSubtreeNode : public DecoratorNode
{
public:
    explicit DecoratorSubtreeNode(const std::string& name) : DecoratorNode(name) {}
    DecoratorSubtreeNode(const std::string& name, const NodeParameters& parameters)
        : DecoratorNode(name, parameters)
    {}

    static const NodeParameters& requiredNodeParameters();

    [[nodiscard]] NodeType type() const override { return NodeType::SUBTREE; }

protected:
    NodeStatus tick() override
    {
        setStatus(NodeStatus::RUNNING);
        return child_node_->visit();
    }
};

}  // namespace BT
