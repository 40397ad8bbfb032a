#include "leaves/host/host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

namespace vemra::leaf {
namespace {

using BT::NodeStatus;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::ThrowsMessage;

NodeStatus succeed(BT::TreeNode&)
{
    return NodeStatus::SUCCESS;
}

struct TurningLeaf : BT::SyncActionNode
{
    using SyncActionNode::SyncActionNode;
    NodeStatus tick() override { return NodeStatus::SUCCESS; }
};

struct TestingLeaf : BT::ConditionNode
{
    using ConditionNode::ConditionNode;
    NodeStatus tick() override { return NodeStatus::SUCCESS; }
};

class Host : public testing::Test
{
protected:
    std::unique_ptr<BT::TreeNode> make(const std::string& id)
    {
        return factory_.instantiateTreeNode(id, id, {}, BT::Blackboard::create<BT::BlackboardLocal>());
    }

    BT::BehaviorTreeFactory factory_;
    LeafHost host_{factory_};
};

TEST_F(Host, HoldsRegistrationsAgainstTheContract)
{
    const auto refused = [](const char* why) { return ThrowsMessage<std::invalid_argument>(HasSubstr(why)); };
    EXPECT_THAT([&] { host_.action("Somersault", succeed); }, refused("'Somersault' is not in the contract"));
    EXPECT_THAT([&] { host_.action("Bumped", succeed); },
                refused("'Bumped' is a condition in the contract, and its implementation is an action"));
    EXPECT_THAT([&] { host_.condition("Stop", succeed); }, refused("'Stop' is an action"));
    EXPECT_THAT([&] { host_.implement<TestingLeaf>("Rotate"); }, refused("'Rotate' is an action"));
    EXPECT_FALSE(factory_.builders().contains("Stop"));
    EXPECT_FALSE(host_.implemented("Rotate"));

    host_.implement<TurningLeaf>("Rotate");
    host_.condition("Bumped", succeed);
    EXPECT_THAT([&] { host_.implement<TurningLeaf>("Rotate"); }, refused("'Rotate' is implemented already"));
    EXPECT_THAT([&] { host_.condition("Bumped", succeed); }, refused("'Bumped' is implemented already"));
    EXPECT_EQ(make("Rotate")->executeTick(), NodeStatus::SUCCESS);
    EXPECT_EQ(make("Bumped")->type(), BT::NodeType::CONDITION);
}

TEST_F(Host, LooksAtTheKindOfWhatABuilderMakes)
{
    const BT::NodeBuilder make_turn = [](const std::string& name, const BT::NodeParameters& ports) {
        return std::make_unique<TurningLeaf>(name, ports);
    };
    host_.builder("Rotate", make_turn);
    host_.builder("InDockField", make_turn);
    EXPECT_EQ(make("Rotate")->executeTick(), NodeStatus::SUCCESS);
    EXPECT_THROW(make("InDockField"), std::invalid_argument);
}

TEST_F(Host, DefaultsFillWhatIsMissingAndTellThatTheyWereMet)
{
    host_.use_runtime_builtin();
    EXPECT_TRUE(host_.implemented("StringMatch"));
    EXPECT_THROW(host_.action("Delay", succeed), std::invalid_argument);
    host_.condition("GotCharger", succeed);

    std::vector<std::string> met;
    const auto defaults = host_.register_defaults([&met](std::string_view id) { met.emplace_back(id); });
    EXPECT_TRUE(std::is_sorted(defaults.begin(), defaults.end()));
    EXPECT_THAT(defaults, Contains("Bumped"));
    EXPECT_THAT(defaults, Not(Contains("GotCharger")));
    EXPECT_THAT(defaults, Not(Contains("SetBlackboard")));
    for (const LeafContract& leaf : all())
        EXPECT_TRUE(factory_.builders().contains(std::string(leaf.id))) << leaf.id;

    const auto bumped = make("Bumped");
    EXPECT_EQ(bumped->executeTick(), NodeStatus::FAILURE);
    EXPECT_EQ(make("Stop")->executeTick(), NodeStatus::SUCCESS);
    EXPECT_EQ(make("GotCharger")->executeTick(), NodeStatus::SUCCESS);
    EXPECT_EQ(bumped->executeTick(), NodeStatus::FAILURE);
    EXPECT_THAT(met, ElementsAre("Bumped", "Stop", "Bumped"));
    EXPECT_TRUE(host_.register_defaults().empty());
}

TEST_F(Host, RefusesABuiltinOfTheOtherKind)
{
    factory_.registerSimpleAction("InDockField", succeed);
    EXPECT_THROW(host_.use_runtime_builtin(), std::invalid_argument);
}

}  // namespace
}  // namespace vemra::leaf
