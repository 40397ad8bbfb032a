#pragma once

#include <vector>

#include "behaviortree_cpp/tree_node.h"

namespace BT {

/// A node with an ordered list of children. When a built-in one ends, all its children are IDLE.
class ControlNode : public TreeNode
{
public:
    explicit ControlNode(const std::string& name, const NodeParameters& parameters = {});

    /// Not owned: the tree owns all its nodes.
    void addChild(TreeNode* child);
    /// Makes room for so many, no more.
    void expectChildren(std::size_t children) { children_nodes_.reserve(children); }
    [[nodiscard]] std::size_t childrenCount() const { return children_nodes_.size(); }
    [[nodiscard]] const std::vector<TreeNode*>& children() const { return children_nodes_; }
    [[nodiscard]] const TreeNode* child(std::size_t index) const { return children_nodes_.at(index); }

    void halt() override;
    /// Halts the children from `first` on.
    void haltChildren(int first);
    [[nodiscard]] NodeType type() const override { return NodeType::CONTROL; }

protected:
    /// Halts those children behind `place` that are RUNNING; results of the ended ones stand.
    void haltRunningBehind(std::size_t place);
    /// The tick of a composite without memory: children in turn as long as they give `go_on`.
    [[gnu::always_inline]] NodeStatus tickInTurn(NodeStatus go_on)
    {
        setStatus(NodeStatus::RUNNING);
        for (TreeNode* const& place : children_nodes_) {
            TreeNode& child = *place;
            const NodeStatus before = child.status();
            if (before == go_on && child.countsAsAction()) [[unlikely]]
                continue;
            const NodeStatus result = child.visit(before, go_on);
            if (result == go_on)
                continue;
            if (result == NodeStatus::SUCCESS || result == NodeStatus::FAILURE)
                return endEarly(result);
            haltRunningBehind(static_cast<std::size_t>(&place - children_nodes_.data()));
            return NodeStatus::RUNNING;
        }
        return end(go_on);
    }
    /// Takes over `result` of the node, all children IDLE.
    [[gnu::always_inline]] NodeStatus end(NodeStatus result)
    {
        for (TreeNode* child : children_nodes_)
            child->bringToIdle(true);
        setLiveBelowAfterEnd(false);
        return result;
    }
    /// The same where many of the children may be IDLE already.
    NodeStatus endEarly(NodeStatus result);

    /// A truth port that is on unless it says otherwise. What a literal says is looked at once.
    class OnPort
    {
    public:
        [[nodiscard]] bool isOn(const TreeNode& node, std::string_view port)
        {
            if (says_ == Says::NotLookedAt) [[unlikely]]
                look(node, port);
            return says_ == Says::OtherThings ? read(node, port) : says_ == Says::On;
        }

    private:
        enum class Says : std::uint8_t
        {
            NotLookedAt,
            On,
            Off,
            OtherThings  ///< as the blackboard stands
        };
        void look(const TreeNode& node, std::string_view port);
        [[nodiscard]] static bool read(const TreeNode& node, std::string_view port);

        Says says_ = Says::NotLookedAt;
    };

    std::vector<TreeNode*> children_nodes_;
};

}  // namespace BT
