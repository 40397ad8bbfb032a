#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iostream>
#include <set>
#include <sstream>

#include "behaviortree_cpp/loggers/bt_cout_logger.h"
#include "runtime/scripted_tree.h"

namespace vemra::test {
namespace {

using testing::ElementsAre;

/// What is written to standard output while it lives.
class Captured
{
public:
    Captured() : old_(std::cout.rdbuf(text_.rdbuf())) {}
    ~Captured() { std::cout.rdbuf(old_); }
    Captured(const Captured&) = delete;
    Captured& operator=(const Captured&) = delete;
    [[nodiscard]] std::string text() const { return text_.str(); }

private:
    std::ostringstream text_;
    std::streambuf* old_;
};

std::string change(const BT::TreeNode& node, BT::NodeStatus before, BT::NodeStatus now)
{
    return node.name() + " " + letterOf(before) + letterOf(now);
}

class Recorder : public BT::StatusObserver
{
public:
    void onStatusChange(const BT::TreeNode& node, BT::NodeStatus before, BT::NodeStatus now) override
    {
        seen.push_back(change(node, before, now));
    }
    std::vector<std::string> seen;
};

TEST(Observation, NumbersOfLiveNodesAreUnique)
{
    ScriptedTree t;
    std::vector<BT::TreeNode::Ptr> nodes;
    std::set<std::uint64_t> numbers;
    for (int i = 0; i < 1000; ++i) {
        nodes.push_back(t.factory.instantiateTreeNode("AlwaysSuccess", "n", {}, t.blackboard));
        numbers.insert(nodes.back()->UID());
    }
    EXPECT_EQ(numbers.size(), 1000u);
}

TEST(Observation, ASubscriberSeesEachChangeUntilItIsDropped)
{
    ScriptedTree t(node("Sequence", {action("a", "RS"), action("b", "F")}));
    std::vector<std::string> seen;
    std::vector<std::int64_t> times;
    auto subscriber = t.at("a").subscribeToStatusChange(
        [&](BT::TimePoint time, const BT::TreeNode& node, BT::NodeStatus before, BT::NodeStatus now) {
            seen.push_back(change(node, before, now));
            times.push_back(
                std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count());
        });
    t.clock->now = 20;
    t.tick();
    t.clock->now = 40;
    t.tick();
    EXPECT_THAT(seen, ElementsAre("a IR", "a RS", "a SI"));
    EXPECT_THAT(times, ElementsAre(20, 40, 40));
    subscriber.reset();
    t.tick();
    EXPECT_EQ(seen.size(), 3u);
}

TEST(Observation, ACallbackMaySubscribeAndUnsubscribe)
{
    ScriptedTree t(action("a", "S"));
    int calls = 0;
    std::vector<BT::TreeNode::StatusChangeSubscriber> kept;
    kept.push_back(t.at("a").subscribeToStatusChange([&](auto, const auto&, auto, auto) {
        kept.push_back(t.at("a").subscribeToStatusChange([&](auto, const auto&, auto, auto) { ++calls; }));
        kept.erase(kept.begin());
    }));
    t.tick();
    EXPECT_EQ(calls, 0);
    t.halt();
    EXPECT_EQ(calls, 1);
}

TEST(Observation, AnObserverSeesEnteredTreesToo)
{
    ScriptedTree t;
    t.registerTree("Inner", action("a", "RF"));
    t.plant(node("Inverter", {leaf("SubtreeCondition",
                                   {{"subtree_file_path", "Inner"}, {"expand_in_logger", "false"}})}));
    Recorder recorder;
    t.blackboard->setStatusObserver(&recorder);
    t.ticks(2);
    EXPECT_THAT(recorder.seen, ElementsAre("SubtreeCondition IR", "a IR", "Inverter IR", "a RF", "a FI",
                                           "SubtreeCondition RF", "Inverter RS"));
    recorder.seen.clear();
    t.blackboard->setStatusObserver(nullptr);
    t.tick();
    EXPECT_TRUE(recorder.seen.empty());
}

TEST(Observation, ChildrenOfAParallelNodeAreSeenToRunAgain)
{
    ScriptedTree t(node("ParallelNode", {{"threshold", "2"}}, {action("a", "S"), action("b", "R")}));
    Recorder recorder;
    t.blackboard->setStatusObserver(&recorder);
    t.ticks(2);
    EXPECT_THAT(recorder.seen, ElementsAre("ParallelNode IR", "a IS", "b IR", "a SI", "a IS"));
}

TEST(Observation, ALoggerGetsChangesWithTheirTimes)
{
    class Lines : public BT::StatusChangeLogger
    {
    public:
        using StatusChangeLogger::StatusChangeLogger;
        void callback(BT::Duration time, const BT::TreeNode& node, BT::NodeStatus before,
                      BT::NodeStatus now) override
        {
            lines.push_back(
                std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(time).count()) + " " +
                change(node, before, now));
        }
        void flush() override {}
        std::vector<std::string> lines;
    };
    ScriptedTree t(node("Inverter", {action("a", "RS")}));
    t.clock->now = 500;
    Lines logger(t.tree.root_node);
    logger.enableTransitionToIdle(false);
    t.clock->now = 600;
    t.tick();
    t.clock->now = 620;
    t.tick();
    logger.setEnabled(false);
    t.tick();
    EXPECT_THAT(logger.lines, ElementsAre("100 a IR", "100 Inverter IR", "120 a RS", "120 Inverter RF"));
}

TEST(Observation, TheConsoleShowsChangesAndTheTree)
{
    ScriptedTree t(node("Sequence", {node("Inverter", {action("a", "S")}), action("b", "S")}));
    const Captured out;
    {
        BT::StdCoutLogger logger(t.at("a").registrationName() == "ScriptedAction" ? &t.at("a") : nullptr);
        t.tick();
        logger.flush();
    }
    BT::printTreeRecursively(t.tree.root_node);
    EXPECT_THAT(out.text(), testing::HasSubstr("a  IDLE -> SUCCESS\n"));
    EXPECT_THAT(out.text(), testing::HasSubstr("\nSequence\n   Inverter\n      a\n   b\n"));
}

TEST(Observation, AVisitorGoesFromParentsToChildren)
{
    ScriptedTree t(node("Sequence", {node("Inverter", {action("a", "S")}), action("b", "S")}));
    std::vector<std::string> names;
    BT::applyRecursiveVisitor(t.tree.root_node, [&](BT::TreeNode* one) { names.push_back(one->name()); });
    EXPECT_THAT(names, ElementsAre("Sequence", "Inverter", "a", "b"));
}

}  // namespace
}  // namespace vemra::test
