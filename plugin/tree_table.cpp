#include "plugin/tree_table.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace vemra::plugin {

namespace {

/// A node that has children, as what it takes them.
struct Parent
{
    BT::ControlNode* control = nullptr;
    BT::DecoratorNode* decorator = nullptr;
    std::size_t children = 0;

    void add(BT::TreeNode& child, BT::TreeNode& self)
    {
        if (control == nullptr && decorator == nullptr) {
            control = dynamic_cast<BT::ControlNode*>(&self);
            if (control != nullptr)
                control->expectChildren(children);
            else
                decorator = dynamic_cast<BT::DecoratorNode*>(&self);
        }
        if (control != nullptr)
            control->addChild(&child);
        else if (decorator != nullptr)
            decorator->setChild(&child);
    }
};

/// The ports of one node after the other, without memory for each anew.
class Parameters
{
public:
    const BT::NodeParameters& of(const TreeTable& table, const NodeRow& row)
    {
        while (!all_.empty())
            spare_.push_back(all_.extract(all_.begin()));
        for (const PortRow& port : table.ports.subspan(row.first_port, row.ports)) {
            if (spare_.empty()) {
                all_.emplace(table.texts[port.name], table.texts[port.text]);
                continue;
            }
            spare_.back().key() = table.texts[port.name];
            spare_.back().mapped() = table.texts[port.text];
            all_.insert(std::move(spare_.back()));
            spare_.pop_back();
        }
        return all_;
    }

private:
    BT::NodeParameters all_;
    std::vector<BT::NodeParameters::node_type> spare_;
};

}  // namespace

BT::Tree buildTree(const TreeTable& table, const BT::BehaviorTreeFactory& factory,
                   const std::shared_ptr<BT::Blackboard>& blackboard)
{
    BT::NodeCollector nodes(table.nodes.size());
    std::vector<Parent> parents(table.nodes.size());
    for (const NodeRow& row : table.nodes.subspan(std::min<std::size_t>(table.nodes.size(), 1)))
        ++parents[row.parent].children;
    std::string id;
    std::string name;
    Parameters parameters;
    for (const NodeRow& row : table.nodes) {
        id = table.texts[row.id];
        name = table.texts[row.name];
        const bool is_root = nodes.nodes().empty();
        BT::TreeNode& node =
            nodes.add(factory.instantiateTreeNode(id, name, parameters.of(table, row), blackboard));
        if (!is_root)
            parents[row.parent].add(node, *nodes.nodes()[row.parent]);
    }
    BT::Tree tree;
    tree.nodes = nodes.take();
    tree.root_node = tree.nodes.empty() ? nullptr : tree.nodes.front().get();
    return tree;
}

}  // namespace vemra::plugin
