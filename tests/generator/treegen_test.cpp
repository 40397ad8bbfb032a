#include "generator/treegen.h"

#include <iostream>
#include <sstream>

#include "generator/awkward_trees.h"
#include "generator/built_tree.h"
#include "generator/emit.h"
#include "plugin/tree_table.h"
#include "support/folder.h"
#include "support/matchers.h"

namespace vemra::test {
namespace {

namespace fs = std::filesystem;
using description::NamedTree;
using description::Node;

struct Treegen : testing::Test
{
    int run(const std::string& registry, std::vector<NamedTree> trees)
    {
        return command({"--registry", folder_.write("registry.txt", registry), "--source", source_,
                        "--exports", exports_},
                       std::move(trees));
    }
    int command(const std::vector<std::string>& arguments, std::vector<NamedTree> trees)
    {
        std::vector<const char*> argv{"treegen"};
        for (const std::string& argument : arguments)
            argv.push_back(argument.c_str());
        std::ostringstream said;
        std::streambuf* const err = std::cerr.rdbuf(said.rdbuf());
        std::streambuf* const out = std::cout.rdbuf(said.rdbuf());
        const int code = generator::treegen(static_cast<int>(argv.size()), argv.data(), std::move(trees));
        std::cerr.rdbuf(err);
        std::cout.rdbuf(out);
        said_ = said.str();
        return code;
    }

    const Folder folder_;
    const fs::path source_ = folder_ / "out" / "trees.cpp";
    const fs::path exports_ = folder_ / "out" / "exports.map";
    std::string said_;
};

TEST_F(Treegen, TouchesNoFileWhenItRefuses)
{
    ASSERT_EQ(run("A\n", {{"A", Node("AlwaysSuccess", {}, {})}}), 0) << said_;
    const std::string before = bytesOf(source_);
    EXPECT_EQ(run("A\nB\n", {{"A", Node("Inverter", {}, {})}, {"B", Node("Repeat", {}, {})}}), 2);
    EXPECT_THAT(said_, HasSubstr("treegen: A: Inverter: Inverter takes exactly 1 child, has 0\n"));
    EXPECT_THAT(said_, HasSubstr("treegen: B: Repeat: "));  // all faults at once
    EXPECT_EQ(bytesOf(source_), before);
}

TEST_F(Treegen, NamesLineAndReasonOfAWrongRegistry)
{
    EXPECT_EQ(run("A\nB\nA\n", {}), 2);
    EXPECT_THAT(said_, HasSubstr("registry.txt:3: 'A' stands twice"));
    EXPECT_EQ(run("Back2cm\nBTBack2cm\n", {}), 2);
    EXPECT_THAT(said_, HasSubstr("registry.txt:2: 'BTBack2cm' is out of order"));
    EXPECT_EQ(run("A\nB 2\n", {}), 2);
    EXPECT_THAT(said_, HasSubstr("registry.txt:2: 'B 2' cannot be a tree's name"));
    EXPECT_EQ(command({"--registry", folder_ / "none.txt"}, {}), 2);
    EXPECT_THAT(said_, HasSubstr("none.txt: cannot be read"));
    EXPECT_EQ(command({}, {}), 2);
    EXPECT_THAT(said_, HasSubstr("--registry is required"));
    EXPECT_EQ(command({"--help"}, {}), 0);
    EXPECT_FALSE(fs::exists(source_));
}

TEST_F(Treegen, LeavesAFileAloneThatSaysTheSame)
{
    ASSERT_EQ(run("A\n", {}), 0) << said_;
    const auto long_ago = fs::last_write_time(source_) - std::chrono::hours(1);
    fs::last_write_time(source_, long_ago);
    ASSERT_EQ(run("A\n", {}), 0);
    EXPECT_EQ(fs::last_write_time(source_), long_ago);
    ASSERT_EQ(run("A\nB\n", {}), 0);
    EXPECT_GT(fs::last_write_time(source_), long_ago);
    EXPECT_THAT(bytesOf(exports_), HasSubstr("\"buildB(BT::BehaviorTreeFactory const&, "));
    fs::remove_all(folder_ / "out");
    folder_.write("out", "no folder");
    EXPECT_EQ(run("A\n", {}), 2);
    EXPECT_THAT(said_, HasSubstr("treegen: "));
}

TEST(Tables, GiveBackWhatWasDescribed)
{
    BT::BehaviorTreeFactory factory;
    factory.registerSimpleAction("SaySomething", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
    const auto blackboard = BT::Blackboard::create<BT::BlackboardLocal>();
    const auto trees = generator::completed(awkwardTrees(), {"Not_written", "Z", "_", "auto_mode"});
    const auto entries = plugin::treeEntries();
    ASSERT_EQ(entries.size(), trees.size());
    EXPECT_EQ(trees.front().root.name, "not written");
    for (std::size_t i = 0; i < trees.size(); ++i) {
        EXPECT_EQ(entries[i].name, trees[i].name);
        const BT::Tree built = entries[i].builder(factory, blackboard);
        EXPECT_TRUE(described(*built.root_node) == asBuilt(trees[i].root)) << trees[i].name;
        EXPECT_TRUE(isInCreationOrder(built)) << trees[i].name;
    }
}

TEST(Tables, RefuseATreeThatOutgrowsThem)
{
    std::vector<Node> many(70000, Node("AlwaysSuccess", {}, {}));
    std::ostringstream out;
    EXPECT_THROW(generator::emitSource(out, {{"A", Node("Sequence", {}, std::move(many))}}),
                 std::length_error);
    EXPECT_TRUE(out.str().empty());
}

}  // namespace
}  // namespace vemra::test
