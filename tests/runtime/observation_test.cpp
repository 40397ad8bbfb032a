#include <set>

#include "behaviortree_cpp/loggers/abstract_logger.h"
#include "runtime/scripted_tree.h"
#include "support/matchers.h"

namespace vemra::test {
namespace {

std::string change(const BT::TreeNode& node, BT::NodeStatus before, BT::NodeStatus now)
{
    return node.name() + " " + letterOf(before) + letterOf(now);
}

class Recorder : public BT::StatusObserver
{
public:
    void onStatusChange(const BT::TreeNode& node, BT::NodeStatus before, BT::NodeStatus now) override
    {
        changes.push_back(change(node, before, now));
    }
    void onTick(const BT::TreeNode& node, BT::NodeStatus result) override
    {
        ticks.push_back(node.name() + " " + letterOf(result));
    }
    std::vector<std::string> changes, ticks;
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
    auto subscriber = t.at("a").subscribeToStatusChange(
        [&seen](BT::TimePoint, const BT::TreeNode& node, BT::NodeStatus before, BT::NodeStatus now) {
            seen.push_back(change(node, before, now));
        });
    t.ticks(2);
    EXPECT_THAT(seen, ElementsAre("a IR", "a RS", "a SI"));
    subscriber.reset();
    t.tick();
    EXPECT_EQ(seen.size(), 3u);
}

TEST(Observation, AnObserverSeesEnteredTreesToo)
{
    ScriptedTree t;
    t.registerTree("Inner", action("a", "RF"));
    t.plant(node("Inverter", {enter("Inner")}));
    Recorder recorder;
    t.blackboard->setStatusObserver(&recorder);
    t.ticks(2);
    t.blackboard->setStatusObserver(nullptr);
    t.tick();
    EXPECT_THAT(recorder.changes, ElementsAre("Inverter IR", "SubtreeCondition IR", "a IR", "a RF", "a FI",
                                              "SubtreeCondition RF", "Inverter RS"));
}

TEST(Observation, AnObserverSeesTicksThatChangeNothing)
{
    ScriptedTree t(node("Inverter", {action("a", "RRF")}));
    Recorder recorder;
    t.blackboard->setStatusObserver(&recorder);
    t.ticks(3);
    t.blackboard->setStatusObserver(nullptr);
    EXPECT_THAT(recorder.ticks, ElementsAre("a R", "Inverter R", "a R", "Inverter R", "a F", "Inverter S"));
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
    EXPECT_THAT(logger.lines, ElementsAre("100 Inverter IR", "100 a IR", "120 a RS", "120 Inverter RF"));
}

}  // namespace
}  // namespace vemra::test
