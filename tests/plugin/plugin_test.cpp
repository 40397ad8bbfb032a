#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <set>

#include "plugin/plugin_rig.h"

namespace vemra::test {
namespace {

using testing::HasSubstr;

TEST_F(Plugin, RegistersAllTreesInTheirOrder)
{
    EXPECT_EQ(factory.treeNames(), registry());
    EXPECT_TRUE(std::is_sorted(registry().begin(), registry().end()));
    EXPECT_TRUE(factory.hasTree("CrosslineSearch"));
    EXPECT_FALSE(factory.hasTree("CrossLineSearch"));
    EXPECT_TRUE(factory.hasTree("auto_cleanmode_set"));
}

TEST_F(Plugin, EachBuildMakesNodesOfItsOwn)
{
    registerAllLeaves();
    const BT::Tree first = factory.createTree("Escape", blackboard);
    const BT::Tree second = factory.createTree("Escape", blackboard);
    ASSERT_EQ(first.nodes.size(), second.nodes.size());
    std::set<const BT::TreeNode*> nodes;
    for (const BT::Tree* tree : {&first, &second})
        for (const auto& node : tree->nodes)
            nodes.insert(node.get());
    EXPECT_EQ(nodes.size(), first.nodes.size() * 2);

    const BT::Tree lone = factory.createTree("AlwaysFailure", blackboard);
    ASSERT_EQ(lone.nodes.size(), 1u);
    EXPECT_EQ(lone.root_node->name(), "AlwaysFailure");
    EXPECT_EQ(lone.root_node->executeTick(), BT::NodeStatus::FAILURE);
}

TEST_F(Plugin, AnUnknownLeafComesOutOfTheBuildFunction)
{
    EXPECT_THAT([this] { (void)factory.createTree("Escape", blackboard); },
                testing::ThrowsMessage<BT::BehaviorTreeException>(HasSubstr("no node type '")));
    registerAllLeaves();
    EXPECT_FALSE(factory.createTree("Escape", blackboard).nodes.empty());
}

TEST(PluginFile, ExportsTheEntryPointAndTheBuildFunctionsAlone)
{
    std::set<std::string> wanted{"BT_RegisterNodesFromPlugin"};
    for (const std::string& name : registry())
        wanted.insert("build" + name +
                      "(BT::BehaviorTreeFactory const&, std::shared_ptr<BT::Blackboard> const&)");
    FILE* pipe = popen((std::string(VEMRA_NM " -DC --defined-only ") + kPlugin).c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::set<std::string> exported;
    for (std::array<char, 512> line{}; std::fgets(line.data(), line.size(), pipe) != nullptr;) {
        // address, type, name
        const std::string text = line.data();
        exported.insert(text.substr(text.find(' ') + 3, text.size() - text.find(' ') - 4));
    }
    ASSERT_EQ(pclose(pipe), 0);
    EXPECT_EQ(exported, wanted);
}

}  // namespace
}  // namespace vemra::test
