#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "behaviortree_cpp/bt_factory.h"
#include "plugin/tree_table.h"

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
        for (std::size_t i = 0; nodes_.nodes().size() < kNodes; ++i)
            leaf(factory, level[i % level.size()], static_cast<int>(i), leaves);
        tree.nodes = nodes_.take();
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

    BT::NodeCollector nodes_{kNodes};

    BT::TreeNode* make(const BT::BehaviorTreeFactory& factory, const std::string& id,
                       const BT::NodeParameters& ports, BT::TreeNode* parent)
    {
        BT::TreeNode& node = nodes_.add(factory.instantiateTreeNode(id, id, ports, blackboard));
        if (parent != nullptr)
            static_cast<BT::ControlNode*>(parent)->addChild(&node);
        return &node;
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

/// A built tree as the tables from which the plug-in makes its trees.
class TableOf
{
public:
    explicit TableOf(const BT::Tree& tree)
    {
        std::unordered_map<const BT::TreeNode*, std::uint16_t> index;
        std::unordered_map<const BT::TreeNode*, std::uint16_t> parent;
        for (const auto& node : tree.nodes) {
            const auto self = static_cast<std::uint16_t>(index.size());
            index.emplace(node.get(), self);
            if (const auto* control = dynamic_cast<const BT::ControlNode*>(node.get()))
                for (const BT::TreeNode* child : control->children())
                    parent.emplace(child, self);
            const auto first_port = static_cast<std::uint32_t>(ports_.size());
            for (const BT::Port& port : node->ports())
                ports_.push_back({text(port.name()), text(port.raw())});
            const std::uint16_t id = text(node->registrationName());
            nodes_.push_back({id, id, parent[node.get()],
                              static_cast<std::uint16_t>(ports_.size() - first_port), first_port});
        }
    }

    [[nodiscard]] plugin::TreeTable view() const { return {texts_, ports_, nodes_}; }

private:
    std::uint16_t text(std::string_view text)
    {
        texts_.push_back(text);
        return static_cast<std::uint16_t>(texts_.size() - 1);
    }

    // Views into the tree that the tables were made from.
    std::vector<std::string_view> texts_;
    std::vector<plugin::PortRow> ports_;
    std::vector<plugin::NodeRow> nodes_;
};

}  // namespace vemra::bench
