#include "leaves/contract.h"

#include <regex>
#include <stdexcept>

#include "description/node.h"
#include "leaves/host/host.h"
#include "leaves/leaves.h"
#include "support/matchers.h"

namespace vemra::leaf {
namespace {

using description::Node;
using description::PortText;

TEST(Contract, HoldsEveryLeafOnceAndFindsIt)
{
    std::size_t in_families = 0;
    for (const FamilyContract& family : families())
        for (const LeafContract& leaf : family.leaves) {
            ++in_families;
            EXPECT_EQ(leaf.family, family.name);
            EXPECT_EQ(find(leaf.id), &leaf) << leaf.id;
        }
    EXPECT_EQ(in_families, all().size());
    EXPECT_EQ(find("rotate"), nullptr);
    EXPECT_EQ(find(""), nullptr);
}

TEST(Contract, KindsAndPortTypesFollowTheNames)
{
    const std::regex tests("(Is|is_|Does|NeedTo|Has|In(?!it|tAdd|validStep)|Are|Bumped).*|.*Match");
    const std::regex acts("(Set|Reset|Update|Erase).*|.*Deal");
    for (const LeafContract& leaf : all()) {
        const std::string id(leaf.id);
        if (std::regex_match(id, tests) || std::regex_match(id, acts)) {
            EXPECT_EQ(leaf.kind == LeafKind::Condition, std::regex_match(id, tests)) << id;
        }
        for (const PortContract& port : leaf.ports)
            if (port.name.starts_with("out") && port.name != "outline_dist") {
                EXPECT_EQ(port.type, PortType::OutKey) << id << '.' << port.name;
            }
    }
}

TEST(Contract, TellsClosedSetsFromExamples)
{
    const PortContract& receiver = find("ChargerReceiverPickedUpSignal")->ports[0];
    EXPECT_THAT(receiver.values, UnorderedElementsAre("Any", "Left", "MiddleLeft", "MiddleRight", "Right"));
    EXPECT_TRUE(receiver.examples.empty());
    const PortContract& ticks = find("Delay")->ports[0];
    EXPECT_TRUE(ticks.values.empty());
    EXPECT_FALSE(ticks.examples.empty());
    EXPECT_EQ(find("SetMusicPlayPara")->ports[4].default_text, "RobotMusic");
    EXPECT_EQ(ticks.default_text, std::nullopt);
}

TEST(LeafStructs, DefaultsReachTheNodeAndPortsNotGivenDoNotInTheOrderOfTheCatalogue)
{
    const Node mode(ChangeRobotModeTo{.IsAimMode_Sleep = "true"});
    ASSERT_EQ(mode.ports.size(), 15U);
    for (const PortText& port : mode.ports)
        EXPECT_EQ(port.text, port.name == "IsAimMode_Sleep" ? "true" : "false") << port.name;

    EXPECT_EQ(
        Node(SetMusicPlayPara{.Interrupt_En = "false", .MusicNumber = "9", .MusicPlayTimes = "0"}).ports,
        (std::vector<PortText>{{"Interrupt_En", "false"},
                               {"MusicNumber", "9"},
                               {"MusicPlayPerSecond", "10"},
                               {"MusicPlayTimes", "0"},
                               {"Output", "RobotMusic"}}));
    EXPECT_EQ(Node(Rotate{.angle_deg = 90}).ports, (std::vector<PortText>{{"angle_deg", "90"}}));
    EXPECT_TRUE(Node(GoBackwards{}).ports.empty());
    EXPECT_EQ(Node(BlackboardCopy{"from", "to"}).ports,
              (std::vector<PortText>{{"source", "from"}, {"target", "to"}}));
}

using BT::NodeStatus;

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

struct Host : testing::Test
{
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
