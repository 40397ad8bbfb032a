#pragma once

#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "behaviortree_cpp/bt_factory.h"
#include "leaves/contract.h"
#include "support/folder.h"
#include "support/matchers.h"

namespace vemra::test {

constexpr const char* kPlugin = VEMRA_LIB_DIR "/libvemra_tree.so";

inline const std::vector<std::string>& registry()
{
    static const auto kNames = linesOf(bytesOf(VEMRA_SOURCE_DIR "/trees/registry.txt"));
    return kNames;
}

// What loading writes to standard output is not for the eyes of who reads the tests' output.
inline std::string load(BT::BehaviorTreeFactory& factory)
{
    const std::ostringstream said;
    std::streambuf* const out = std::cout.rdbuf(said.rdbuf());
    factory.registerFromPlugin(kPlugin);
    std::cout.rdbuf(out);
    return said.str();
}

struct Plugin : testing::Test
{
    Plugin() { load(factory); }

    // Any answer will do: only building is looked at.
    void registerAllLeaves()
    {
        for (const leaf::LeafContract& leaf : leaf::all())
            if (!factory.builders().contains(std::string(leaf.id)))
                factory.registerSimpleAction(std::string(leaf.id),
                                             [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
    }

    BT::BehaviorTreeFactory factory;
    BT::Blackboard::Ptr blackboard = BT::Blackboard::create<BT::BlackboardLocal>();
};

}  // namespace vemra::test
