#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "behaviortree_cpp/bt_factory.h"

namespace vemra::plugin {

/// A port of a node: its name and its text, as indices of the table of texts.
struct PortRow
{
    std::uint16_t name;
    std::uint16_t text;
};

/// A node of a tree, in creation order: parents before children, children from left to right.
struct NodeRow
{
    std::uint16_t id;
    std::uint16_t name;
    std::uint16_t parent;  ///< index of the parent in its tree; the root names itself
    std::uint16_t ports;
    std::uint32_t first_port;
};

struct TreeTable
{
    std::span<const std::string_view> texts;
    std::span<const PortRow> ports;
    std::span<const NodeRow> nodes;
};

/// Makes the nodes of a tree through the factory and links them. What the factory throws comes through,
/// and nothing is left behind.
[[nodiscard]] BT::Tree buildTree(const TreeTable& table, const BT::BehaviorTreeFactory& factory,
                                 const std::shared_ptr<BT::Blackboard>& blackboard);

/// A registered tree: its name and its build function.
struct TreeEntry
{
    const char* name;
    BT::Tree (*builder)(const BT::BehaviorTreeFactory&, const std::shared_ptr<BT::Blackboard>&);
};

/// All trees, in the order of registration.
[[nodiscard]] std::span<const TreeEntry> treeEntries();

}  // namespace vemra::plugin
