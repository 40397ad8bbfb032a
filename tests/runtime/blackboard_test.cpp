#include <limits>
#include <optional>

#include "runtime/host_store.h"
#include "runtime/scripted_tree.h"
#include "support/matchers.h"

namespace vemra::test {
namespace {

struct Pose
{
    int x = 0;
    int y = 0;
    bool operator==(const Pose&) const = default;
};

TEST(Blackboard, KeepsValuesOfAllTypesAndLetsThemChange)
{
    const auto board = BT::Blackboard::create<BT::BlackboardLocal>();
    board->set("k", 5);
    EXPECT_EQ(board->get<double>("k"), 5.0);
    board->set("k", 2.75F);
    EXPECT_EQ(board->get<int>("k"), 2);
    EXPECT_EQ(board->get<std::string>("k"), "2.75");
    board->set("k", true);
    EXPECT_EQ(board->get<std::string>("k"), "true");
    board->set("k", Pose{3, 4});
    EXPECT_EQ(board->get<Pose>("k"), (Pose{3, 4}));
    Pose pose;
    int number = 0;
    EXPECT_FALSE(board->get("k", number));
    board->set("k", std::string("text"));
    EXPECT_FALSE(board->get("k", pose));
    EXPECT_THROW((void)board->get<int>("k"), std::runtime_error);
    EXPECT_THROW((void)board->get<int>("none"), std::runtime_error);
}

TEST(Blackboard, KeepsPointersFloatsAndLargeNumbersAsTheyWere)
{
    const auto board = BT::Blackboard::create();
    Pose pose{1, 2};
    board->set("pointer", &pose);
    EXPECT_EQ(board->get<Pose*>("pointer"), &pose);
    const Pose* other = nullptr;
    EXPECT_FALSE(board->get("pointer", other));

    board->set("f", 0.1F);
    EXPECT_EQ(board->get<std::string>("f"), "0.1");
    EXPECT_EQ(board->get<float>("f"), 0.1F);
    BT::Any copy;
    copy.assign(*board->getAny("f"));
    EXPECT_EQ(copy.cast<std::string>(), "0.1");
    board->set("f", 0.1);
    EXPECT_EQ(board->get<double>("f"), 0.1);

    const std::uint64_t large = std::numeric_limits<std::uint64_t>::max();
    board->set("large", large);
    board->set("text", "18446744073709551615");
    for (const char* key : {"large", "text"}) {
        EXPECT_EQ(board->get<std::uint64_t>(key), large);
        EXPECT_EQ(board->get<std::string>(key), "18446744073709551615");
        EXPECT_EQ(board->get<double>(key), 18446744073709551616.0);
        std::int64_t small = 0;
        EXPECT_FALSE(board->get(key, small));
    }
    board->set("large", std::uint64_t{7});
    EXPECT_EQ(board->get<int>("large"), 7);
    board->set("negative", -1);
    std::uint64_t unsigned_value = 0;
    EXPECT_FALSE(board->get("negative", unsigned_value));
}

TEST(Blackboard, OneRuleReadsIntegersFromRealsAndTrims)
{
    ScriptedTree t;
    const struct
    {
        const char* text;
        std::optional<int> integer;
    } cases[] = {{"2.9", 2},  {"-2.9", -2},  {" 7\n", 7},     {"\t+3\r\n", 3}, {"1e3", 1000},
                 {"3e9", {}}, {"1e300", {}}, {"-9.3e18", {}}, {"nan", {}},     {"2.9.", {}}};
    for (const auto& [text, integer] : cases) {
        t.blackboard->set("text", text);
        double real = 0;
        if (t.blackboard->get("text", real))
            t.blackboard->set("real", real);
        else
            t.blackboard->erase("real");
        const auto node = t.factory.instantiateTreeNode(
            "AlwaysSuccess", "n",
            {{"literal", text}, {"text", "${text}"}, {"real", "${real}"}, {"formula", "${real} + 0"}},
            t.blackboard);
        for (const char* port : {"literal", "text", "real", "formula"})
            EXPECT_EQ(node->getParam<int>(port), integer) << port << " '" << text << "'";
        EXPECT_EQ(node->getParam<std::uint64_t>("literal").has_value(),
                  integer.value_or(-1) >= 0 || std::string(text) == "3e9")
            << text;
    }
}

TEST(Blackboard, AKeyExistsFromItsFirstWriteToItsErasure)
{
    const auto board = BT::Blackboard::create<BT::BlackboardLocal>();
    const BT::Any& slot = board->slot("flag");  // looked up, not written
    EXPECT_FALSE(board->contains("flag"));
    EXPECT_FALSE(board->erase("flag"));
    for (int i = 0; i < 1000; ++i)
        board->set("other_" + std::to_string(i), i);
    EXPECT_EQ(&board->slot("flag"), &slot);
    board->set("flag", "");
    EXPECT_TRUE(board->contains("flag"));
    EXPECT_TRUE(board->erase("flag"));
    EXPECT_EQ(board->getAny("flag"), nullptr);
}

class BuiltInLeaves : public testing::TestWithParam<Keeps>
{
protected:
    BuiltInLeaves()
    {
        t.blackboard = board;
        board->setClock(t.clock);
    }

    /// A fresh node of that kind, ticked once.
    char run(const std::string& id, const BT::NodeParameters& ports)
    {
        t.plant(leaf(id, ports));
        return t.tick().front();
    }
    [[nodiscard]] std::string text(const std::string& key) const
    {
        std::string value = "(none)";
        board->get(key, value);
        return value;
    }

    ScriptedTree t;
    BT::Blackboard::Ptr board = makeBlackboard(GetParam());
};

INSTANTIATE_TEST_SUITE_P(OnABlackboardThatKeepsValues, BuiltInLeaves,
                         testing::Values(Keeps::Itself, Keeps::InAHostsStore));

TEST_P(BuiltInLeaves, SetCopyAndErase)
{
    EXPECT_EQ(run("SetBlackboard", {{"key", "flag"}, {"value", ""}}), 'S');
    EXPECT_EQ(run("BlackboardContains", {{"key", "flag"}}), 'S');
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(run("EraseBlackboard", {{"key", "flag"}}), 'S');
    EXPECT_EQ(run("BlackboardContains", {{"key", "flag"}}), 'F');

    board->set("pose", Pose{1, 2});
    EXPECT_EQ(run("SetBlackboard", {{"key", "same"}, {"value", "${pose}"}}), 'S');
    EXPECT_EQ(board->get<Pose>("same"), (Pose{1, 2}));
    EXPECT_EQ(run("BlackboardCopy", {{"source", "pose"}, {"target", "copy"}}), 'S');
    EXPECT_EQ(board->get<Pose>("copy"), (Pose{1, 2}));
    EXPECT_EQ(run("SetBlackboard", {{"key", "message"}, {"value", "n=${n}"}}), 'S');
    EXPECT_EQ(text("message"), "n=");
    EXPECT_EQ(run("SetBlackboard", {{"key", "copy"}, {"value", "${none}"}}), 'F');
    EXPECT_EQ(board->get<Pose>("copy"), (Pose{1, 2}));
}

TEST_P(BuiltInLeaves, SetWithTypeWritesAllOrNothing)
{
    const auto set = [this](const char* type, const char* value) {
        return run("SetBlackboardWithType", {{"key", "k"}, {"type", type}, {"value", value}});
    };
    EXPECT_EQ(set("int", "3"), 'S');
    EXPECT_EQ(board->getAny("k")->kind(), BT::Any::Kind::Integer);
    EXPECT_EQ(set("float", "${k}/2 + 1"), 'S');
    EXPECT_EQ(board->getAny("k")->kind(), BT::Any::Kind::Real);
    EXPECT_EQ(text("k"), "2");
    EXPECT_EQ(set("bool", "false"), 'S');
    EXPECT_EQ(board->getAny("k")->kind(), BT::Any::Kind::Boolean);
    for (const auto& [type, value] :
         {std::pair{"int", "x"}, {"float", "${none}"}, {"bool", "maybe"}, {"pose", "1"}, {"int", ""}})
        EXPECT_EQ(set(type, value), 'F') << type << ' ' << value;
    EXPECT_EQ(text("k"), "false");
}

TEST_P(BuiltInLeaves, Compare)
{
    board->set("n", 5);
    board->set("state", "init");
    const struct
    {
        const char* id;
        BT::NodeParameters ports;
        char result;
    } cases[] = {
        {"StringMatch", {{"string_a", "${state}"}, {"string_b", "init"}}, 'S'},
        {"StringMatch", {{"string_a", "${n}"}, {"string_b", "5"}}, 'S'},
        {"StringMatch", {{"string_a", "${none}"}, {"string_b", ""}}, 'F'},
        {"StringMatch", {{"string_a", "x"}}, 'F'},
        {"BoolMatch", {{"bool_a", "${n} > 4"}, {"bool_b", "true"}}, 'S'},
        {"BoolMatch", {{"bool_a", "false"}, {"bool_b", "false"}}, 'S'},
        {"BoolMatch", {{"bool_a", "last_back_out_of_field"}, {"bool_b", "true"}}, 'F'},
        {"BoolMatch", {{"bool_a", "${none} == 1"}, {"bool_b", "false"}}, 'F'},
        {"IsAGreaterThanBInt", {{"A", "${n}"}, {"B", "4"}}, 'S'},
        {"IsAGreaterThanBInt", {{"A", "${n}"}, {"B", "5"}}, 'F'},
        {"IsAGreaterThanBFloat", {{"A", "${n} + 0.5 "}, {"B", "5.25"}}, 'S'},
        {"IsAGreaterThanBFloat", {{"A", "${none}"}, {"B", "-1"}}, 'F'},
    };
    for (const auto& [id, ports, result] : cases)
        EXPECT_EQ(run(id, ports), result) << id << testing::PrintToString(ports);
}

TEST_P(BuiltInLeaves, Calculate)
{
    board->set("n", 5);
    EXPECT_EQ(run("IntAdd", {{"int_a", "${n}"}, {"int_b", "1"}, {"out_sum", "n"}}), 'S');
    EXPECT_EQ(board->get<int>("n"), 6);
    EXPECT_EQ(run("FloatAdd", {{"a", "90"}, {"b", "-${n}"}, {"out_sum", "f"}}), 'S');
    EXPECT_EQ(board->get<double>("f"), 84.0);
    EXPECT_EQ(run("FloatAdd", {{"a", "1"}, {"b", "${none}"}, {"out_sum", "f"}}), 'F');
    EXPECT_EQ(run("IntAdd", {{"int_a", "1"}, {"int_b", "1"}, {"out_sum", ""}}), 'S');
    EXPECT_EQ(run("IntAdd", {{"int_a", "9223372036854775807"}, {"int_b", "1"}, {"out_sum", "n"}}), 'F');
    EXPECT_EQ(board->get<int>("n"), 6);
    const auto modulus = [this](const char* dividend, const char* divisor, const char* bias) {
        return run("FloatModulus",
                   {{"dividend", dividend}, {"divisor", divisor}, {"bias", bias}, {"out_remainder", "f"}});
    };
    for (const auto& [angle, bias, folded] : {std::tuple{"190", "-180", -170.0},
                                              {"-180", "-180", -180.0},
                                              {"180", "-180", -180.0},
                                              {"725", "-180", 5.0},
                                              {"-1e-20", "0", 0.0}}) {  // never the divisor itself
        EXPECT_EQ(modulus(angle, "360", bias), 'S');
        EXPECT_EQ(board->get<double>("f"), folded) << angle;
    }
    EXPECT_EQ(modulus("1", "0", "0"), 'F');
}

TEST_P(BuiltInLeaves, DelayCountsTicksAndForgetsThemOnAHalt)
{
    t.plant(leaf("Delay", {{"ticks", "2"}}));
    EXPECT_EQ(t.ticks(4), "R, R, S, R");
    EXPECT_EQ(t.halt(), "I");
    EXPECT_EQ(t.ticks(3), "R, R, S");
    EXPECT_EQ(run("Delay", {{"ticks", "0"}}), 'S');
    EXPECT_EQ(run("Delay", {{"ticks", "soon"}}), 'F');
    // In mid-sequence it takes effect once a run.
    t.plant(node("Sequence", {leaf("Delay", {{"ticks", "1"}}), action("a", "R")}));
    EXPECT_EQ(t.ticks(3), "R, R a, R a");
}

TEST_P(BuiltInLeaves, StackBlackboardPutsTheKeyBack)
{
    const auto scope = [this] {
        t.plant(node("DoWhile",
                     {leaf("StackBlackboard", {{"key", "k"}}),
                      leaf("SetBlackboard", {{"key", "k"}, {"value", "inside"}}), action("body", "RS")}));
    };
    board->set("k", 12);
    scope();
    EXPECT_EQ(t.tick(), "R body");
    EXPECT_EQ(text("k"), "inside");
    EXPECT_EQ(t.tick(), "S body");
    EXPECT_EQ(board->getAny("k")->kind(), BT::Any::Kind::Integer);
    board->erase("k");
    EXPECT_EQ(t.tick(), "R body");
    EXPECT_EQ(t.halt(), "I body!");
    EXPECT_FALSE(board->contains("k"));
    EXPECT_EQ(run("StackBlackboard", {{"key", ""}}), 'F');
}

TEST_P(BuiltInLeaves, TimersCountFromTheirFirstTick)
{
    board->set("frames", "10");
    t.plant(node("DoWhile",
                 {leaf("ConditionTimerFrames", {{"frames_out_key", "frames"}, {"start_from", "${frames}"}}),
                  leaf("ConditionTimerSecs", {{"secs_out_key", "secs"}, {"start_from", "0"}}),
                  action("body", "RRS")}));
    t.clock->now = 500;
    t.tick();
    t.clock->now = 2700;
    t.ticks(2);
    EXPECT_EQ(board->get<int>("frames"), 13);
    EXPECT_EQ(board->get<int>("secs"), 2);
    t.tick();  // a new run goes on from what the key holds
    EXPECT_EQ(board->get<int>("frames"), 14);
    EXPECT_EQ(board->get<int>("secs"), 0);
}

}  // namespace
}  // namespace vemra::test
