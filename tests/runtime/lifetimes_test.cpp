#include <malloc.h>

#include <optional>
#include <thread>
#include <type_traits>

#include "runtime/scripted_tree.h"
#include "runtime/user_plugin.h"
#include "support/matchers.h"

namespace vemra::test {
namespace {

using BT::NodeStatus;

TEST(Lifetimes, ValuesAndTreesOfAPlugInOutliveItsFactory)
{
    const auto board = BT::Blackboard::create<BT::BlackboardLocal>();
    BT::Tree tree;
    {
        BT::BehaviorTreeFactory factory;
        factory.registerFromPlugin(VEMRA_LIB_DIR "/libuser_plugin.so");
        tree = grown(leaf("DriveTo", {{"goal", "3;4"}}), factory, board);
    }
    EXPECT_EQ(tree.root_node->executeTick(), NodeStatus::SUCCESS);
    EXPECT_EQ(board->get<Waypoint>("at").x, 3);
    tree = {};
    EXPECT_EQ(board->get<Waypoint>("at").y, 4);
    board->erase("at");
}

TEST(Lifetimes, ATreeThatEntersOthersOutlivesItsFactory)
{
    const auto board = BT::Blackboard::create();
    BT::Tree tree;
    {
        BT::BehaviorTreeFactory factory;
        registerTree(factory, "Inner", leaf("Delay", {{"ticks", "1"}}));
        tree = grown(enter("Inner"), factory, board);
        EXPECT_EQ(tree.root_node->executeTick(), NodeStatus::RUNNING);
    }
    EXPECT_EQ(tree.root_node->executeTick(), NodeStatus::SUCCESS);  // what runs is run to its end
    EXPECT_EQ(tree.root_node->executeTick(), NodeStatus::FAILURE);
}

TEST(Lifetimes, ATreeIsMovedAndHaltsWhatRunsWhenItGoes)
{
    static_assert(!std::is_copy_constructible_v<BT::Tree> && std::is_nothrow_move_assignable_v<BT::Tree>);
    ScriptedTree t(node("Sequence", {enter("Inner"), action("b", "R")}));
    t.registerTree("Inner", node("Fallback", {action("a", "R")}));
    t.tick();
    t.script->asked.clear();
    BT::Tree second = std::move(t.tree);
    EXPECT_EQ(t.tree.root_node, nullptr);  // NOLINT(bugprone-use-after-move): that is what it is about
    EXPECT_THAT(t.script->asked, IsEmpty());
    second = {};
    EXPECT_THAT(t.script->asked, ElementsAre("a!"));
}

TEST(Lifetimes, ABlackboardGoesWithItsLastTree)
{
    ScriptedTree t;
    t.registerTree("Inner", node("Sequence", {enter("Innermost")}));
    t.registerTree("Innermost", leaf("AlwaysSuccess"));
    const auto run = [&t] {
        t.blackboard = BT::Blackboard::create();
        t.plant(enter("Inner"));
        t.tick();
        return std::weak_ptr<BT::Blackboard>(t.blackboard);
    };
    const auto first = run();
    const auto second = run();
    EXPECT_TRUE(first.expired());
    EXPECT_FALSE(second.expired());
    EXPECT_EQ(t.built["Sequence"], 2);
}

TEST(Lifetimes, TwoThreadsUseOneFactoryEachOnItsBlackboard)
{
    BT::BehaviorTreeFactory factory;
    registerTree(factory, "Inner", leaf("IntAdd", {{"int_a", "${n}"}, {"int_b", "1"}, {"out_sum", "n"}}));
    const auto count = [&factory](int& counted) {
        for (int i = 0; i < 200; ++i) {
            const auto board = BT::Blackboard::create();
            board->set("n", 0);
            const BT::Tree entry = grown(enter("Inner"), factory, board);
            for (int tick = 0; tick < 10; ++tick)
                entry.root_node->executeTick();
            counted += board->get<int>("n");
        }
    };
    int one = 0;
    int other = 0;
    std::thread beside([&] { count(one); });
    count(other);
    beside.join();
    EXPECT_EQ(one, 2000);
    EXPECT_EQ(other, 2000);
}

TEST(Lifetimes, ALeafHaltsTheRootFromWithinAnEnteredTree)
{
    for (const char* reset : {"true", "false"}) {
        ScriptedTree t;
        t.factory.registerSimpleAction("HaltAll", [&t](BT::TreeNode&) {
            BT::haltAllActions(t.tree.root_node);
            return NodeStatus::SUCCESS;
        });
        t.registerTree("Inner", node("SequenceStar", {{"reset_on_failure", reset}},
                                     {action("a", "R"), leaf("HaltAll"), action("b", "S")}));
        t.registerTree("Twice", node("Sequence", {enter("Inner"), enter("Inner")}));
        t.plant(node("DoWhile", {enter("Twice"), action("body", "R")}));
        EXPECT_EQ(t.tick(), "R a body");
        t.script->places["a"] = 0;
        t.at("DoWhile").halt();
        t.script->takeAsked();
        t.registerTree("Inner", node("SequenceStar", {{"reset_on_failure", reset}},
                                     {leaf("HaltAll"), action("b", "R")}));
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(t.tick().front(), 'R') << reset;
            t.halt();
            EXPECT_EQ(t.at("DoWhile").status(), NodeStatus::IDLE);
        }
    }
}

TEST(Lifetimes, ABuilderMayRegisterTreesItsOwnIncluded)
{
    ScriptedTree t;
    const std::string long_name(40, 'n');
    t.factory.registerTreeBuilder(
        "Growing", [&t, long_name](const BT::BehaviorTreeFactory& by, const BT::Blackboard::Ptr& on) {
            for (int i = 0; i < 100; ++i)
                t.registerTree(long_name + std::to_string(i), action("a", "S"));
            t.registerTree("Growing", action("second", "S"));
            return grown(leaf("AlwaysSuccess"), by, on);
        });
    t.plant(node("Sequence", {enter("Growing"), enter(long_name + "99")}));
    EXPECT_EQ(t.tick(), "S a");
    EXPECT_EQ(t.tick(), "S second a");
}

NodeStatus outOfOrder(BT::TreeNode&)
{
    throw std::runtime_error("out of order");
}

TEST(Lifetimes, AfterAThrowAHaltReachesWhatRuns)
{
    class Bare : public BT::DecoratorNode
    {
    public:
        explicit Bare(const std::string& name) : DecoratorNode(name) {}

    private:
        BT::NodeStatus tick() override { return child_node_->executeTick(); }
    };
    for (const char* id : {"Inverter", "SubTree", "ActionDecorator", "ForceSuccess", "Simple", "Bare"}) {
        ScriptedTree t;
        t.factory.registerSimpleAction("Throw", outOfOrder);
        t.factory.registerSimpleDecorator("Simple", [](NodeStatus child, BT::TreeNode&) { return child; });
        t.factory.registerNodeType<Bare>("Bare");
        t.registerTree("Inner", node("DoWhile", {action("motor", "R"), leaf("Throw")}));
        t.plant(node("Sequence", {node(id, {enter("Inner")})}));
        EXPECT_THROW(t.tick(), std::runtime_error) << id;
        EXPECT_EQ(t.script->takeAsked(), "motor");
        EXPECT_EQ(t.halt(), "I motor!") << id;
    }
}

TEST(Lifetimes, AClearUpThatThrowsDoesNotKeepAHaltFromEnding)
{
    ScriptedTree t;
    t.factory.registerSimpleAction("Throw", outOfOrder);
    t.plant(
        node("DoWhile", {node("PostProcess", {action("scope", "R"), leaf("Throw")}), action("motor", "R")}));
    t.tick();
    EXPECT_THROW(t.halt(), std::runtime_error);
    EXPECT_EQ(t.halt(), "I scope! motor!");
}

TEST(Lifetimes, KeysThatAreNotThereTakeNoMemory)
{
    ScriptedTree t;
    t.plant(node("DoWhile", {leaf("BlackboardContains", {{"key", "${name}"}}),
                             leaf("BlackboardCopy", {{"source", "${name}"}, {"target", "copy"}}),
                             leaf("SetBlackboard", {{"key", "${name}"}, {"value", ""}}),
                             leaf("EraseBlackboard", {{"key", "${name}"}})}));
    const auto use = [&t](int count) {
        for (int i = 0; i < count; ++i) {
            const std::string name = "a key with a long name, number " + std::to_string(i);
            t.blackboard->set("name", name);
            t.tick();
            t.blackboard->set(name, i);
            t.blackboard->erase(name);
        }
    };
    use(100);
    const std::size_t before = mallinfo2().uordblks;
    use(20000);
    EXPECT_LT(mallinfo2().uordblks, before + 100000);
}

TEST(Lifetimes, ACStringOfAPortStaysUntilItIsReadAgain)
{
    ScriptedTree t;
    t.blackboard->set("room", "the kitchen beyond the hall");
    t.blackboard->set("n", 7);
    const auto made = t.factory.instantiateTreeNode("AlwaysSuccess", "a",
                                                    {{"text", "to ${room}, number ${n}"},
                                                     {"ref", "${room}"},
                                                     {"number", "${n}"},
                                                     {"none", "${none}"},
                                                     {"plain", "plain"}},
                                                    t.blackboard);
    const auto read = [&made](const char* port) { return made->getParam<const char*>(port).value(); };
    const char* text = read("text");
    const char* ref = read("ref");
    const char* number = read("number");
    t.blackboard->set("room", 1);
    t.blackboard->set("n", "another text that is longer than the first one");
    EXPECT_STREQ(text, "to the kitchen beyond the hall, number 7");
    EXPECT_STREQ(ref, "the kitchen beyond the hall");
    EXPECT_STREQ(number, "7");
    EXPECT_STREQ(read("plain"), "plain");
    EXPECT_FALSE(made->getParam<const char*>("none"));
}

}  // namespace
}  // namespace vemra::test
