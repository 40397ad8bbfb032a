// A library of trees as somebody else might bring it: with texts that are markup elsewhere, a leaf that
// nobody knows and one that never returns, a tree that enters itself, and one that has a name and no
// description, as a generator leaves it.

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>

#include "support/sketched_tree.h"

BT_REGISTER_NODES(factory)
{
    using namespace vemra::test;
    using BT::NodeStatus;
    factory.registerSimpleAction("Whistle", [](BT::TreeNode&) { return NodeStatus::SUCCESS; });
    // Leaves a file, so that whoever waits knows that it has come so far.
    factory.registerSimpleAction("Hang", [](BT::TreeNode&) -> NodeStatus {
        if (const char* const mark = std::getenv("HANGS"))
            std::ofstream(mark) << "hangs";
        while (true)
            std::this_thread::sleep_for(std::chrono::seconds(1));
    });
    const auto twin = [](const char* body) {
        return Sketch{"SubTree", {{"name", "Twin"}}, {leaf(body)}, "Twin"};
    };
    registerTree(factory, "InnerTwins",
                 node("Sequence", {twin("AlwaysSuccess"), twin("AlwaysFailure"), twin("AlwaysSuccess")}));
    registerTree(factory, "OwnLeaf",
                 {"Whistle", {{"tune", "a \"quoted\"\n<tune> & </script>"}}, {}, "a \\ label"});
    registerTree(factory, "EntersItself",
                 node("Fallback", {enter("reuse/EntersItself.xml"), enter("Nowhere")}));
#ifndef FOR_THE_ROBOT
    // Also in the contract: whoever brings an own one is left it.
    factory.registerSimpleAction("Rotate", [](BT::TreeNode&) { return NodeStatus::SUCCESS; });
    registerTree(factory, "UnknownLeaf", leaf("NobodyKnowsThis"));
#endif
    registerTree(factory, "Unwritten", {"AlwaysFailure", {}, {}, "not written"});
    registerTree(factory, "EntersUnwritten", enter("Unwritten"));
    registerTree(factory, "Hangs", leaf("Hang"));
}
