#include "runtime/user_plugin.h"

#include <chrono>
#include <thread>

#include "runtime/scripted_tree.h"
#include "support/matchers.h"

namespace vemra::test {
namespace {

using BT::NodeStatus;

constexpr const char* kPlugin = VEMRA_LIB_DIR "/libuser_plugin.so";

struct UserPlugin : testing::Test
{
    UserPlugin() { t.factory.registerFromPlugin(kPlugin); }

    std::unique_ptr<BT::TreeNode> make(const std::string& id, const BT::NodeParameters& ports = {})
    {
        return t.factory.instantiateTreeNode(id, id, ports, t.blackboard);
    }
    /// Ticks until the node has ended; a second at most.
    static NodeStatus tickToTheEnd(BT::TreeNode& node)
    {
        NodeStatus status = node.executeTick();
        for (int i = 0; i < 1000 && status == NodeStatus::RUNNING; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            status = node.executeTick();
        }
        return status;
    }

    ScriptedTree t;
    BT::Blackboard& board = *t.blackboard;
};

TEST_F(UserPlugin, ReadsAPortOfATypeOfItsOwn)
{
    EXPECT_EQ(make("DriveTo", {{"goal", "3;-4.5"}})->executeTick(), NodeStatus::SUCCESS);
    EXPECT_EQ(board.get<Waypoint>("at").y, -4.5);
    board.set("dock", Waypoint{1, 2});
    EXPECT_EQ(make("DriveTo", {{"goal", "${dock}"}})->executeTick(), NodeStatus::SUCCESS);
    EXPECT_EQ(board.get<Waypoint>("at").x, 1);
    board.set("text", "7;8");
    EXPECT_EQ(make("DriveTo", {{"goal", "${text}"}})->executeTick(), NodeStatus::SUCCESS);
    EXPECT_EQ(board.get<Waypoint>("at").x, 7);
    board.set("battery", 9);
    EXPECT_EQ(make("DriveTo", {{"goal", "${battery};${battery}"}})->executeTick(), NodeStatus::SUCCESS);
    EXPECT_EQ(board.get<Waypoint>("at").y, 9);
    for (const char* bad : {"3", "a;b", "", "${none}", "${none};${battery}"})
        EXPECT_EQ(make("DriveTo", {{"goal", bad}})->executeTick(), NodeStatus::FAILURE) << bad;
    EXPECT_EQ(make("DriveTo")->executeTick(), NodeStatus::FAILURE);
}

TEST_F(UserPlugin, ControlsAndDecoratorsOfItsOwn)
{
    t.plant(node("Last", {action("a", "R"), node("Keep", {node("Twice", {action("b", "SSRF")})})}));
    EXPECT_EQ(t.ticks(2), "S a b b a!, F a b b a!");
    t.plant(node("Last", {node("Twice", {action("c", "R")})}));
    EXPECT_EQ(t.tick(), "R c c");
    EXPECT_EQ(t.halt(), "I c!");
    EXPECT_EQ(t.at("Twice").status(), NodeStatus::IDLE);
}

TEST_F(UserPlugin, AnAsyncActionWorksOnAThreadOfItsOwn)
{
    board.set("cups", 2);
    const auto brew = make("Brew", {{"cups", "${cups}"}});
    EXPECT_EQ(tickToTheEnd(*brew), NodeStatus::SUCCESS);

    board.set("cups", -1);  // goes on until it is halted
    EXPECT_EQ(brew->executeTick(), NodeStatus::RUNNING);
    board.set("cups", 1);  // the ports stand as they were at the start
    EXPECT_EQ(brew->executeTick(), NodeStatus::RUNNING);
    brew->halt();
    EXPECT_EQ(brew->status(), NodeStatus::IDLE);
    EXPECT_EQ(tickToTheEnd(*brew), NodeStatus::SUCCESS);

    board.set("cups", 0);
    EXPECT_THROW(tickToTheEnd(*brew), std::runtime_error);
    board.set("cups", 1);
    EXPECT_EQ(tickToTheEnd(*brew), NodeStatus::SUCCESS);
}

TEST_F(UserPlugin, ACoroutineGoesOnWhereItYielded)
{
    t.plant(node("Sequence", {leaf("Greet"), action("a", "R")}));
    EXPECT_EQ(t.tick(), "R");
    EXPECT_EQ(board.get<std::string>("greeted"), "hello");
    EXPECT_EQ(t.tick(), "R");
    EXPECT_EQ(board.get<std::string>("greeted"), "there");
    EXPECT_EQ(t.tick(), "R a");
    EXPECT_EQ(board.get<std::string>("greeted"), "done");
    EXPECT_FALSE(board.contains("halted"));
    t.halt();

    t.tick();
    EXPECT_EQ(board.get<std::string>("greeted"), "hello");
    EXPECT_EQ(t.halt(), "I");
    EXPECT_TRUE(board.get<bool>("halted"));
    EXPECT_EQ(board.get<std::string>("greeted"), "done");  // what the flow held is released
    t.tick();
    EXPECT_EQ(board.get<std::string>("greeted"), "hello");
    t.tree = {};  // goes while it stands at a yield
    EXPECT_EQ(board.get<std::string>("greeted"), "done");
}

TEST(Factory, TellsWhatAPlugInLacks)
{
    BT::BehaviorTreeFactory factory;
    const auto refused = [&factory](const std::string& file, const std::string& why) {
        try {
            factory.registerFromPlugin(file);
            ADD_FAILURE() << file << " was taken";
        } catch (const BT::BehaviorTreeException& fault) {
            EXPECT_THAT(fault.what(), AllOf(HasSubstr(file), HasSubstr(why)));
        }
    };
    refused("/nowhere/libnone.so", "cannot open");
    refused(VEMRA_SOURCE_DIR "/CMakeLists.txt", "cannot open");
    refused(VEMRA_LIB_DIR "/libbehaviortree_cpp.so", "no function BT_RegisterNodesFromPlugin");
    factory.registerFromPlugin(kPlugin);
    EXPECT_THROW(factory.registerFromPlugin(kPlugin),
                 BT::BehaviorTreeException);  // its identifiers are taken
}

TEST(Factory, TakesAndGivesBackIdentifiers)
{
    ScriptedTree t;
    const auto succeed = [](BT::TreeNode&) { return NodeStatus::SUCCESS; };
    t.factory.registerSimpleAction("Beep", succeed);
    EXPECT_THROW(t.factory.registerSimpleCondition("Beep", succeed), BT::BehaviorTreeException);
    EXPECT_THROW(t.factory.registerNodeType<BT::AlwaysSuccessNode>("Sequence"), BT::BehaviorTreeException);
    EXPECT_TRUE(t.factory.builders().contains("Beep"));
    EXPECT_EQ(t.factory.manifests().back().registration_ID, "Beep");
    EXPECT_EQ(t.factory.manifests().back().type, BT::NodeType::ACTION);

    const auto kept = t.factory.instantiateTreeNode("Beep", "b", {}, t.blackboard);
    EXPECT_TRUE(t.factory.unregisterBuilder("Beep"));
    EXPECT_FALSE(t.factory.unregisterBuilder("Beep"));
    EXPECT_EQ(kept->executeTick(), NodeStatus::SUCCESS);
    EXPECT_THAT([&] { (void)t.factory.instantiateTreeNode("Beep", "second", {}, t.blackboard); },
                ThrowsMessage<BT::BehaviorTreeException>(AllOf(HasSubstr("'Beep'"), HasSubstr("second"))));
}

TEST(BasicTypes, ReadFromTextAndGiveText)
{
    EXPECT_EQ(BT::convertFromString<std::vector<int>>("1;-2;3"), (std::vector<int>{1, -2, 3}));
    EXPECT_EQ(BT::convertFromString<NodeStatus>("RUNNING"), NodeStatus::RUNNING);
    EXPECT_EQ(BT::convertFromString<BT::NodeType>(BT::toStr(BT::NodeType::SUBTREE)), BT::NodeType::SUBTREE);
    EXPECT_STREQ(BT::convertFromString<const char*>("word"), "word");
    EXPECT_THROW(BT::convertFromString<int>("3000000000"), std::invalid_argument);
    EXPECT_THROW(BT::convertFromString<bool>("maybe"), std::invalid_argument);
    for (const char* word : {"true", "True", "TRUE", "1"})
        EXPECT_TRUE(BT::convertFromString<bool>(word)) << word;
    for (const char* word : {"false", "False", "FALSE", "0"})
        EXPECT_FALSE(BT::convertFromString<bool>(word)) << word;
    EXPECT_EQ(BT::convertFromString<std::vector<double>>("1;2.5;"), (std::vector<double>{1, 2.5}));
    EXPECT_TRUE(BT::convertFromString<std::vector<int>>("").empty());
    EXPECT_THROW(BT::convertFromString<std::vector<int>>("1;;2"), std::invalid_argument);
}

}  // namespace
}  // namespace vemra::test
