#include <gtest/gtest.h>

#include "runtime/scripted_tree.h"

namespace vemra::test {
namespace {

// One example of each; "R a b!" is the root's result, a tick of leaf a and a halt of leaf b.
TEST(ControlNodes, DoWhatTheirContractsSay)
{
    const BT::NodeParameters reset{{"reset_on_failure", "true"}};
    const std::pair<Sketch, const char*> examples[] = {
        // Guards are looked at on each tick and finished actions done once; the fifth tick begins a new run.
        {node("Sequence", {condition("g", "SSSF"), action("a", "S"), action("b", "R")}),
         "R g a b, R g b, R g b, F g b!, R g a b, halt I b!, R g a b"},
        {node("Fallback", {condition("g", "FFRFS"), action("a", "F"), action("b", "R")}),
         "R g a b, R g b, R g b!, R g b, S g b!"},
        // It is taken up where it stopped, and from the first child again behind a halt.
        {node("SequenceStar", reset, {condition("g", "S"), action("a", "RS"), action("b", "FS")}),
         "R g a, F a b, R g a, halt I a!, S g a b"},
        // Without a reset the failed child is tried again.
        {node("SequenceStar", {{"reset_on_failure", "false"}},
              {action("a", "S"), action("b", "S"), action("c", "FFRS")}),
         "F a b c, F c, R c, halt I c!, S a b c"},
        {node("FallbackStar", reset, {action("a", "F"), action("b", "RRF"), action("c", "SF")}),
         "R a b, R b, S b c, R a b, R b, F b c, R a b"},
        // On the fourth the condition is undecided: the branch stays as it is.
        {node("IfThenElse", {{"halt_on_switch", "true"}},
              {condition("g", "FFSRSF"), action("then", "R"), action("else", "R")}),
         "R g else, R g else, R g else! then, R g, R g then, R g then! else, halt I else!"},
        // The choice is made once a run, and anew after a halt.
        {node("IfThenElseStar", reset, {condition("g", "RSFF"), action("then", "RF"), action("else", "RS")}),
         "R g, R g then, F then, R g else, halt I else!, S g else"},
        // The last child's result, whatever the others return.
        {node("DoWhile",
              {action("fails", "F"), action("runs", "R"), action("ends", "RS"), action("body", "RRF")}),
         "R fails runs ends body, R fails runs ends body, F fails runs ends body runs! ends!, "
         "R fails runs ends body, halt I runs! body!"},
        // Two copies around a step: done on every tick, and the node ends on the tick on which the step does.
        {node("ParallelNode", {{"threshold", "4"}},
              {action("a", "S"), action("b", "S"), action("step", "RS"), action("c", "S")}),
         "R a b step c, S a b step c"},
        {node("ParallelNode", {{"threshold", "${none}"}}, {action("a", "S")}), "F"},
        // IDLE is no end.
        {node("ForceSuccess", {action("a", "RFSI")}), "R a, S a, S a, R a"},
        {node("ForceFailure", {action("a", "RFSI")}), "R a, F a, F a, R a"},
        // One round a tick; the third failure is one too many.
        {node("RetryUntilSuccesful", {{"num_attempts", "3"}}, {action("a", "FRF")}), "R a, R a, R a, F a"},
        {node("Loop", {{"num_cycles", "3"}}, {action("a", "SFRS")}), "R a, R a, R a, S a"},
        // A watchdog over a condition.
        {node("Repeat", {{"num_cycles", "3"}}, {condition("g", "SSFS")}), "R g, R g, F g, R g, R g, S g"},
        // The final child runs on every way out; the third tick gives the main child's result.
        {node("PostProcess", {{"tick_on_halt", "true"}}, {action("main", "RF"), action("final", "RS")}),
         "R main, R main final, F final, R main, halt I main! final final!, halt I, F main final, halt I"},
    };
    for (const auto& [sketch, line] : examples)
        EXPECT_EQ(ScriptedTree(sketch).replay(line), line) << sketch.id;
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

TEST(ControlNodes, WithoutTheirChildrenEndAtOnce)
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

TEST(Frameout, HaltsTheChildWhenItsTicksAreSpent)
{
    ScriptedTree t(node("Frameout", {{"frames", "${limit}"}}, {action("a", "RRRRRS")}));
    t.blackboard->set("limit", 2);
    EXPECT_EQ(t.ticks(3), "R a, R a, F a!");
    t.blackboard->set("limit", 9);  // read as the next run begins
    EXPECT_EQ(t.ticks(4), "R a, R a, R a, S a");
    t.blackboard->erase("limit");
    EXPECT_EQ(t.tick(), "F");  // a motion must not start without its limit
}

TEST(Timeout, GoesByTheInjectedClock)
{
    ScriptedTree t(node("Timeout", {{"msec", "1000"}}, {action("a", "R")}));
    // The run after it has its own second.
    for (const auto& [now, result] :
         {std::pair{5000, "R a"}, {5999, "R a"}, {6000, "F a a!"}, {6001, "R a"}}) {
        t.clock->now = now;
        EXPECT_EQ(t.tick(), result) << now;
    }
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
    // A key that goes is like one that is not there, and what cannot be read is not what is expected.
    for (const char* other : {"true", "", "no truth value"}) {
        t.blackboard->set("break", "false");
        EXPECT_EQ(t.tick(), "R a");
        t.blackboard->set("break", other);
        if (*other == '\0')
            t.blackboard->erase("break");
        EXPECT_EQ(t.tick(), "F a!") << other;
        EXPECT_EQ(t.at("Loop").status(), BT::NodeStatus::IDLE);
    }
    t.blackboard->set("break", false);  // as a truth value it reads the same
    EXPECT_EQ(t.tick(), "R a");
}

}  // namespace
}  // namespace vemra::test
