#include "app/trees/tree_model.h"

#include <algorithm>
#include <limits>
#include <unordered_map>

#include "app/trees/node_children.h"
#include "behaviortree_cpp/bt_factory.h"
#include "leaves/contract.h"

namespace vemra::app {

namespace {

/// The label that the generator gives the stand-in of a tree without a description.
constexpr std::string_view kNotWritten = "not written";

}  // namespace

const std::string* ModelNode::port(std::string_view key) const
{
    const auto found =
        std::find_if(ports.begin(), ports.end(), [key](const auto& port) { return port.first == key; });
    return found == ports.end() ? nullptr : &found->second;
}

bool TreeModel::written() const
{
    return nodes.size() != 1 || nodes.front().name != kNotWritten;
}

std::size_t TreeModel::levels() const
{
    std::size_t deepest = 0;
    for (const ModelNode& node : nodes)
        deepest = std::max(deepest, node.depth + 1);
    return deepest;
}

void orderPorts(const std::string& id, std::vector<std::pair<std::string, std::string>>& ports)
{
    const leaf::LeafContract* contract = leaf::find(id);
    const auto place = [contract](const std::string& port) {
        // What is for viewers comes behind what the node works with.
        if (port == "expand_in_logger" || port == "display_name")
            return std::numeric_limits<std::size_t>::max();
        std::size_t at = 0;
        if (contract != nullptr)
            while (at < contract->ports.size() && contract->ports[at].name != port)
                ++at;
        return at;
    };
    std::sort(ports.begin(), ports.end(), [&place](const auto& a, const auto& b) {
        return std::pair(place(a.first), a.first) < std::pair(place(b.first), b.first);
    });
}

TreeModel modelOf(const std::string& name, const BT::Tree& tree)
{
    TreeModel model{name, std::vector<ModelNode>(tree.nodes.size())};
    std::unordered_map<const BT::TreeNode*, std::size_t> index;
    for (std::size_t i = 0; i < tree.nodes.size(); ++i)
        index.emplace(tree.nodes[i].get(), i);
    for (std::size_t i = 0; i < tree.nodes.size(); ++i) {
        const BT::TreeNode& node = *tree.nodes[i];
        ModelNode& row = model.nodes[i];
        row.id = node.registrationName();
        row.name = node.name();
        row.type = node.type();
        row.ports.assign(node.initializationParameters().begin(), node.initializationParameters().end());
        orderPorts(row.id, row.ports);
        for (const BT::TreeNode* child : childrenOf(node)) {
            const std::size_t at = index.at(child);
            row.children.push_back(at);
            model.nodes[at].parent = static_cast<int>(i);
            model.nodes[at].depth = row.depth + 1;
        }
    }
    return model;
}

std::string_view enteredTree(const ModelNode& node)
{
    const std::string* path = node.id == "SubtreeCondition" ? node.port("subtree_file_path") : nullptr;
    return path == nullptr ? std::string_view{} : BT::treeNameOfPath(*path);
}

}  // namespace vemra::app
