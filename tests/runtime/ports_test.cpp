#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "runtime/host_store.h"
#include "runtime/scripted_tree.h"

namespace vemra::test {
namespace {

class Ports : public testing::TestWithParam<Keeps>
{
protected:
    Ports()
    {
        factory.registerSimpleAction("Probe", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
        board->set("i", 7);
        board->set("low", -100);
        board->set("f", 2.5);
        board->set("yes", true);
        board->set("digits", "12");
        board->set("word", "kitchen");
        board->set("name", "i");
        board->set("flag", "");
    }

    std::unique_ptr<BT::TreeNode> probe(const std::string& text)
    {
        return factory.instantiateTreeNode("Probe", "Probe", {{"v", text}}, board);
    }

    BT::BehaviorTreeFactory factory;
    BT::Blackboard::Ptr board = makeBlackboard(GetParam());
};

INSTANTIATE_TEST_SUITE_P(OnABlackboardThatKeepsValues, Ports,
                         testing::Values(Keeps::Itself, Keeps::InAHostsStore));

TEST_P(Ports, ReadAsWhatTheyStandFor)
{
    constexpr auto kNone = std::nullopt;
    const struct
    {
        const char* text;
        std::optional<int> integer;
        std::optional<double> real;
        std::optional<bool> truth;
        std::optional<std::string> as_text;
    } cases[] = {
        // literals
        {"12", 12, 12.0, true, "12"},
        {" -5 ", -5, -5.0, true, " -5 "},
        {"2.9", 2, 2.9, true, "2.9"},
        {"true", kNone, kNone, true, "true"},
        {"kitchen", kNone, kNone, kNone, "kitchen"},
        {"", kNone, kNone, kNone, ""},
        {"99999999999", kNone, 99999999999.0, true, "99999999999"},
        {"${open", kNone, kNone, kNone, "${open"},
        // references
        {"${i}", 7, 7.0, true, "7"},
        {"${f} ", 2, 2.5, true, "2.5"},
        {"${yes}", 1, 1.0, true, "true"},
        {"${digits}", 12, 12.0, true, "12"},
        {"${word}", kNone, kNone, kNone, "kitchen"},
        {"${flag}", kNone, kNone, kNone, ""},
        {"${none}", kNone, kNone, kNone, kNone},
        // signs and arithmetic; integers stay integers
        {"-${low}", 100, 100.0, true, "100"},
        {"-${f}", -2, -2.5, true, "-2.5"},
        {"10000+${i}", 10007, 10007.0, true, "10007"},
        {"${i}/2", 3, 3.0, true, "3"},
        {"${low}/3", -33, -33.0, true, "-33"},
        {"${f}/2", 1, 1.25, true, "1.25"},
        {"${digits} + 1", 13, 13.0, true, "13"},
        {"${f} - ${i} + ${low}", -104, -104.5, true, "-104.5"},
        {"${i} - (${i} - 1) * 2", -5, -5.0, true, "-5"},
        {"9223372036854775807 + ${i}", kNone, 9223372036854775807.0 + 7, true, "9223372036854775808"},
        // comparisons
        {"${i} > 0", 1, 1.0, true, "true"},
        {"${i}==7", 1, 1.0, true, "true"},
        {"${i}!=7", 0, 0.0, false, "false"},
        {"${i} < ${f}", 0, 0.0, false, "false"},
        {"${i} >= ${low} ", 1, 1.0, true, "true"},
        {"${i} - ${low} > 180", 0, 0.0, false, "false"},
        {"(${i} > 5 && ${i} < 9) || (${i} > -9 && ${i} < -5)", 1, 1.0, true, "true"},
        {"!${yes} || 0 == ${i}", 0, 0.0, false, "false"},
        {"${word} == ${word}", 1, 1.0, true, "true"},
        {"${word} != 3", 1, 1.0, true, "true"},
        // what has no value
        {"${none} + 1", kNone, kNone, kNone, " + 1"},
        {"${i} > 0 || ${none} > 0", kNone, kNone, kNone, "7 > 0 ||  > 0"},
        {"${word} + 1", kNone, kNone, kNone, "kitchen + 1"},
        {"${i}/0", kNone, kNone, kNone, "7/0"},
        {"${i} +", kNone, kNone, kNone, "7 +"},
        // text with references
        {"dust_number is ${i}, ${word}.", kNone, kNone, kNone, "dust_number is 7, kitchen."},
        {"task_type work -> ${none}", kNone, kNone, kNone, "task_type work -> "},
        {"1${i}", 17, 17.0, true, "17"},
        {"1${none}", kNone, kNone, kNone, "1"},
    };
    for (const auto& [text, integer, real, truth, as_text] : cases) {
        const auto node = probe(text);
        EXPECT_EQ(node->getParam<int>("v"), integer) << text;
        EXPECT_EQ(node->getParam<double>("v"), real) << text;
        EXPECT_EQ(node->getParam<bool>("v"), truth) << text;
        EXPECT_EQ(node->getParam<std::string>("v"), as_text) << text;
    }
    EXPECT_EQ(probe("x")->getParam<std::string>("w"), std::nullopt);
}

TEST_P(Ports, KeepToTheRangeOfWhatIsAskedFor)
{
    EXPECT_EQ(probe("-1")->getParam<unsigned>("v"), std::nullopt);
    EXPECT_EQ(probe("300")->getParam<std::uint8_t>("v"), std::nullopt);
    EXPECT_EQ(probe("255")->getParam<std::uint8_t>("v"), 255);
    board->set("huge", 1e300);
    EXPECT_EQ(probe("${huge}")->getParam<std::int64_t>("v"), std::nullopt);
    EXPECT_EQ(probe("1e400")->getParam<double>("v"), std::nullopt);
}

TEST_P(Ports, FollowTheBlackboardAndAChangeOfType)
{
    const auto node = probe("${i} + 1");
    board->set("i", 0.5);
    EXPECT_EQ(node->getParam<double>("v"), 1.5);
    board->set("i", "3");
    EXPECT_EQ(node->getParam<int>("v"), 4);
    board->erase("i");
    EXPECT_EQ(node->getParam<int>("v"), std::nullopt);
    board->set("i", 1);
    EXPECT_EQ(node->getParam<int>("v"), 2);
}

TEST_P(Ports, AFormulaThatNestsTooDeepIsText)
{
    std::string deep = "${i}";
    for (int i = 0; i < 5000; ++i)
        deep = "(" + deep + ")";  // NOLINT(performance-inefficient-string-concatenation)
    EXPECT_EQ(probe(deep)->getParam<int>("v"), std::nullopt);
    EXPECT_EQ(probe("((${i}))")->getParam<int>("v"), 7);
}

TEST_P(Ports, AKeyMayBeNamedByAKey)
{
    const auto run = [this](const char* id, const BT::NodeParameters& ports) {
        return factory.instantiateTreeNode(id, id, ports, board)->executeTick();
    };
    EXPECT_EQ(run("BlackboardContains", {{"key", "${name}"}}), BT::NodeStatus::SUCCESS);
    EXPECT_EQ(run("BlackboardCopy", {{"source", "${name}"}, {"target", "to_${name}"}}),
              BT::NodeStatus::SUCCESS);
    EXPECT_EQ(board->get<int>("to_i"), 7);
    board->set("name", "nowhere");
    EXPECT_EQ(run("BlackboardContains", {{"key", "${name}"}}), BT::NodeStatus::FAILURE);
    EXPECT_EQ(run("BlackboardCopy", {{"source", "${name}"}, {"target", "to_i"}}), BT::NodeStatus::FAILURE);
    EXPECT_EQ(run("EraseBlackboard", {{"key", "${none}"}}), BT::NodeStatus::FAILURE);
}

}  // namespace
}  // namespace vemra::test
