#include <set>

#include "plugin/plugin_rig.h"
#include "support/program.h"

namespace vemra::test {
namespace {

TEST_F(Plugin, RegistersAllTreesInTheirOrder)
{
    EXPECT_EQ(factory.treeNames(), registry());
    EXPECT_TRUE(std::is_sorted(registry().begin(), registry().end()));
    EXPECT_FALSE(factory.hasTree("CrossLineSearch")) << "letter for letter";
}

TEST_F(Plugin, AnUnknownLeafComesOutOfTheBuildFunction)
{
    EXPECT_THAT([this] { (void)factory.createTree("Escape", blackboard); },
                ThrowsMessage<BT::BehaviorTreeException>(HasSubstr("no node type '")));
    registerAllLeaves();
    EXPECT_FALSE(factory.createTree("Escape", blackboard).nodes.empty());
}

TEST(PluginFile, ExportsTheEntryPointAndTheBuildFunctionsAlone)
{
    std::set<std::string> wanted{"BT_RegisterNodesFromPlugin"};
    for (const std::string& name : registry())
        wanted.insert("build" + name +
                      "(BT::BehaviorTreeFactory const&, std::shared_ptr<BT::Blackboard> const&)");
    const ProgramResult symbols = runProgram({VEMRA_NM, "-DC", "--defined-only", kPlugin});
    ASSERT_EQ(symbols.exit_code, 0) << symbols.err;
    std::set<std::string> exported;
    for (const std::string& line : linesOf(symbols.out))  // address, type, name
        exported.insert(line.substr(line.find(' ') + 3));
    EXPECT_EQ(exported, wanted);
}

}  // namespace
}  // namespace vemra::test
