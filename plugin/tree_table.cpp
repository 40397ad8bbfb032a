#include "plugin/tree_table.h"

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

    void add(BT::TreeNode& child, BT::TreeNode& self)
    {
        if (control == nullptr && decorator == nullptr) {
            control = dynamic_cast<BT::ControlNode*>(&self);
            if (control == nullptr)
                decorator = dynamic_cast<BT::DecoratorNode*>(&self);
        }
        if (control != nullptr)
            control->addChild(&child);
        else if (decorator != nullptr)
            decorator->setChild(&child);
    }
};

}  // namespace

BT::Tree buildTree(const TreeTable& table, const BT::BehaviorTreeFactory& factory,
                   const std::shared_ptr<BT::Blackboard>& blackboard)
{
    BT::Tree tree;
    tree.nodes.reserve(table.nodes.size());
    std::vector<Parent> parents(table.nodes.size());
    std::string id;
    std::string name;
    BT::NodeParameters parameters;
    for (const NodeRow& row : table.nodes) {
        id = table.texts[row.id];
        name = table.texts[row.name];
        parameters.clear();
        for (const PortRow& port : table.ports.subspan(row.first_port, row.ports))
            parameters.emplace(table.texts[port.name], table.texts[port.text]);
        BT::TreeNode::Ptr node = factory.instantiateTreeNode(id, name, parameters, blackboard);
        if (!tree.nodes.empty())
            parents[row.parent].add(*node, *tree.nodes[row.parent]);
        tree.nodes.push_back(std::move(node));
    }
    tree.root_node = tree.nodes.empty() ? nullptr : tree.nodes.front().get();
    return tree;
}

}  // namespace vemra::plugin
