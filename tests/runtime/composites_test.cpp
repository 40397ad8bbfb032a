#include <gtest/gtest.h>

#include "runtime/scripted_tree.h"

// A line such as "R a b!" is the root's result, a tick of leaf a and a halt of leaf b.

namespace vemra::test {
namespace {

const Sketch kIdleBranch = action("else", "R");

TEST(Sequence, LooksAtGuardsOnEachTickAndDoesFinishedActionsOnce)
{
    ScriptedTree t(node("Sequence", {condition("g", "SSSF"), action("a", "S"), action("b", "R")}));
    EXPECT_EQ(t.tick(), "R g a b");
    EXPECT_EQ(t.tick(), "R g b");
    EXPECT_EQ(t.tick(), "R g b");
    EXPECT_EQ(t.tick(), "F g b!");
    EXPECT_EQ(t.tick(), "R g a b");  // a new run
    EXPECT_EQ(t.halt(), "I b!");
    EXPECT_EQ(t.tick(), "R g a b");
}

TEST(Sequence, OnlyLeafActionsAndActionDecoratorsAreDoneOnce)
{
    ScriptedTree t(
        node("Sequence", {node("Inverter", {action("i", "F")}), node("Sequence", {action("s", "S")}),
                          node("ActionDecorator", {node("Inverter", {action("d", "F")})}),
                          node("ForceFailure", {action("end", "RS")})}));
    EXPECT_EQ(t.tick(), "R i s d end");
    EXPECT_EQ(t.tick(), "F i s end");
    EXPECT_EQ(t.tick(), "R i s d end");
}

TEST(Sequence, HaltsLaterChildrenWhenAnEarlierOneRuns)
{
    ScriptedTree t(node("Sequence", {condition("g", "SRS"), action("a", "S"), action("b", "RRS")}));
    EXPECT_EQ(t.tick(), "R g a b");
    EXPECT_EQ(t.tick(), "R g b!");
    EXPECT_EQ(t.tick(), "R g b");  // a has ended in this run: its result stands
    EXPECT_EQ(t.tick(), "S g b");
    EXPECT_EQ(t.at("a").status(), BT::NodeStatus::IDLE);
}

TEST(Fallback, MirrorsTheSequence)
{
    ScriptedTree t(node("Fallback", {condition("g", "FFRFS"), action("a", "F"), action("b", "R")}));
    EXPECT_EQ(t.tick(), "R g a b");
    EXPECT_EQ(t.tick(), "R g b");
    EXPECT_EQ(t.tick(), "R g b!");
    EXPECT_EQ(t.tick(), "R g b");
    EXPECT_EQ(t.tick(), "S g b!");
    ScriptedTree all_fail(node("Fallback", {action("a", "F"), action("b", "F")}));
    EXPECT_EQ(all_fail.tick(), "F a b");
    EXPECT_EQ(all_fail.tick(), "F a b");
}

TEST(SequenceStar, TakesUpWhereItStopped)
{
    ScriptedTree t(node("SequenceStar", {{"reset_on_failure", "true"}},
                        {condition("g", "S"), action("a", "RS"), action("b", "FS")}));
    EXPECT_EQ(t.tick(), "R g a");
    EXPECT_EQ(t.tick(), "F a b");
    EXPECT_EQ(t.tick(), "R g a");
    EXPECT_EQ(t.halt(), "I a!");
    EXPECT_EQ(t.tick(), "S g a b");  // from the first child again
}

TEST(SequenceStar, WithoutResetTriesTheFailedChildAgain)
{
    const Sketch star = node("SequenceStar", {{"reset_on_failure", "false"}},
                             {action("a", "S"), action("b", "S"), action("c", "FFRS")});
    ScriptedTree t(star);
    EXPECT_EQ(t.tick(), "F a b c");
    EXPECT_EQ(t.tick(), "F c");
    EXPECT_EQ(t.tick(), "R c");
    EXPECT_EQ(t.halt(), "I c!");
    EXPECT_EQ(t.tick(), "S a b c");

    // Also when the node above ended with it and put it to rest.
    ScriptedTree below(
        node("IfThenElse", {{"halt_on_switch", "true"}}, {condition("g", "S"), star, kIdleBranch}));
    EXPECT_EQ(below.tick(), "F g a b c");
    EXPECT_EQ(below.tick(), "F g c");
}

TEST(FallbackStar, KeepsItsPlaceOverRunningAndFailure)
{
    ScriptedTree t(node("FallbackStar", {{"reset_on_failure", "true"}},
                        {action("a", "F"), action("b", "RRF"), action("c", "SF")}));
    EXPECT_EQ(t.tick(), "R a b");
    EXPECT_EQ(t.tick(), "R b");
    EXPECT_EQ(t.tick(), "S b c");
    EXPECT_EQ(t.tick(), "R a b");
    EXPECT_EQ(t.tick(), "R b");
    EXPECT_EQ(t.tick(), "F b c");
    EXPECT_EQ(t.tick(), "R a b");
}

TEST(IfThenElse, SwitchesAndHaltsOnTheTickOfTheCondition)
{
    ScriptedTree t(node("IfThenElse", {{"halt_on_switch", "true"}},
                        {condition("g", "FFSRSF"), action("then", "R"), action("else", "R")}));
    EXPECT_EQ(t.tick(), "R g else");
    EXPECT_EQ(t.tick(), "R g else");
    EXPECT_EQ(t.tick(), "R g else! then");
    EXPECT_EQ(t.tick(), "R g");  // undecided: the branch stays as it is
    EXPECT_EQ(t.tick(), "R g then");
    EXPECT_EQ(t.tick(), "R g then! else");
    EXPECT_EQ(t.halt(), "I else!");
}

TEST(IfThenElse, WithoutHaltLeavesTheOldBranchUntilTheEnd)
{
    ScriptedTree t(node("IfThenElse", {{"halt_on_switch", "false"}},
                        {condition("g", "FSF"), action("then", "RS"), action("else", "R")}));
    EXPECT_EQ(t.tick(), "R g else");
    EXPECT_EQ(t.tick(), "R g then");
    EXPECT_EQ(t.at("else").status(), BT::NodeStatus::RUNNING);
    EXPECT_EQ(t.tick(), "R g else");
    EXPECT_EQ(t.tick(), "R g else");
    EXPECT_EQ(t.tick(), "S g then else!");
    EXPECT_EQ(t.at("else").status(), BT::NodeStatus::IDLE);
}

TEST(IfThenElseStar, LooksAtTheConditionOnce)
{
    ScriptedTree t(node("IfThenElseStar", {{"reset_on_failure", "true"}},
                        {condition("g", "RSFF"), action("then", "RF"), action("else", "RS")}));
    EXPECT_EQ(t.tick(), "R g");
    EXPECT_EQ(t.tick(), "R g then");
    EXPECT_EQ(t.tick(), "F then");
    EXPECT_EQ(t.tick(), "R g else");
    EXPECT_EQ(t.halt(), "I else!");
    EXPECT_EQ(t.tick(), "S g else");  // the choice is made anew after a halt
}

TEST(IfThenElse, FailsWithoutItsThreeChildren)
{
    for (const char* id : {"IfThenElse", "IfThenElseStar"}) {
        ScriptedTree t(node(id, {condition("g", "S"), action("then", "S")}));
        EXPECT_EQ(t.tick(), "F") << id;
    }
}

TEST(DoWhile, GivesTheBodysResultAndTicksAllWhateverTheyReturn)
{
    ScriptedTree t(node(
        "DoWhile", {action("fails", "F"), action("runs", "R"), action("ends", "RS"), action("body", "RRF")}));
    EXPECT_EQ(t.tick(), "R fails runs ends body");
    EXPECT_EQ(t.tick(), "R fails runs ends body");
    EXPECT_EQ(t.tick(), "F fails runs ends body runs! ends!");
    EXPECT_EQ(t.tick(), "R fails runs ends body");
    EXPECT_EQ(t.halt(), "I runs! body!");
}

TEST(ParallelNode, CountsWithinATickAndTicksEndedChildrenAnew)
{
    // Two copies around a step: done on every tick, and the node ends on the tick on which the step does.
    ScriptedTree all(node("ParallelNode", {{"threshold", "4"}},
                          {action("a", "S"), action("b", "S"), action("step", "RS"), action("c", "S")}));
    EXPECT_EQ(all.tick(), "R a b step c");
    EXPECT_EQ(all.tick(), "S a b step c");

    ScriptedTree one(
        node("ParallelNode", {{"threshold", "1"}}, {action("a", "F"), action("b", "RS"), action("c", "R")}));
    EXPECT_EQ(one.tick(), "R a b c");
    EXPECT_EQ(one.tick(), "S a b c!");  // those behind are not ticked
    EXPECT_EQ(one.tick(), "R a b c");

    ScriptedTree fails(
        node("ParallelNode", {{"threshold", "2"}}, {action("a", "RF"), action("b", "FF"), action("c", "R")}));
    EXPECT_EQ(fails.tick(), "R a b c");
    EXPECT_EQ(fails.tick(), "F a b c!");

    ScriptedTree unreadable(node("ParallelNode", {{"threshold", "${none}"}}, {action("a", "S")}));
    EXPECT_EQ(unreadable.tick(), "F");
}

TEST(PostProcess, RunsTheFinalChildOnEveryWayOut)
{
    const std::vector<Sketch> children{action("main", "RF"), action("final", "RS")};
    ScriptedTree t(node("PostProcess", {{"tick_on_halt", "true"}}, children));
    EXPECT_EQ(t.tick(), "R main");
    EXPECT_EQ(t.tick(), "R main final");
    EXPECT_EQ(t.tick(), "F final");  // the main child's result
    EXPECT_EQ(t.tick(), "R main");
    EXPECT_EQ(t.halt(), "I main! final final!");
    EXPECT_EQ(t.halt(), "I");
    EXPECT_EQ(t.tick(), "F main final");
    EXPECT_EQ(t.halt(), "I");

    ScriptedTree without(node("PostProcess", {{"tick_on_halt", "false"}}, children));
    EXPECT_EQ(without.tick(), "R main");
    EXPECT_EQ(without.halt(), "I main!");
}

TEST(Composites, TakeAChildThatGivesIdleForUndone)
{
    for (const char* id :
         {"Sequence", "SequenceStar", "Fallback", "FallbackStar", "DoWhile", "ParallelNode"}) {
        ScriptedTree t(node(id, {{"threshold", "1"}}, {action("a", "I")}));
        EXPECT_EQ(t.tick(), "R a") << id;
        EXPECT_EQ(t.tick(), "R a") << id;
    }
}

TEST(Composites, WithoutChildrenEndAtOnce)
{
    EXPECT_EQ(ScriptedTree(leaf("Sequence")).tick(), "S");
    EXPECT_EQ(ScriptedTree(leaf("SequenceStar")).tick(), "S");
    EXPECT_EQ(ScriptedTree(leaf("Fallback")).tick(), "F");
    EXPECT_EQ(ScriptedTree(leaf("FallbackStar")).tick(), "F");
    EXPECT_EQ(ScriptedTree(leaf("DoWhile")).tick(), "F");
    EXPECT_EQ(ScriptedTree(leaf("PostProcess")).tick(), "F");
}

}  // namespace
}  // namespace vemra::test
