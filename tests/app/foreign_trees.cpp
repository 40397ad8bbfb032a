// A library of trees as somebody else might bring it: with texts that are markup elsewhere, a leaf that
// nobody knows and one that never returns, a tree that enters itself, and one that has a name and no
// description, as a generator leaves it.

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>

#include "support/hang.h"

namespace {

using BT::NodeStatus;
using Factory = BT::BehaviorTreeFactory;
using Board = BT::Blackboard::Ptr;

struct Node
{
    std::string id;
    BT::NodeParameters ports;
    std::string label;
    std::vector<Node> below;
};

BT::TreeNode& grow(BT::Tree& tree, const Node& node, const Factory& factory, const Board& board)
{
    tree.nodes.push_back(
        factory.instantiateTreeNode(node.id, node.label.empty() ? node.id : node.label, node.ports, board));
    BT::TreeNode& made = *tree.nodes.back();
    for (const Node& child : node.below)
        vemra::test::hang(made, grow(tree, child, factory, board));
    return made;
}

Node enter(const std::string& tree)
{
    return {"SubtreeCondition", {{"subtree_file_path", tree}}, {}, {}};
}

Node twin(const std::string& body)
{
    return {"SubTree", {{"name", "Twin"}}, "Twin", {{body, {}, {}, {}}}};
}

}  // namespace

BT_REGISTER_NODES(factory)
{
    factory.registerSimpleAction("Whistle", [](BT::TreeNode&) { return NodeStatus::SUCCESS; });
    // Leaves a file, so that whoever waits knows that it has come so far.
    factory.registerSimpleAction("Hang", [](BT::TreeNode&) -> NodeStatus {
        if (const char* const mark = std::getenv("HANGS"))
            std::ofstream(mark) << "hangs";
        while (true)
            std::this_thread::sleep_for(std::chrono::seconds(1));
    });
    const auto tree = [&factory](const char* name, const Node& root) {
        factory.registerTreeBuilder(name, [root](const Factory& made_by, const Board& board) {
            BT::Tree built;
            built.root_node = &grow(built, root, made_by, board);
            return built;
        });
    };
    tree("InnerTwins",
         {"Sequence", {}, {}, {twin("AlwaysSuccess"), twin("AlwaysFailure"), twin("AlwaysSuccess")}});
    tree("OwnLeaf", {"Whistle", {{"tune", "a \"quoted\"\n<tune> & </script>"}}, "a \\ label", {}});
    tree("EntersItself", {"Fallback", {}, {}, {enter("reuse/EntersItself.xml"), enter("Nowhere")}});
#ifndef FOR_THE_ROBOT
    // Also in the contract: whoever brings an own one is left it.
    factory.registerSimpleAction("Rotate", [](BT::TreeNode&) { return NodeStatus::SUCCESS; });
    tree("UnknownLeaf", {"NobodyKnowsThis", {}, {}, {}});
#endif
    tree("Unwritten", {"AlwaysFailure", {}, "not written", {}});
    tree("EntersUnwritten", enter("Unwritten"));
    tree("Hangs", {"Hang", {}, {}, {}});
}
