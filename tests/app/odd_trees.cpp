// A library with a tree that has a name and no description, as a generator leaves it, one that enters it, one
// with a leaf that never returns, and one whose texts are markup elsewhere.

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>

#include "behaviortree_cpp/bt_factory.h"

namespace {

BT::Tree alone(BT::TreeNode::Ptr node)
{
    BT::Tree tree;
    tree.root_node = node.get();
    tree.nodes.push_back(std::move(node));
    return tree;
}

}  // namespace

BT_REGISTER_NODES(factory)
{
    // Leaves a file, so that whoever waits knows that it has come so far.
    factory.registerSimpleAction("Hang", [](BT::TreeNode&) -> BT::NodeStatus {
        if (const char* const mark = std::getenv("HANGS"))
            std::ofstream(mark) << "hangs";
        while (true)
            std::this_thread::sleep_for(std::chrono::seconds(1));
    });
    using Board = BT::Blackboard::Ptr;
    factory.registerTreeBuilder("Unwritten", [](const BT::BehaviorTreeFactory& make, const Board& board) {
        return alone(make.instantiateTreeNode("AlwaysFailure", "not written", {}, board));
    });
    factory.registerTreeBuilder("Markup", [](const BT::BehaviorTreeFactory& make, const Board& board) {
        return alone(make.instantiateTreeNode("AlwaysSuccess", "a \\ label",
                                              {{"tune", "a \"quoted\"\n<tune> & </script>"}}, board));
    });
    factory.registerTreeBuilder(
        "EntersUnwritten", [](const BT::BehaviorTreeFactory& make, const Board& board) {
            return alone(make.instantiateTreeNode("SubtreeCondition", "SubtreeCondition",
                                                  {{"subtree_file_path", "Unwritten"}}, board));
        });
    factory.registerTreeBuilder("Hangs", [](const BT::BehaviorTreeFactory& make, const Board& board) {
        return alone(make.instantiateTreeNode("Hang", "Hang", {}, board));
    });
}
