#pragma once

#include "behaviortree_cpp/tree_node.h"

namespace BT {

/// A node with one child. The child's own status stays as the child left it until it is ticked again.
class DecoratorNode : public TreeNode
{
public:
    explicit DecoratorNode(const std::string& name, const NodeParameters& parameters = {});

    /// Not owned: the tree owns all its nodes.
    void setChild(TreeNode* child)
    {
        child_node_ = child;
        setTicksPlainly(ticks_plainly_with_child_ && child != nullptr);
    }
    /// For the factory alone: executeTick() is that of this class, so that visit() need not call it.
    void setTicksPlainlyWithChild() { ticks_plainly_with_child_ = true; }
    [[nodiscard]] const TreeNode* child() const { return child_node_; }
    [[nodiscard]] TreeNode* child() { return child_node_; }

    /// A decorator without a child fails.
    NodeStatus executeTick() override;
    void halt() override;
    void haltChild();
    [[nodiscard]] NodeType type() const override { return NodeType::DECORATOR; }

protected:
    TreeNode* child_node_ = nullptr;

private:
    bool ticks_plainly_with_child_ = false;
};

/// A decorator made of a function of the child's result.
class SimpleDecoratorNode : public DecoratorNode
{
public:
    using TickFunctor = std::function<NodeStatus(NodeStatus child, TreeNode& node)>;

    SimpleDecoratorNode(const std::string& name, TickFunctor functor, const NodeParameters& parameters = {})
        : SimpleDecoratorNode(name, std::make_shared<const TickFunctor>(std::move(functor)), parameters)
    {}
    /// The function is shared by all nodes of a kind.
    SimpleDecoratorNode(const std::string& name, std::shared_ptr<const TickFunctor> functor,
                        const NodeParameters& parameters = {})
        : DecoratorNode(name, parameters), functor_(std::move(functor))
    {}

protected:
    NodeStatus tick() override
    {
        setStatus(NodeStatus::RUNNING);
        return (*functor_)(child_node_->visit(), *this);
    }

    std::shared_ptr<const TickFunctor> functor_;
};

}  // namespace BT
