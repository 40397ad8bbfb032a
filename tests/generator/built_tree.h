#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "app/trees/node_children.h"
#include "behaviortree_cpp/bt_factory.h"
#include "description/node.h"

namespace vemra::test {

/// The order of a node's ports has no meaning.
inline void sortPorts(description::Node& node)
{
    std::sort(node.ports.begin(), node.ports.end(),
              [](const auto& a, const auto& b) { return a.name < b.name; });
    for (description::Node& child : node.children)
        sortPorts(child);
}

/// A built node and all below it, as it would have been described, ports sorted.
inline description::Node described(const BT::TreeNode& node)
{
    std::vector<description::PortText> ports;
    for (const auto& [name, text] : node.initializationParameters())
        ports.push_back({name, text});
    std::vector<description::Node> children;
    for (const BT::TreeNode* child : app::childrenOf(node))
        children.push_back(described(*child));
    description::Node told(node.registrationName(), std::move(ports), std::move(children));
    told.name = node.name();
    sortPorts(told);
    return told;
}

/// Whether the tree owns just the nodes of `root`, parents before children and children from left to right.
inline bool isInCreationOrder(const BT::Tree& tree)
{
    std::vector<const BT::TreeNode*> order;
    BT::applyRecursiveVisitor(static_cast<const BT::TreeNode*>(tree.root_node),
                              [&order](const BT::TreeNode* node) { order.push_back(node); });
    return std::equal(
        order.begin(), order.end(), tree.nodes.begin(), tree.nodes.end(),
        [](const BT::TreeNode* node, const BT::TreeNode::Ptr& owned) { return node == owned.get(); });
}

/// `wanted` but for the mark that only the checks look at.
inline description::Node asBuilt(description::Node wanted)
{
    wanted.stands_for_no_tree = false;
    for (description::Node& child : wanted.children)
        child = asBuilt(std::move(child));
    sortPorts(wanted);
    return wanted;
}

}  // namespace vemra::test
