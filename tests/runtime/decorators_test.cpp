#include <gtest/gtest.h>

#include "runtime/scripted_tree.h"

namespace vemra::test {
namespace {

TEST(ForceSuccessAndFailure, TurnTheEndAndLeaveTheChildsOwnStatus)
{
    ScriptedTree success(node("ForceSuccess", {action("a", "RFSI")}));
    EXPECT_EQ(success.ticks(2), "R a, S a");
    EXPECT_EQ(success.at("a").status(), BT::NodeStatus::FAILURE);
    EXPECT_EQ(success.ticks(2), "S a, R a");  // IDLE is no end
    ScriptedTree failure(node("ForceFailure", {action("a", "RFSI")}));
    EXPECT_EQ(failure.ticks(3), "R a, F a, F a");
    EXPECT_EQ(failure.at("a").status(), BT::NodeStatus::SUCCESS);
    EXPECT_EQ(failure.tick(), "R a");
}

TEST(RetryUntilSuccesful, MakesOneAttemptATick)
{
    ScriptedTree three(node("RetryUntilSuccesful", {{"num_attempts", "3"}}, {action("a", "FRF")}));
    EXPECT_EQ(three.ticks(4), "R a, R a, R a, F a");  // the fourth tick fails for the third time
}

TEST(Repeat, IsAWatchdogOverACondition)
{
    ScriptedTree t(node("Repeat", {{"num_cycles", "100"}}, {leaf("BlackboardContains", {{"key", "lock"}})}));
    t.blackboard->set("lock", "");
    for (int i = 0; i < 99; ++i)
        ASSERT_EQ(t.tick(), "R");
    t.blackboard->erase("lock");
    EXPECT_EQ(t.tick(), "F");
    t.blackboard->set("lock", "");
    for (int i = 0; i < 99; ++i)
        ASSERT_EQ(t.tick(), "R");
    EXPECT_EQ(t.tick(), "S");
}

TEST(Loop, CountsEndsWhateverTheyAre)
{
    ScriptedTree t(node("Loop", {{"num_cycles", "3"}}, {action("a", "SFRS")}));
    EXPECT_EQ(t.ticks(4), "R a, R a, R a, S a");
}

TEST(Frameout, HaltsTheChildWhenItsTicksAreSpent)
{
    ScriptedTree t(node("Frameout", {{"frames", "${limit}"}}, {action("a", "RRRRRRRS")}));
    t.blackboard->set("limit", 4);
    for (int i = 0; i < 4; ++i)
        ASSERT_EQ(t.tick(), "R a");
    EXPECT_EQ(t.tick(), "F a!");
    t.blackboard->set("limit", 9);  // read as the next run begins
    for (int i = 0; i < 3; ++i)
        ASSERT_EQ(t.tick(), "R a");
    EXPECT_EQ(t.tick(), "S a");
    t.blackboard->erase("limit");
    EXPECT_EQ(t.tick(), "F");  // a motion must not start without its limit
}

TEST(Timeout, GoesByTheInjectedClock)
{
    ScriptedTree t(node("Timeout", {{"msec", "1000"}}, {action("a", "R")}));
    t.clock->now = 5000;
    EXPECT_EQ(t.tick(), "R a");
    t.clock->now = 5999;
    EXPECT_EQ(t.tick(), "R a");
    t.clock->now = 6000;
    // The run after it has its own second.
    EXPECT_EQ(t.ticks(2), "F a a!, R a");
}

TEST(CountingDecorators, FailOnANumberThatCannotBeReadAndNeverThrow)
{
    for (const char* text : {"${none}", "many", "", "1${none}"})
        for (const auto& [id, port] : {std::pair{"RetryUntilSuccesful", "num_attempts"},
                                       {"Repeat", "num_cycles"},
                                       {"Loop", "num_cycles"},
                                       {"Frameout", "frames"},
                                       {"Timeout", "msec"}})
            EXPECT_EQ(ScriptedTree(node(id, {{port, text}}, {action("a", "S")})).tick(), "F")
                << id << " '" << text << "'";
}

TEST(BBPrecondition, HaltsFromAboveWhenTheBreakFlagTurns)
{
    ScriptedTree t(node("BB_Precondition", {{"key", "break"}, {"expected", "false"}},
                        {node("Loop", {{"num_cycles", "-1"}}, {action("a", "R")})}));
    EXPECT_EQ(t.tick(), "F");  // no such key
    t.blackboard->set("break", "false");
    EXPECT_EQ(t.tick(), "R a");
    t.blackboard->set("break", "true");
    EXPECT_EQ(t.tick(), "F a!");
    EXPECT_EQ(t.at("Loop").status(), BT::NodeStatus::IDLE);
    t.blackboard->set("break", false);  // as a truth value it reads the same
    EXPECT_EQ(t.tick(), "R a");
    t.blackboard->erase("break");
    EXPECT_EQ(t.tick(), "F a!") << "a key that goes is like one that is not there";
    t.blackboard->set("break", "false");
    EXPECT_EQ(t.tick(), "R a");
    t.blackboard->set("break", "no truth value");
    EXPECT_EQ(t.tick(), "F a!") << "what cannot be read is not what is expected";
}

}  // namespace
}  // namespace vemra::test
