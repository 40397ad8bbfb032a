#pragma once

#include <memory>
#include <string>
#include <vector>

#include "behaviortree_cpp/bt_factory.h"

namespace vemra::bench {

/// The tree by which behaviour-tree runtimes are compared here: 1,020 nodes on ten levels, of which 255 are
/// sequences, 510 conditions that each read one `${key}` port as an integer, and 255 `SetBlackboard`. Every
/// node is visited, and ends, in every tick.
struct ReferenceTree
{
    static constexpr int kNodes = 1020;

    enum class Leaves
    {
        Mixed,
        Constant  ///< all leaves are AlwaysSuccess
    };

    explicit ReferenceTree(const BT::BehaviorTreeFactory& factory, Leaves leaves = Leaves::Mixed,
                           BT::Blackboard::Ptr board = BT::Blackboard::create<BT::BlackboardLocal>())
        : blackboard(std::move(board))
    {
        for (int key = 0; key < kKeys; ++key)
            blackboard->set("key_" + std::to_string(key), key + 1);
        tree.nodes.reserve(kNodes);
        tree.root_node = composite(factory, nullptr);
        std::vector<BT::TreeNode*> level{tree.root_node};
        for (int depth = 2; depth <= 9; ++depth) {
            const int below = depth <= 7 ? 2 : 1;
            std::vector<BT::TreeNode*> next;
            for (BT::TreeNode* parent : level)
                for (int i = 0; i < below; ++i)
                    next.push_back(composite(factory, parent));
            level = std::move(next);
        }
        for (std::size_t i = 0; tree.nodes.size() < kNodes; ++i)
            leaf(factory, level[i % level.size()], static_cast<int>(i), leaves);
    }

    static void registerLeaves(BT::BehaviorTreeFactory& factory)
    {
        factory.registerSimpleCondition("KeyIsPositive", [](BT::TreeNode& node) {
            int value = 0;
            return node.getParam("value", value) && value > 0 ? BT::NodeStatus::SUCCESS
                                                              : BT::NodeStatus::FAILURE;
        });
    }

    BT::Blackboard::Ptr blackboard;
    BT::Tree tree;

private:
    static constexpr int kKeys = 40;

    BT::TreeNode* make(const BT::BehaviorTreeFactory& factory, const std::string& id,
                       const BT::NodeParameters& ports, BT::TreeNode* parent)
    {
        BT::TreeNode::Ptr node = factory.instantiateTreeNode(id, id, ports, blackboard);
        if (parent != nullptr)
            static_cast<BT::ControlNode*>(parent)->addChild(node.get());
        tree.nodes.push_back(std::move(node));
        return tree.nodes.back().get();
    }

    BT::TreeNode* composite(const BT::BehaviorTreeFactory& factory, BT::TreeNode* parent)
    {
        return make(factory, "Sequence", {}, parent);
    }

    void leaf(const BT::BehaviorTreeFactory& factory, BT::TreeNode* parent, int number, Leaves leaves)
    {
        const std::string key = "key_" + std::to_string(number % kKeys);
        if (leaves == Leaves::Constant)
            make(factory, "AlwaysSuccess", {}, parent);
        else if (number % 3 == 2)
            make(factory, "SetBlackboard",
                 {{"key", "out_" + std::to_string(number % kKeys)}, {"value", "true"}}, parent);
        else
            make(factory, "KeyIsPositive", {{"value", "${" + key + "}"}}, parent);
    }
};

}  // namespace vemra::bench
