#pragma once

#include "behaviortree_cpp/leaf_node.h"

namespace BT {

/// A test: SUCCESS or FAILURE at once. A memory-less composite looks at it anew on every tick.
class ConditionNode : public LeafNode
{
public:
    explicit ConditionNode(const std::string& name) : LeafNode(name, {}) {}
    ConditionNode(const std::string& name, const NodeParameters& parameters) : LeafNode(name, parameters) {}

    void halt() override { setStatus(NodeStatus::IDLE); }
    [[nodiscard]] NodeType type() const final { return NodeType::CONDITION; }
};

/// A condition made of a function.
class SimpleConditionNode : public ConditionNode
{
public:
    using TickFunctor = std::function<NodeStatus(TreeNode&)>;

    SimpleConditionNode(const std::string& name, TickFunctor functor, const NodeParameters& parameters = {})
        : SimpleConditionNode(name, std::make_shared<const TickFunctor>(std::move(functor)), parameters)
    {}
    /// The function is shared by all nodes of a kind.
    SimpleConditionNode(const std::string& name, std::shared_ptr<const TickFunctor> functor,
                        const NodeParameters& parameters = {})
        : ConditionNode(name, parameters), functor_(std::move(functor))
    {}

protected:
    NodeStatus tick() override { return (*functor_)(*this); }

    std::shared_ptr<const TickFunctor> functor_;
};

}  // namespace BT
