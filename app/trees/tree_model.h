#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "behaviortree_cpp/behavior_tree.h"

namespace vemra::app {

/// A node of a built tree, as data.
struct ModelNode
{
    std::string id;
    std::string name;  ///< the label; the identifier unless another was given
    BT::NodeType type = BT::NodeType::UNDEFINED;
    int parent = -1;        ///< index in the tree, -1 for the root
    std::size_t depth = 0;  ///< 0 for the root
    std::vector<std::size_t> children;
    /// In the order of the leaf contract, others behind them by name.
    std::vector<std::pair<std::string, std::string>> ports;

    [[nodiscard]] bool hasOwnName() const { return name != id; }
    /// The text of a port, nullptr when there is none of that name.
    [[nodiscard]] const std::string* port(std::string_view key) const;
};

/// A built tree, as data: its nodes in creation order, parents before children.
struct TreeModel
{
    std::string name;
    std::vector<ModelNode> nodes;

    /// False for the one node that stands for a tree without a description.
    [[nodiscard]] bool written() const;
    /// The number of levels, 1 for a lone root.
    [[nodiscard]] std::size_t levels() const;
};

/// Brings the ports of a node of the type `id` into the order in which a ModelNode has them.
void orderPorts(const std::string& id, std::vector<std::pair<std::string, std::string>>& ports);

[[nodiscard]] TreeModel modelOf(const std::string& name, const BT::Tree& tree);

/// The tree that a node enters when ticked; empty for all nodes but SubtreeCondition.
[[nodiscard]] std::string_view enteredTree(const ModelNode& node);

}  // namespace vemra::app
