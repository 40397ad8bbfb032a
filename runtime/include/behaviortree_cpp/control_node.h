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
    [[nodiscard]] std::size_t childrenCount() const { return children_nodes_.size(); }
    [[nodiscard]] const std::vector<TreeNode*>& children() const { return children_nodes_; }
    [[nodiscard]] const TreeNode* child(std::size_t index) const { return children_nodes_.at(index); }

    void halt() override;
    /// Halts the children from `first` on.
    void haltChildren(int first);
    [[nodiscard]] NodeType type() const override { return NodeType::CONTROL; }

protected:
    /// Halts those children from `first` on that are RUNNING; results of the ended ones stand.
    void haltRunningChildren(std::size_t first);
    /// Takes over `result` of the node, all children IDLE.
    NodeStatus end(NodeStatus result)
    {
        for (TreeNode* child : children_nodes_)
            haltNode(*child, true);
        setLiveBelowAfterEnd(false);
        return result;
    }

    std::vector<TreeNode*> children_nodes_;
};

}  // namespace BT
