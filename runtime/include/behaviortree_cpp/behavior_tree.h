#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "behaviortree_cpp/action_node.h"
#include "behaviortree_cpp/blackboard/blackboard_local.h"
#include "behaviortree_cpp/condition_node.h"
#include "behaviortree_cpp/control_node.h"
#include "behaviortree_cpp/decorator_node.h"
#include "behaviortree_cpp/exceptions.h"
#include "behaviortree_cpp/tree_node.h"

#include "behaviortree_cpp/actions/always_failure_node.h"
#include "behaviortree_cpp/actions/always_success_node.h"
#include "behaviortree_cpp/actions/set_blackboard_node.h"
#include "behaviortree_cpp/controls/fallback_node.h"
#include "behaviortree_cpp/controls/fallback_star_node.h"
#include "behaviortree_cpp/controls/parallel_node.h"
#include "behaviortree_cpp/controls/sequence_node.h"
#include "behaviortree_cpp/controls/sequence_star_node.h"
#include "behaviortree_cpp/decorators/force_failure_node.h"
#include "behaviortree_cpp/decorators/force_success_node.h"
#include "behaviortree_cpp/decorators/inverter_node.h"
#include "behaviortree_cpp/decorators/repeat_node.h"
#include "behaviortree_cpp/decorators/retry_node.h"
#include "behaviortree_cpp/decorators/subtree_node.h"
#include "behaviortree_cpp/decorators/timeout_node.h"

namespace BT {

/// A built tree. It owns its nodes through the vector alone, root first, in creation order; links between
/// nodes own nothing. When it goes, what still runs is halted and waited for first.
struct Tree
{
    TreeNode* root_node = nullptr;
    std::vector<TreeNode::Ptr> nodes;

    Tree() = default;
    Tree(TreeNode* root, std::vector<TreeNode::Ptr> all) : root_node(root), nodes(std::move(all)) {}
    Tree(Tree&& other) noexcept
        : root_node(std::exchange(other.root_node, nullptr)), nodes(std::move(other.nodes))
    {}
    Tree& operator=(Tree&& other) noexcept;
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;
    ~Tree() { clear(); }

private:
    void clear() noexcept;
};

/// Takes the nodes of a tree while it is built. They get one owner together, which is less to keep and to
/// make than one for each: whoever keeps one of them keeps all.
class NodeCollector
{
public:
    explicit NodeCollector(std::size_t expected = 0)
    {
        owner_->reserve(expected);
        nodes_.reserve(expected);
    }

    TreeNode& add(std::unique_ptr<TreeNode> node)
    {
        owner_->push_back(std::move(node));
        nodes_.emplace_back(owner_, owner_->back().get());
        return *nodes_.back();
    }
    /// What was added, in its order.
    [[nodiscard]] const std::vector<TreeNode::Ptr>& nodes() const { return nodes_; }
    [[nodiscard]] std::vector<TreeNode::Ptr> take() { return std::move(nodes_); }

private:
    std::shared_ptr<std::vector<std::unique_ptr<TreeNode>>> owner_ =
        std::make_shared<std::vector<std::unique_ptr<TreeNode>>>();
    std::vector<TreeNode::Ptr> nodes_;
};

/// How deep nodes may be nested, in a tree and in the trees that it enters: a tick goes down from level to
/// level on the stack.
constexpr std::size_t kMaxLevels = 1000;

/// The levels of nodes from `root` down. Throws BehaviorTreeException where there are more than kMaxLevels,
/// as in a node that stands below itself. createTree() and XMLParser look for it; who links nodes by hand may
/// do so here.
std::size_t levelsOf(const TreeNode& root);

/// Calls `visitor` for `root` and each node below it, parents first. Trees entered while ticking are no
/// part of it.
void applyRecursiveVisitor(const TreeNode* root, const std::function<void(const TreeNode*)>& visitor);
void applyRecursiveVisitor(TreeNode* root, const std::function<void(TreeNode*)>& visitor);

/// Writes the names of the nodes to standard output, indented.
void printTreeRecursively(const TreeNode* root);

/// Gives `root` and each node below it another blackboard.
void assignBlackboardToEntireTree(TreeNode* root, const Blackboard::Ptr& blackboard);

/// UID and status of each node.
using SerializedTreeStatus = std::vector<std::pair<std::uint64_t, std::uint8_t>>;

/// The status of `root` and each node below it, parents first.
[[nodiscard]] SerializedTreeStatus buildSerializedStatusSnapshot(const TreeNode* root);

/// Halts `root` and all below it.
void haltAllActions(TreeNode* root);

/// The kind of node that class T makes.
template <class T>
constexpr NodeType getType()
{
    if constexpr (std::is_base_of_v<ActionNodeBase, T>)
        return NodeType::ACTION;
    else if constexpr (std::is_base_of_v<ConditionNode, T>)
        return NodeType::CONDITION;
    else if constexpr (std::is_base_of_v<DecoratorSubtreeNode, T>)
        return NodeType::SUBTREE;
    else if constexpr (std::is_base_of_v<ControlNode, T>)
        return NodeType::CONTROL;
    else if constexpr (std::is_base_of_v<DecoratorNode, T>)
        return NodeType::DECORATOR;
    else
        return NodeType::UNDEFINED;
}

}  // namespace BT
