#include "leaves/contract.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "description/node.h"
#include "leaves/leaves.h"

namespace vemra::leaf {
namespace {

using description::Node;
using description::PortText;

bool startsWithOneOf(std::string_view text, std::initializer_list<std::string_view> starts)
{
    return std::any_of(starts.begin(), starts.end(),
                       [text](std::string_view s) { return text.starts_with(s); });
}

TEST(Contract, HoldsEveryLeafOnceAndFindsIt)
{
    EXPECT_EQ(all().size(), 491U);
    EXPECT_EQ(families().size(), 17U);
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
    for (const LeafContract& leaf : all()) {
        const bool test_by_name =
            startsWithOneOf(leaf.id, {"Is", "is_", "Does", "NeedTo", "Has", "In", "Are", "Bumped"}) &&
            !startsWithOneOf(leaf.id, {"Init", "IntAdd", "InvalidStepBridge"});
        if (test_by_name || leaf.id.ends_with("Match")) {
            EXPECT_EQ(leaf.kind, LeafKind::Condition) << leaf.id;
        }
        if (leaf.id.ends_with("Deal") || startsWithOneOf(leaf.id, {"Set", "Reset", "Update", "Erase"})) {
            EXPECT_EQ(leaf.kind, LeafKind::Action) << leaf.id;
        }
        for (const PortContract& port : leaf.ports)
            if (port.name.starts_with("out") && port.name != "outline_dist") {
                EXPECT_EQ(port.type, PortType::OutKey) << leaf.id << '.' << port.name;
            }
    }
}

TEST(Contract, TellsClosedSetsFromExamples)
{
    const PortContract& receiver = find("ChargerReceiverPickedUpSignal")->ports[0];
    EXPECT_EQ((std::set<std::string_view>(receiver.values.begin(), receiver.values.end())),
              (std::set<std::string_view>{"Any", "Left", "MiddleLeft", "MiddleRight", "Right"}));
    EXPECT_TRUE(receiver.examples.empty());
    const PortContract& ticks = find("Delay")->ports[0];
    EXPECT_TRUE(ticks.values.empty());
    EXPECT_FALSE(ticks.examples.empty());
    EXPECT_EQ(find("SetMusicPlayPara")->ports[4].default_text, "RobotMusic");
    EXPECT_EQ(ticks.default_text, std::nullopt);
}

TEST(LeafStructs, DefaultsReachTheNodeAndPortsNotGivenDoNot)
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
}

TEST(LeafStructs, PositionsFollowTheCatalogue)
{
    EXPECT_EQ(Node(BlackboardCopy{"from", "to"}).ports,
              (std::vector<PortText>{{"source", "from"}, {"target", "to"}}));
    EXPECT_EQ(Node(SetBlackboard{"flag", ""}).ports, (std::vector<PortText>{{"key", "flag"}, {"value", ""}}));
}

}  // namespace
}  // namespace vemra::leaf
