#include "behaviortree_cpp/xml_parsing.h"

#include "behaviortree_cpp/loggers/bt_file_logger.h"
#include "leaves/host/host.h"
#include "support/folder.h"
#include "support/matchers.h"

namespace vemra::test {
namespace {

struct Xml : testing::Test
{
    Xml()
    {
        factory.registerSimpleAction("Note", [this](BT::TreeNode& node) {
            notes.push_back(node.getParam<std::string>("text").value_or("?"));
            return BT::NodeStatus::SUCCESS;
        });
    }

    BT::Tree build(const std::string& text) { return BT::buildTreeFromText(factory, text, blackboard); }

    std::string complaint(const std::string& text)
    {
        try {
            build(text);
        } catch (const BT::BehaviorTreeException& error) {
            return error.what();
        }
        return "no complaint";
    }

    BT::BehaviorTreeFactory factory;
    BT::Blackboard::Ptr blackboard = BT::Blackboard::create<BT::BlackboardLocal>();
    std::vector<std::string> notes;
};

TEST_F(Xml, RunsWhatIsWritten)
{
    const BT::Tree tree = build(R"(
        <root main_tree_to_execute="Main">
          <BehaviorTree ID="Main">
            <Sequence name="all">
              <SetBlackboard output_key="who" value="dock"/>
              <SubTree ID="Greet"/>
              <Action ID="Note" name="last words" text="bye ${who}"/>
              <SubTree ID="Greet"/>
            </Sequence>
          </BehaviorTree>
          <BehaviorTree ID="Greet"><Inverter><Inverter><Note text="hello ${who}"/></Inverter></Inverter></BehaviorTree>
          <TreeNodesModel><Action ID="Note"/></TreeNodesModel>
        </root>)");
    EXPECT_EQ(tree.root_node->executeTick(), BT::NodeStatus::SUCCESS);
    EXPECT_THAT(notes, ElementsAre("hello dock", "bye dock", "hello dock"));
    EXPECT_EQ(tree.root_node->name(), "all");
    EXPECT_EQ(tree.nodes.size(), 11U) << "each use of a tree is a copy of its own";
    EXPECT_EQ(tree.nodes[6]->name(), "last words");
}

TEST_F(Xml, SaysWhereAndWhatIsWrong)
{
    EXPECT_THAT(complaint("<root>\n<BehaviorTree ID='A'>\n<Sequence></BehaviorTree></root>"),
                HasSubstr("text:3: not well-formed"));
    EXPECT_THAT(complaint("<tree/>"), HasSubstr("expected <root>"));
    EXPECT_THAT(
        complaint("<root main_tree_to_execute='B'><BehaviorTree ID='A'><Note/></BehaviorTree></root>"),
        HasSubstr("ID 'B'"));
    EXPECT_THAT(complaint("<root><BehaviorTree ID='A'><Note/>\n<Note/></BehaviorTree></root>"),
                HasSubstr("exactly one node in <BehaviorTree>"));
    EXPECT_THAT(complaint("<root><BehaviorTree ID='A'>\n\n<Nothing/></BehaviorTree></root>"),
                HasSubstr("text:3: no node type 'Nothing'"));
    EXPECT_THAT(complaint("<root><BehaviorTree ID='A'>\n<SubTree ID='B'/></BehaviorTree></root>"),
                HasSubstr("text:2: there is no <BehaviorTree> with ID 'B'"));
    EXPECT_THAT(complaint("<root main_tree_to_execute='A'>"
                          "<BehaviorTree ID='A'><Sequence><SubTree ID='B'/></Sequence></BehaviorTree>"
                          "<BehaviorTree ID='B'><SubTree ID='A'/></BehaviorTree></root>"),
                HasSubstr("enters itself"));
    EXPECT_THAT(complaint("<root><BehaviorTree ID='A'><Note><Note/></Note></BehaviorTree></root>"),
                HasSubstr("takes no children"));
    EXPECT_THROW(static_cast<void>(BT::buildTreeFromFile(factory, "/no/such/file.xml", blackboard)),
                 BT::BehaviorTreeException);
}

TEST_F(Xml, WhatIsWrittenIsReadBackAsTheSameNodes)
{
    BT::BehaviorTreeFactory robot;
    leaf::LeafHost host(robot);
    host.use_runtime_builtin();
    host.register_defaults();
    robot.registerFromPlugin(VEMRA_LIB_DIR "/libvemra_tree.so");
    std::size_t nodes = 0;
    for (const std::string& name : robot.treeNames()) {
        const BT::Tree built = robot.createTree(name, blackboard);
        const BT::Tree read = BT::buildTreeFromText(
            robot, BT::writeXML(robot, built.root_node, name.size() % 2 == 0), blackboard);
        ASSERT_EQ(read.nodes.size(), built.nodes.size()) << name;
        for (std::size_t i = 0; i < built.nodes.size(); ++i, ++nodes) {
            ASSERT_EQ(read.nodes[i]->registrationName(), built.nodes[i]->registrationName()) << name;
            ASSERT_EQ(read.nodes[i]->name(), built.nodes[i]->name()) << name;
            ASSERT_EQ(read.nodes[i]->initializationParameters(), built.nodes[i]->initializationParameters())
                << name << " node " << i;
        }
    }
    EXPECT_GT(nodes, 123U);
}

TEST_F(Xml, AFileLoggerTellsTheTreeAndItsChanges)
{
    const Folder folder;
    const auto file = folder / "log.jsonl";
    const BT::Tree tree = build(
        "<root><BehaviorTree ID='A'><Sequence><Delay ticks='1'/><Note name='a \"b\"' text='x'/></Sequence>"
        "</BehaviorTree></root>");
    {
        BT::FileLogger logger(tree.root_node, file.c_str());
        tree.root_node->executeTick();
        tree.root_node->executeTick();
    }
    const std::vector<std::string> lines = linesOf(bytesOf(file));
    ASSERT_GE(lines.size(), 4U);
    EXPECT_THAT(lines[0], HasSubstr(R"({"index":2,"parent":0,"id":"Note","name":"a \"b\""})"));
    EXPECT_THAT(lines, Contains(HasSubstr(R"("index":2,"from":"IDLE","to":"SUCCESS")")));
    EXPECT_THROW(BT::FileLogger(tree.root_node, "/no/such/folder/log"), BT::BehaviorTreeException);
}

}  // namespace
}  // namespace vemra::test
