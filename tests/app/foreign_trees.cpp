#include <initializer_list>
#include <string>

#include "behaviortree_cpp/bt_factory.h"

namespace {

struct Made
{
    const BT::BehaviorTreeFactory& factory;
    const BT::Blackboard::Ptr& blackboard;
    BT::Tree tree;

    BT::TreeNode* add(const std::string& id, const BT::NodeParameters& ports = {},
                      const std::string& label = {})
    {
        tree.nodes.push_back(factory.instantiateTreeNode(id, label.empty() ? id : label, ports, blackboard));
        return tree.nodes.back().get();
    }
    BT::TreeNode* over(BT::TreeNode* above, BT::TreeNode* child)
    {
        if (auto* control = dynamic_cast<BT::ControlNode*>(above))
            control->addChild(child);
        else
            dynamic_cast<BT::DecoratorNode&>(*above).setChild(child);
        return child;
    }
    BT::Tree done()
    {
        tree.root_node = tree.nodes.front().get();
        return std::move(tree);
    }
};

BT::Tree innerTwins(const BT::BehaviorTreeFactory& factory, const BT::Blackboard::Ptr& blackboard)
{
    Made made{factory, blackboard, {}};
    BT::TreeNode* root = made.add("Sequence");
    for (const char* body : {"AlwaysSuccess", "AlwaysFailure", "AlwaysSuccess"}) {
        BT::TreeNode* inner = made.over(root, made.add("SubTree", {{"name", "Twin"}}, "Twin"));
        made.over(inner, made.add(body));
    }
    return made.done();
}

BT::Tree ownLeaf(const BT::BehaviorTreeFactory& factory, const BT::Blackboard::Ptr& blackboard)
{
    Made made{factory, blackboard, {}};
    made.add("Whistle", {{"tune", "a \"quoted\"\n<tune> & more"}}, "a \\ label");
    return made.done();
}

BT::Tree entersItself(const BT::BehaviorTreeFactory& factory, const BT::Blackboard::Ptr& blackboard)
{
    Made made{factory, blackboard, {}};
    BT::TreeNode* root = made.add("Fallback");
    made.over(root, made.add("SubtreeCondition", {{"subtree_file_path", "reuse/EntersItself.xml"}}));
    made.over(root, made.add("SubtreeCondition", {{"subtree_file_path", "Nowhere"}}));
    return made.done();
}

BT::Tree unknownLeaf(const BT::BehaviorTreeFactory& factory, const BT::Blackboard::Ptr& blackboard)
{
    Made made{factory, blackboard, {}};
    made.add("NobodyKnowsThis");
    return made.done();
}

}  // namespace

BT_REGISTER_NODES(factory)
{
    factory.registerSimpleAction("Whistle", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
    // Also in the contract: whoever brings an own one is left it.
    factory.registerSimpleAction("Rotate", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
    factory.registerTreeBuilder("InnerTwins", innerTwins);
    factory.registerTreeBuilder("OwnLeaf", ownLeaf);
    factory.registerTreeBuilder("EntersItself", entersItself);
    factory.registerTreeBuilder("UnknownLeaf", unknownLeaf);
}
