#include <gtest/gtest.h>

#include "runtime/scripted_tree.h"

// A line such as "R a b!" is the root's result, a tick of leaf a and a halt of leaf b.

namespace vemra::test {
namespace {

TEST(Sequence, LooksAtGuardsOnEachTickAndDoesFinishedActionsOnce)
{
    ScriptedTree t(node("Sequence", {condition("g", "SSSF"), action("a", "S"), action("b", "R")}));
    // The fifth tick begins a new run.
    EXPECT_EQ(t.ticks(5), "R g a b, R g b, R g b, F g b!, R g a b");
    EXPECT_EQ(t.halt(), "I b!");
    EXPECT_EQ(t.tick(), "R g a b");
}

TEST(Fallback, MirrorsTheSequence)
{
    ScriptedTree t(node("Fallback", {condition("g", "FFRFS"), action("a", "F"), action("b", "R")}));
    EXPECT_EQ(t.ticks(5), "R g a b, R g b, R g b!, R g b, S g b!");
}

TEST(SequenceStar, TakesUpWhereItStopped)
{
    ScriptedTree t(node("SequenceStar", {{"reset_on_failure", "true"}},
                        {condition("g", "S"), action("a", "RS"), action("b", "FS")}));
    EXPECT_EQ(t.ticks(3), "R g a, F a b, R g a");
    EXPECT_EQ(t.halt(), "I a!");
    EXPECT_EQ(t.tick(), "S g a b");  // from the first child again
}

TEST(SequenceStar, WithoutResetTriesTheFailedChildAgain)
{
    ScriptedTree t(node("SequenceStar", {{"reset_on_failure", "false"}},
                        {action("a", "S"), action("b", "S"), action("c", "FFRS")}));
    EXPECT_EQ(t.ticks(3), "F a b c, F c, R c");
    EXPECT_EQ(t.halt(), "I c!");
    EXPECT_EQ(t.tick(), "S a b c");
}

TEST(Sequence, KnowsAnActionByItsTypeWhateverItsClass)
{
    class Own : public BT::LeafNode
    {
    public:
        explicit Own(const std::string& name) : LeafNode(name, {}) {}
        [[nodiscard]] BT::NodeType type() const override { return BT::NodeType::ACTION; }
        void halt() override { setStatus(BT::NodeStatus::IDLE); }
        int ticks = 0;

    private:
        BT::NodeStatus tick() override
        {
            ++ticks;
            return BT::NodeStatus::SUCCESS;
        }
    };
    ScriptedTree t;
    t.factory.registerBuilder(
        {BT::NodeType::ACTION, "Own", {}},
        [](const std::string& name, const BT::NodeParameters&) { return std::make_unique<Own>(name); });
    t.plant(node("Sequence", {leaf("Own"), action("a", "RRS")}));
    EXPECT_EQ(t.ticks(3), "R a, R a, S a");
    EXPECT_EQ(dynamic_cast<Own&>(t.at("Own")).ticks, 1);
}

TEST(SimpleAction, MayTakeManyTicks)
{
    ScriptedTree t;
    int calls = 0;
    t.factory.registerSimpleAction("Twice", [&calls](BT::TreeNode&) {
        return ++calls % 2 != 0 ? BT::NodeStatus::RUNNING : BT::NodeStatus::SUCCESS;
    });
    t.plant(node("Sequence", {leaf("Twice"), action("a", "RS")}));
    EXPECT_EQ(t.ticks(3), "R, R a, S a");
    EXPECT_EQ(calls, 2);
    t.tick();
    EXPECT_EQ(t.halt(), "I");
    EXPECT_TRUE(t.at("Twice").isHalted());
}

TEST(FallbackStar, KeepsItsPlaceOverRunningAndFailure)
{
    ScriptedTree t(node("FallbackStar", {{"reset_on_failure", "true"}},
                        {action("a", "F"), action("b", "RRF"), action("c", "SF")}));
    EXPECT_EQ(t.ticks(7), "R a b, R b, S b c, R a b, R b, F b c, R a b");
}

TEST(IfThenElse, SwitchesAndHaltsOnTheTickOfTheCondition)
{
    ScriptedTree t(node("IfThenElse", {{"halt_on_switch", "true"}},
                        {condition("g", "FFSRSF"), action("then", "R"), action("else", "R")}));
    // On the fourth the condition is undecided: the branch stays as it is.
    EXPECT_EQ(t.ticks(6), "R g else, R g else, R g else! then, R g, R g then, R g then! else");
    EXPECT_EQ(t.halt(), "I else!");
}

TEST(IfThenElseStar, LooksAtTheConditionOnce)
{
    ScriptedTree t(node("IfThenElseStar", {{"reset_on_failure", "true"}},
                        {condition("g", "RSFF"), action("then", "RF"), action("else", "RS")}));
    EXPECT_EQ(t.ticks(4), "R g, R g then, F then, R g else");
    EXPECT_EQ(t.halt(), "I else!");
    EXPECT_EQ(t.tick(), "S g else");  // the choice is made anew after a halt
}

TEST(DoWhile, GivesTheBodysResultAndTicksAllWhateverTheyReturn)
{
    ScriptedTree t(node(
        "DoWhile", {action("fails", "F"), action("runs", "R"), action("ends", "RS"), action("body", "RRF")}));
    EXPECT_EQ(t.ticks(4),
              "R fails runs ends body, R fails runs ends body, F fails runs ends body runs! ends!, R fails "
              "runs ends body");
    EXPECT_EQ(t.halt(), "I runs! body!");
}

TEST(ParallelNode, CountsWithinATickAndTicksEndedChildrenAnew)
{
    // Two copies around a step: done on every tick, and the node ends on the tick on which the step does.
    ScriptedTree all(node("ParallelNode", {{"threshold", "4"}},
                          {action("a", "S"), action("b", "S"), action("step", "RS"), action("c", "S")}));
    EXPECT_EQ(all.ticks(2), "R a b step c, S a b step c");

    ScriptedTree unreadable(node("ParallelNode", {{"threshold", "${none}"}}, {action("a", "S")}));
    EXPECT_EQ(unreadable.tick(), "F");
}

TEST(PostProcess, RunsTheFinalChildOnEveryWayOut)
{
    ScriptedTree t(
        node("PostProcess", {{"tick_on_halt", "true"}}, {action("main", "RF"), action("final", "RS")}));
    // The third gives the main child's result.
    EXPECT_EQ(t.ticks(4), "R main, R main final, F final, R main");
    EXPECT_EQ(t.halt(), "I main! final final!");
    EXPECT_EQ(t.halt(), "I");
    EXPECT_EQ(t.tick(), "F main final");
    EXPECT_EQ(t.halt(), "I");
}

TEST(Composites, WithoutTheirChildrenEndAtOnce)
{
    for (const auto& [id, result] : {std::pair{"Sequence", "S"},
                                     {"SequenceStar", "S"},
                                     {"Fallback", "F"},
                                     {"FallbackStar", "F"},
                                     {"DoWhile", "F"},
                                     {"PostProcess", "F"},
                                     {"IfThenElse", "F"},
                                     {"IfThenElseStar", "F"}})
        EXPECT_EQ(ScriptedTree(leaf(id)).tick(), result) << id;
}

}  // namespace
}  // namespace vemra::test
