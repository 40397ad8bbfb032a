// What the built-in leaves and the ports do with a store of the host's stands in their own tests, which run
// on both kinds of blackboard.
#include "runtime/host_store.h"

#include "runtime/scripted_tree.h"
#include "support/matchers.h"

namespace vemra::test {
namespace {

using BT::NodeStatus;

struct HostStore : testing::Test
{
    HostStore() { t.blackboard = board; }

    [[nodiscard]] std::string stored(const std::string& key) const
    {
        const auto found = values->find(key);
        return found == values->end() || found->second.empty() ? "(none)" : found->second.cast<std::string>();
    }
    void store(const std::string& key, const std::string& text) { (*values)[key] = BT::Any(text); }

    std::shared_ptr<Drawer::Values> values = std::make_shared<Drawer::Values>();
    BT::Blackboard::Ptr board = BT::Blackboard::create<Drawer>(values);
    ScriptedTree t;
};

TEST_F(HostStore, HoldsWhatTheBlackboardIsGiven)
{
    board->set("n", 7);
    using Place = std::pair<int, int>;
    board->set("place", Place(3, 4));
    EXPECT_EQ((*values)["n"].integer(), 7);
    EXPECT_EQ((*values)["place"].cast<Place>(), Place(3, 4));
    EXPECT_FALSE(board->contains("room"));
    store("room", "hall");
    EXPECT_TRUE(board->contains("room"));
    EXPECT_EQ(board->get<std::string>("room"), "hall");
    EXPECT_THAT(board->keys(), ElementsAre("n", "place"));
    EXPECT_TRUE(board->erase("room"));
    EXPECT_FALSE(board->erase("room"));
    EXPECT_FALSE(board->contains("room"));
    EXPECT_EQ(board->getAny("room"), nullptr);
}

TEST_F(HostStore, IsErasedFromAsItLikes)
{
    class Erasing : public Drawer
    {
    public:
        explicit Erasing(const std::shared_ptr<Values>& values) : Drawer(values), values_(values) {}
        void erase(const std::string& key) override { values_->erase(key); }

    private:
        std::shared_ptr<Values> values_;
    };
    const auto erasing = BT::Blackboard::create<Erasing>(values);
    store("room", "hall");
    EXPECT_TRUE(erasing->erase("room"));
    EXPECT_TRUE(values->empty());
}

TEST_F(HostStore, IsSeenInEachTickAsItStands)
{
    t.plant(node("Sequence", {leaf("StringMatch", {{"string_a", "at ${room}"}, {"string_b", "at hall"}}),
                              leaf("BlackboardContains", {{"key", "${name}"}}),
                              node("BB_Precondition", {{"key", "room"}, {"expected", "${wanted}"}},
                                   {action("a", "R")})}));
    EXPECT_EQ(t.tick(), "F");
    store("room", "hall");
    store("name", "flag");
    EXPECT_EQ(t.tick(), "F");
    store("flag", "");
    store("wanted", "hall");
    EXPECT_EQ(t.tick(), "R a");
    store("wanted", "bath");
    EXPECT_EQ(t.tick(), "F a!");
}

TEST_F(HostStore, HasWhatANodeWritesBeforeTheNextIsTicked)
{
    std::string seen;
    t.factory.registerSimpleAction("Look", [&](BT::TreeNode& node) {
        seen = stored("n") + " " + node.getParam<std::string>("n").value_or("-");
        store("n", "9");  // by the host, in mid-tick
        seen += " " + node.getParam<std::string>("n").value_or("-");
        return NodeStatus::SUCCESS;
    });
    t.plant(node("Sequence", {leaf("IntAdd", {{"int_a", "4"}, {"int_b", "1"}, {"out_sum", "n"}}),
                              node("ForceSuccess", {leaf("Look", {{"n", "${n}"}})}),
                              leaf("IntAdd", {{"int_a", "${n}"}, {"int_b", "1"}, {"out_sum", "${to}"}})}));
    store("to", "sum");
    EXPECT_EQ(t.tick(), "S");
    EXPECT_EQ(seen, "5 5 9");
    EXPECT_EQ(stored("sum"), "10");
}

TEST_F(HostStore, IsReadOnceForAnActionOnAThread)
{
    class Read : public BT::AsyncActionNode
    {
    public:
        using AsyncActionNode::AsyncActionNode;
        BT::NodeStatus tick() override
        {
            return getParam<int>("n") == 3 ? BT::NodeStatus::SUCCESS : BT::NodeStatus::FAILURE;
        }
    };
    t.factory.registerBuilder({BT::NodeType::ACTION, "Read", {}},
                              [](const std::string& name, const BT::NodeParameters& ports) {
                                  return BT::makeNode<Read>(name, ports);
                              });
    store("n", "3");
    t.plant(leaf("Read", {{"n", "${n}"}}));
    NodeStatus result = t.tree.root_node->executeTick();
    store("n", "4");
    while (result == NodeStatus::RUNNING)
        result = t.tree.root_node->executeTick();
    EXPECT_EQ(result, NodeStatus::SUCCESS);
}

TEST_F(HostStore, ComesBehindATreeThatWasTickedBefore)
{
    t.blackboard = BT::Blackboard::create();
    t.blackboard->set("a", 1);
    t.plant(leaf("IntAdd", {{"int_a", "${a}"}, {"int_b", "1"}, {"out_sum", "b"}}));
    t.tick();
    BT::assignBlackboardToEntireTree(t.tree.root_node, board);
    store("a", "41");
    EXPECT_EQ(t.tick(), "S");
    EXPECT_EQ(stored("b"), "42");
    BT::assignBlackboardToEntireTree(t.tree.root_node, t.blackboard);
    EXPECT_EQ(t.tick(), "S");
    EXPECT_EQ(t.blackboard->get<int>("b"), 2);
    EXPECT_EQ(stored("b"), "42");
}

}  // namespace
}  // namespace vemra::test
