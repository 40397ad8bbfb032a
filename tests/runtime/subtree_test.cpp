#include "behaviortree_cpp/decorators/subtree_condition_node.h"
#include "runtime/scripted_tree.h"
#include "support/matchers.h"

namespace vemra::test {
namespace {

struct Subtree : testing::Test
{
    Subtree() { t.registerTree("Inner", action("a", "RS")); }

    ScriptedTree t;
};

TEST_F(Subtree, AllFormsOfAPathReachTheSameTree)
{
    t.registerTree("Escape", action("a", "S"));
    t.plant(
        node("Sequence", {enter("Escape"), enter("Escape.xml"), enter("reuse/Escape"),
                          enter("reuse/Escape.xml"), enter("tidemark_pro/Escape.xml"), enter("${tree}")}));
    t.blackboard->set("tree", "x/Escape.xml");
    EXPECT_EQ(t.tick(), "S a a a a a a");
    EXPECT_EQ(t.built["a"], 1);
}

TEST_F(Subtree, AnUnknownTreeIsAFailureAndNothingElse)
{
    t.registerTree("CrosslineSearch", action("a", "S"));
    t.factory.registerTreeBuilder("Empty", [](const auto&, const auto&) { return BT::Tree{}; });
    for (const char* path : {"reuse/CrossLineSearch", "", "/", ".xml", "${none}", "Empty"}) {
        t.plant(node("ForceSuccess", {enter(path)}));
        EXPECT_EQ(t.tick(), "S") << path;
        EXPECT_EQ(t.at("SubtreeCondition").status(), BT::NodeStatus::FAILURE) << path;
        EXPECT_EQ(t.tick(), "S") << path;
        EXPECT_EQ(t.halt(), "I") << path;
    }
}

TEST_F(Subtree, IsMadeWhenFirstTickedAndGoesBackWhenItEndsOrIsHalted)
{
    t.plant(node("SequenceStar", {enter("Inner"), enter("Inner.xml")}));
    EXPECT_EQ(t.built["a"], 0);
    // The second entry takes over what the first gave back.
    EXPECT_EQ(t.ticks(2), "R a, R a a");
    EXPECT_EQ(t.halt(), "I a!");
    EXPECT_EQ(t.tick(), "R a a");
    EXPECT_EQ(t.built["a"], 1);
    EXPECT_EQ(t.tick(), "S a");
}

TEST_F(Subtree, RunningSideBySideEachEntryHasItsOwn)
{
    t.plant(node("ParallelNode", {{"threshold", "2"}}, {enter("Inner"), enter("Inner")}));
    t.script->places["a"] = 0;
    EXPECT_EQ(t.tick(), "R a a");
    EXPECT_EQ(t.built["a"], 2);
    t.halt();
    t.tick();
    EXPECT_EQ(t.built["a"], 2);
}

TEST_F(Subtree, ALaterBuilderOfANameTakesOver)
{
    t.plant(node("ForceSuccess", {enter("Inner")}));
    EXPECT_EQ(t.tick(), "R a");
    t.registerTree("Inner", action("b", "F"));
    // What runs is run to its end.
    EXPECT_EQ(t.ticks(3), "S a, S b, S b");
    EXPECT_EQ(t.built["b"], 1);
}

TEST_F(Subtree, WhatABuilderThrowsComesOutOfTheTick)
{
    t.registerTree("Broken", node("Sequence", {action("a", "S"), leaf("NoSuchLeaf")}));
    t.plant(enter("Broken"));
    EXPECT_THROW(t.tick(), BT::BehaviorTreeException);
    EXPECT_EQ(t.halt(), "I");
}

TEST_F(Subtree, WhatIsPreparedIsNotMadeInATick)
{
    t.registerTree("Outer", node("SequenceStar", {enter("Inner"), enter("${name}")}));
    t.registerTree("Late", action("late", "S"));
    t.blackboard->set("name", "Late");
    t.plant(node("Sequence", {enter("Outer"), enter("Unknown")}));
    BT::prepareTrees(t.tree);
    BT::prepareTrees(t.tree);
    EXPECT_EQ(t.built["SequenceStar"], 1);
    EXPECT_EQ(t.built["a"], 1);
    EXPECT_EQ(t.ticks(2), "R a, F a late");
    EXPECT_EQ(t.built["SequenceStar"], 1);
    EXPECT_EQ(t.built["a"], 1);
    EXPECT_EQ(t.built["late"], 1);
}

TEST_F(Subtree, TreesThatEnterThemselvesAreRefused)
{
    t.registerTree("Ping", node("Sequence", {enter("Pong")}));
    t.registerTree("Pong", node("Inverter", {enter("Ping.xml")}));
    t.plant(node("Sequence", {enter("Ping")}));
    EXPECT_THROW(t.tick(), BT::BehaviorTreeException);
    EXPECT_EQ(t.halt(), "I");
    t.plant(node("Sequence", {enter("Inner")}));
    EXPECT_EQ(t.tick(), "R a");
}

TEST(Levels, ATreeDeeperThanTheStackAllowsIsRefused)
{
    BT::BehaviorTreeFactory factory;
    const auto blackboard = BT::Blackboard::create<BT::BlackboardLocal>();
    const auto chain = [&factory](std::size_t levels) {
        factory.registerTreeBuilder(
            "Chain", [levels](const BT::BehaviorTreeFactory& from, const BT::Blackboard::Ptr& board) {
                BT::Tree tree;
                for (std::size_t level = 1; level <= levels; ++level) {
                    tree.nodes.push_back(from.instantiateTreeNode(
                        level < levels ? "Inverter" : "AlwaysSuccess", "n", {}, board));
                    if (level > 1)
                        hang(*tree.nodes[level - 2], *tree.nodes.back());
                }
                tree.root_node = tree.nodes.front().get();
                return tree;
            });
    };
    chain(BT::kMaxLevels);
    EXPECT_EQ(factory.createTree("Chain", blackboard).root_node->executeTick(), BT::NodeStatus::FAILURE);
    chain(BT::kMaxLevels + 1);
    EXPECT_THROW((void)factory.createTree("Chain", blackboard), BT::BehaviorTreeException);
    chain(100'000);
    EXPECT_THROW((void)factory.createTree("Chain", blackboard), BT::BehaviorTreeException);
}

TEST_F(Subtree, ANodeKnowsItsPlace)
{
    t.registerTree("Outer", node("SequenceStar", {action("x", "S"), enter("Inner")}));
    t.registerTree("Inner", node("SubTree", {action("a", "R")}));
    const BT::Tree outer = t.factory.createTree("Outer", t.blackboard);
    EXPECT_EQ(outer.root_node->place().tree, "Outer");
    EXPECT_EQ(outer.nodes[2]->place().index, 2u);
    outer.root_node->executeTick();
    const BT::Tree* inner = dynamic_cast<BT::SubtreeConditionNode&>(*outer.nodes[2]).entered();
    ASSERT_NE(inner, nullptr);
    EXPECT_EQ(inner->nodes[1]->place().tree, "Inner");
    EXPECT_EQ(inner->nodes[1]->place().index, 1u);
    outer.root_node->halt();
}

TEST(TreesByName, AreLookedUpLetterForLetter)
{
    ScriptedTree t;
    t.registerTree("b", action("a", "S"));
    t.registerTree("B", action("a", "S"));
    EXPECT_THAT(t.factory.treeNames(), ElementsAre("b", "B"));
    EXPECT_THROW((void)t.factory.createTree("c", t.blackboard), BT::BehaviorTreeException);
    EXPECT_THROW(t.factory.registerTreeBuilder("", [](const auto&, const auto&) { return BT::Tree{}; }),
                 BT::BehaviorTreeException);
}

}  // namespace
}  // namespace vemra::test
