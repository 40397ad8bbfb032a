// A host and its leaves in the style of the 2.x interface, as people have them: what they include, derive
// from and call has to be there, and to do what they rely on.
#include "behaviortree_cpp/action_node.h"
#include "behaviortree_cpp/blackboard/blackboard_local.h"
#include "behaviortree_cpp/blackboard/demangle_util.h"
#include "behaviortree_cpp/bt_factory.h"
#include "behaviortree_cpp/decorators/blackboard_precondition.h"
#include "behaviortree_cpp/loggers/bt_cout_logger.h"
#include "behaviortree_cpp/loggers/bt_file_logger.h"
#include "behaviortree_cpp/loggers/bt_minitrace_logger.h"
#include "behaviortree_cpp/optional.hpp"
#include "behaviortree_cpp/signal.h"
#include "behaviortree_cpp/string_view.hpp"
#include "behaviortree_cpp/tick_engine.h"
#include "behaviortree_cpp/xml_parsing.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "runtime/user_plugin.h"
#include "support/folder.h"

using namespace BT;

namespace {

/// A class of its own that the leaves talk to.
class Arm
{
public:
    NodeStatus open()
    {
        is_open = true;
        return NodeStatus::SUCCESS;
    }
    NodeStatus close(TreeNode&)
    {
        is_open = false;
        return NodeStatus::SUCCESS;
    }
    bool is_open = false;
};

/// Carries something for a while on a thread.
class Carry : public ActionNode
{
public:
    explicit Carry(const std::string& name) : ActionNode(name) {}
    ~Carry() override { stopAndJoinThread(); }

    void onInit() override { blackboard()->set("set up", ++set_up_); }
    NodeStatus tick() override
    {
        halt_asked_ = false;
        for (int i = 0; i < 20 && !halt_asked_; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return halt_asked_ ? NodeStatus::IDLE : NodeStatus::SUCCESS;
    }

    void halt() override { halt_asked_ = true; }

private:
    std::atomic_bool halt_asked_ = false;
    int set_up_ = 0;
};

/// Sets itself up before its first tick.
class Counting : public ConditionNode
{
public:
    explicit Counting(const std::string& name) : ConditionNode(name) {}
    void onInit() override { ++inits; }
    NodeStatus tick() override { return inits == 1 ? NodeStatus::SUCCESS : NodeStatus::FAILURE; }

    int inits = 0;
};

class TooEager : public SyncActionNode
{
public:
    explicit TooEager(const std::string& name) : SyncActionNode(name) { blackboard()->set("eager", 1); }
    NodeStatus tick() override { return NodeStatus::SUCCESS; }
};

struct OlderHost : testing::Test
{
    OlderHost()
    {
        factory.registerFromPlugin(VEMRA_LIB_DIR "/libuser_plugin.so");
        factory.registerNodeType<Carry>("Carry");
        factory.registerNodeType<Counting>("Counting");
        factory.registerSimpleAction("OpenArm", std::bind(&Arm::open, &arm));
        factory.registerSimpleAction("CloseArm", std::bind(&Arm::close, &arm, std::placeholders::_1));
        factory.registerSimpleCondition("ArmIsOpen", [this](TreeNode&) {
            return arm.is_open ? NodeStatus::SUCCESS : NodeStatus::FAILURE;
        });
    }

    static NodeStatus tickToTheEnd(Tree& tree)
    {
        NodeStatus status = NodeStatus::RUNNING;
        for (int i = 0; i < 2000 && status == NodeStatus::RUNNING; ++i) {
            status = tree.root_node->executeTick();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return status;
    }

    Arm arm;
    BehaviorTreeFactory factory;
};

constexpr const char* kFetch = R"(
    <root main_tree_to_execute="Fetch">
      <BehaviorTree ID="Fetch">
        <Sequence name="fetch">
          <MakeReady/>
          <Action ID="DriveTo" goal="${shelf}"/>
          <Carry name="carry"/>
          <CloseArm/>
        </Sequence>
      </BehaviorTree>
      <BehaviorTree ID="MakeReady">
        <Sequence>
          <OpenArm/>
          <SetBlackboard key="shelf" value="3;1.5"/>
          <Condition ID="ArmIsOpen"/>
        </Sequence>
      </BehaviorTree>
    </root>)";

TEST_F(OlderHost, RunsItsTreeWithAllLoggers)
{
    const vemra::test::Folder folder;
    const std::string trace = folder / "trace.json";
    testing::internal::CaptureStdout();
    {
        auto tree = buildTreeFromText(factory, kFetch);  // on a blackboard of its own
        StdCoutLogger to_console(tree.root_node);
        FileLogger to_file(tree.root_node, (folder / "log.jsonl").c_str());
        MinitraceLogger to_trace(tree.root_node, trace.c_str());
        printTreeRecursively(tree.root_node);
        EXPECT_EQ(tickToTheEnd(tree), NodeStatus::SUCCESS);
        EXPECT_EQ(tree.root_node->blackboard()->get<Waypoint>("at").y, 1.5);
        EXPECT_EQ(tree.root_node->blackboard()->get<int>("set up"), 1);
        for (const auto& node : tree.nodes)
            EXPECT_EQ(node->blackboard(), tree.root_node->blackboard());
        const SerializedTreeStatus statuses = buildSerializedStatusSnapshot(tree.root_node);
        EXPECT_EQ(statuses.size(), tree.nodes.size());
        EXPECT_EQ(statuses.front().second, static_cast<std::uint8_t>(NodeStatus::SUCCESS));
    }
    const std::string shown = testing::internal::GetCapturedStdout();
    EXPECT_THAT(shown, testing::ContainsRegex("carry +IDLE -> RUNNING\n"));
    EXPECT_THAT(shown, testing::HasSubstr("\nfetch\n   MakeReady\n"));
    EXPECT_FALSE(arm.is_open);
    std::ifstream in(trace);
    const std::string events((std::istreambuf_iterator<char>(in)), {});
    EXPECT_THAT(events, testing::HasSubstr(R"({"name":"carry","cat":"Action","ph":"B")"));
    EXPECT_THAT(events, testing::HasSubstr(R"({"name":"carry","cat":"Action","ph":"E")"));
    EXPECT_THAT(events, testing::HasSubstr(R"({"name":"ArmIsOpen","cat":"Condition","ph":"X")"));
    EXPECT_THAT(events, testing::EndsWith("]}\n"));
}

TEST_F(OlderHost, DropsItsTreeWhileAnActionRuns)
{
    for (int i = 0; i < 20; ++i) {
        auto tree = buildTreeFromText(factory, kFetch);
        tree.root_node->executeTick();
    }
}

TEST_F(OlderHost, KeepsTreesInSeveralFiles)
{
    const vemra::test::Folder folder;
    std::filesystem::create_directory(folder / "parts");
    const auto write = [&folder](const char* name, const char* text) {
        std::ofstream(folder / name) << text;
    };
    write("main.xml", R"(<root main_tree_to_execute="All"><include path="parts/arm.xml"/>
        <BehaviorTree ID="All"><Sequence><UseArm/></Sequence></BehaviorTree></root>)");
    write("parts/arm.xml", R"(<root><include path="open.xml"/><include path="../main.xml"/>
        <BehaviorTree ID="UseArm"><Sequence><SubTree ID="Open"/><ArmIsOpen/></Sequence></BehaviorTree></root>)");
    write("parts/open.xml", R"(<root><BehaviorTree ID="Open"><OpenArm/></BehaviorTree></root>)");
    auto tree = buildTreeFromFile(factory, (folder / "main.xml").string());
    EXPECT_EQ(tree.root_node->executeTick(), NodeStatus::SUCCESS);

    write("main.xml",
          "<root>\n<include path='none.xml'/><BehaviorTree ID='A'><OpenArm/></BehaviorTree></root>");
    EXPECT_THAT([&] { (void)buildTreeFromFile(factory, (folder / "main.xml").string()); },
                testing::ThrowsMessage<BehaviorTreeException>(
                    testing::AllOf(testing::HasSubstr("main.xml:2"), testing::HasSubstr("none.xml"))));
    write("main.xml",
          "<root><include path='parts/bad.xml'/><BehaviorTree ID='A'><OpenArm/></BehaviorTree></root>");
    write("parts/bad.xml", "<root>\n<BehaviorTree ID='B'>\n<Sequence></BehaviorTree></root>");
    EXPECT_THAT([&] { (void)buildTreeFromFile(factory, (folder / "main.xml").string()); },
                testing::ThrowsMessage<BehaviorTreeException>(testing::HasSubstr("bad.xml:3")));
}

TEST_F(OlderHost, WritesTheModelOfItsNodesWithTheirPorts)
{
    auto tree = buildTreeFromText(factory, kFetch);
    const std::string xml = writeXML(factory, tree.root_node);
    const auto model = xml.find("<TreeNodesModel>");
    ASSERT_NE(model, std::string::npos);
    EXPECT_THAT(
        xml.substr(model),
        testing::ContainsRegex("<Action ID=\"DriveTo\">[ \n]*<input_port name=\"goal\" default=\"0;0\"/>"));
}

TEST_F(OlderHost, PutsNodesTogetherByHand)
{
    SequenceNode root("root");
    Counting counting("counting");
    InverterNode inverter("inverter");
    AlwaysFailureNode fails("fails");
    root.addChild(&counting);
    root.addChild(&inverter);
    inverter.setChild(&fails);
    EXPECT_THROW((void)counting.blackboard(), std::logic_error);
    EXPECT_EQ(root.executeTick(), NodeStatus::SUCCESS);
    EXPECT_EQ(root.executeTick(), NodeStatus::SUCCESS);
    EXPECT_EQ(counting.inits, 1);

    const auto board = Blackboard::create<BlackboardLocal>();
    assignBlackboardToEntireTree(&root, board);
    EXPECT_EQ(fails.blackboard(), board);
    EXPECT_EQ(counting.inits, 1);

    std::thread ticker([&counting] { counting.executeTick(); });
    EXPECT_EQ(counting.waitValidStatus(), NodeStatus::SUCCESS);
    ticker.join();
}

TEST_F(OlderHost, HearsThatAConstructorIsTooEarlyForTheBlackboard)
{
    factory.registerNodeType<TooEager>("TooEager");
    EXPECT_THAT([this] { (void)factory.instantiateTreeNode("TooEager", "early", {}, Blackboard::create()); },
                testing::ThrowsMessage<std::logic_error>(
                    testing::AllOf(testing::HasSubstr("'early'"), testing::HasSubstr("onInit()"))));
}

TEST_F(OlderHost, ChecksKeysByDecorator)
{
    const auto board = Blackboard::create<BlackboardLocal>();
    auto tree = buildTreeFromText(factory, R"(
        <root><BehaviorTree ID="A"><Sequence>
          <BlackboardCheckInt key="${n}" expected="42"><AlwaysSuccess/></BlackboardCheckInt>
          <BlackboardCheckDouble key="x" expected="*"><AlwaysSuccess/></BlackboardCheckDouble>
          <BlackboardCheckString key="word" expected="yes" return_on_mismatch="SUCCESS">
            <OpenArm/></BlackboardCheckString>
        </Sequence></BehaviorTree></root>)",
                                  board);
    EXPECT_EQ(tree.root_node->executeTick(), NodeStatus::FAILURE);
    board->set("n", 42);
    EXPECT_EQ(tree.root_node->executeTick(), NodeStatus::FAILURE);
    board->set("x", 0.5);
    EXPECT_EQ(tree.root_node->executeTick(), NodeStatus::SUCCESS);
    EXPECT_FALSE(arm.is_open);
    board->set("word", "yes");
    EXPECT_EQ(tree.root_node->executeTick(), NodeStatus::SUCCESS);
    EXPECT_TRUE(arm.is_open);
    board->set("n", 43);
    EXPECT_EQ(tree.root_node->executeTick(), NodeStatus::FAILURE);
}

TEST_F(OlderHost, FindsTheSmallThingsInTheHeaders)
{
    const std::set<std::string>& builtin = factory.builtinNodes();
    EXPECT_TRUE(builtin.count("Sequence") == 1 && builtin.count("DriveTo") == 0);
    const BT::optional<int> none = BT::nullopt;
    EXPECT_FALSE(none);
    EXPECT_TRUE(TreeNode::isBlackboardPattern("${key}"));
    for (const char* text : {"key", "${key", "${}", "to ${key}", "${a}${b}"})
        EXPECT_FALSE(TreeNode::isBlackboardPattern(text)) << text;
    EXPECT_EQ(demangle(typeid(Arm)).substr(demangle(typeid(Arm)).size() - 3), "Arm");

    Signal<int> signal;
    int heard = 0;
    auto subscriber = signal.subscribe([&heard](int value) { heard += value; });
    signal.notify(3);
    subscriber.reset();
    signal.notify(4);
    EXPECT_EQ(heard, 3);

    TickEngine engine(0);
    std::thread other([&engine] { engine.notify(); });
    engine.wait();
    other.join();
}

}  // namespace
