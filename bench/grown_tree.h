#pragma once

#include <string>
#include <utility>

#include "behaviortree_cpp/bt_factory.h"

namespace vemra::bench {

/// A tree of any size, to see how the cost of a tick grows: a chain of sequences, one to a level, that
/// share out conditions which each read one of the keys. Every node is visited, and ends, in every tick.
struct GrownTree
{
    struct Size
    {
        int nodes = 1000;
        int keys = 40;
        int levels = 10;
    };

    /// The factory knows KeyIsPositive.
    GrownTree(const BT::BehaviorTreeFactory& factory, Size size)
    {
        for (int key = 0; key < size.keys; ++key)
            blackboard->set("key_" + std::to_string(key), key + 1);
        BT::NodeCollector nodes;
        std::vector<BT::ControlNode*> chain;
        const auto add = [&](const std::string& id, const BT::NodeParameters& ports,
                             BT::ControlNode* parent) {
            BT::TreeNode& node = nodes.add(factory.instantiateTreeNode(id, id, ports, blackboard));
            if (parent != nullptr)
                parent->addChild(&node);
            return &node;
        };
        for (int level = 1; level < size.levels; ++level)
            chain.push_back(
                static_cast<BT::ControlNode*>(add("Sequence", {}, chain.empty() ? nullptr : chain.back())));
        for (int leaf = 0; leaf < size.nodes - size.levels + 1; ++leaf) {
            const std::string key = "key_" + std::to_string(leaf % size.keys);
            add("KeyIsPositive", {{"value", "${" + key + "}"}},
                chain[static_cast<std::size_t>(leaf) % chain.size()]);
        }
        tree.nodes = nodes.take();
        tree.root_node = tree.nodes.front().get();
    }

    BT::Blackboard::Ptr blackboard = BT::Blackboard::create<BT::BlackboardLocal>();
    BT::Tree tree;
};

}  // namespace vemra::bench
