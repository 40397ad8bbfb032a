#include "behaviortree_cpp/behavior_tree.h"

#include <iostream>

#include "behaviortree_cpp/loggers/abstract_logger.h"
#include "behaviortree_cpp/loggers/bt_cout_logger.h"

namespace BT {

namespace {

void visit(TreeNode* node, std::size_t depth, const std::function<void(TreeNode*, std::size_t)>& visitor)
{
    if (node == nullptr)
        return;
    visitor(node, depth);
    if (auto* control = dynamic_cast<ControlNode*>(node))
        for (TreeNode* child : control->children())
            visit(child, depth + 1, visitor);
    else if (auto* decorator = dynamic_cast<DecoratorNode*>(node))
        visit(decorator->child(), depth + 1, visitor);
}

}  // namespace

Tree& Tree::operator=(Tree&& other) noexcept
{
    if (this != &other) {
        clear();
        root_node = std::exchange(other.root_node, nullptr);
        nodes = std::move(other.nodes);
    }
    return *this;
}

void Tree::clear() noexcept
{
    if (root_node != nullptr && !nodes.empty())
        try {
            haltAllActions(root_node);
        } catch (...) {
            // There is nobody left to tell. Who wants to hear of it halts the tree beforehand.
        }
    for (const TreeNode::Ptr& node : nodes)
        if (auto* action = dynamic_cast<AsyncActionNode*>(node.get()))
            action->waitForHaltedRun();
    root_node = nullptr;
    nodes.clear();
}

void applyRecursiveVisitor(TreeNode* root, const std::function<void(TreeNode*)>& visitor)
{
    visit(root, 0, [&visitor](TreeNode* node, std::size_t) { visitor(node); });
}

void applyRecursiveVisitor(const TreeNode* root, const std::function<void(const TreeNode*)>& visitor)
{
    // The walk changes nothing; the visitor sees constant nodes.
    visit(const_cast<TreeNode*>(root), 0,  // NOLINT(cppcoreguidelines-pro-type-const-cast)
          [&visitor](TreeNode* node, std::size_t) { visitor(node); });
}

void printTreeRecursively(const TreeNode* root)
{
    std::cout << "----------------\n";
    visit(const_cast<TreeNode*>(root), 0,  // NOLINT(cppcoreguidelines-pro-type-const-cast)
          [](TreeNode* node, std::size_t depth) {
              std::cout << std::string(depth * 3, ' ') << node->name() << '\n';
          });
    std::cout << "----------------" << std::endl;
}

void assignBlackboardToEntireTree(TreeNode* root, const Blackboard::Ptr& blackboard)
{
    applyRecursiveVisitor(root, [&blackboard](TreeNode* node) { node->setBlackboard(blackboard); });
}

SerializedTreeStatus buildSerializedStatusSnapshot(const TreeNode* root)
{
    SerializedTreeStatus all;
    applyRecursiveVisitor(root, [&all](const TreeNode* node) {
        all.emplace_back(node->UID(), static_cast<std::uint8_t>(node->status()));
    });
    return all;
}

void haltAllActions(TreeNode* root)
{
    if (root != nullptr)
        haltNode(*root);
}

StatusChangeLogger::StatusChangeLogger(TreeNode* root)
    : start_(root != nullptr ? root->clockTime() : std::chrono::high_resolution_clock::now())
{
    applyRecursiveVisitor(root, [this](TreeNode* node) {
        subscribers_.push_back(node->subscribeToStatusChange(
            [this](TimePoint time, const TreeNode& changed, NodeStatus before, NodeStatus now) {
                if (enabled_ && (show_idle_ || now != NodeStatus::IDLE))
                    callback(time - start_, changed, before, now);
            }));
    });
}

void StdCoutLogger::callback(Duration timestamp, const TreeNode& node, NodeStatus previous, NodeStatus now)
{
    const double seconds = std::chrono::duration<double>(timestamp).count();
    std::cout << '[' << seconds << "]: " << node.name() << "  " << previous << " -> " << now << '\n';
}

void StdCoutLogger::flush()
{
    std::cout << std::flush;
}

}  // namespace BT
