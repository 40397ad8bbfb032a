#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <set>
#include <sstream>

#include "behaviortree_cpp/bt_factory.h"
#include "generator/built_tree.h"
#include "generator/described_trees.h"
#include "generator/emit.h"
#include "leaves/contract.h"

namespace vemra::test {
namespace {

using testing::HasSubstr;

constexpr const char* kPlugin = VEMRA_LIB_DIR "/libvemra_tree.so";

std::vector<std::string> linesOf(std::istream&& in)
{
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

const std::vector<std::string>& registry()
{
    static const auto kNames = linesOf(std::ifstream(VEMRA_SOURCE_DIR "/trees/registry.txt"));
    return kNames;
}

/// What loading writes to standard output is not for the eyes of who reads the tests' output.
std::string load(BT::BehaviorTreeFactory& factory)
{
    const std::ostringstream said;
    std::streambuf* const out = std::cout.rdbuf(said.rdbuf());
    factory.registerFromPlugin(kPlugin);
    std::cout.rdbuf(out);
    return said.str();
}

class Plugin : public testing::Test
{
protected:
    Plugin() { load(factory); }

    /// Any answer will do: only building is looked at.
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

TEST_F(Plugin, RegistersAllTreesInTheirOrder)
{
    EXPECT_EQ(factory.treeNames(), registry());
    EXPECT_TRUE(std::is_sorted(registry().begin(), registry().end()));
    EXPECT_TRUE(factory.hasTree("CrosslineSearch"));
    EXPECT_FALSE(factory.hasTree("CrossLineSearch"));
    EXPECT_TRUE(factory.hasTree("auto_cleanmode_set"));
}

TEST_F(Plugin, BuildsWhatIsDescribed)
{
    registerAllLeaves();
    for (const auto& tree : generator::completed(generator::describedTrees(), registry())) {
        const BT::Tree built = factory.createTree(tree.name, blackboard);
        EXPECT_TRUE(described(*built.root_node) == asBuilt(tree.root)) << tree.name;
        EXPECT_TRUE(isInCreationOrder(built)) << tree.name;
    }
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
    FILE* pipe = popen((std::string("nm -DC --defined-only ") + kPlugin).c_str(), "r");
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
