#include <atomic>
#include <chrono>
#include <thread>

#include "runtime/scripted_tree.h"
#include "support/matchers.h"

namespace vemra::test {
namespace {

using namespace std::chrono_literals;
using BT::NodeStatus;

/// Works until it is asked to stop; its halt() leaves it at asking.
class Asked : public BT::AsyncActionNode
{
public:
    explicit Asked(const std::string& name) : AsyncActionNode(name) {}

    NodeStatus tick() override
    {
        ++begun;
        halt_asked_ = false;
        while (!halt_asked_) {
            if (done)
                return NodeStatus::SUCCESS;
            std::this_thread::sleep_for(1ms);
        }
        std::this_thread::sleep_for(late);
        return NodeStatus::FAILURE;
    }
    void halt() override { halt_asked_ = true; }

    std::atomic<int> begun = 0;
    std::atomic<bool> done = false;
    std::chrono::milliseconds late{0};

private:
    std::atomic<bool> halt_asked_ = false;
};

void waitFor(const std::function<bool()>& what)
{
    // What is asked for may be a tick: once it has come true it is not asked again.
    for (int i = 0; i < 5000; ++i) {
        if (what())
            return;
        std::this_thread::sleep_for(1ms);
    }
    FAIL() << "it did not come true in five seconds";
}

TEST(AsyncAction, EnteredAnewAfterAHaltThatOnlyAskedItStartsAnew)
{
    Asked leaf("asked");
    for (const auto late : {0ms, 30ms}) {
        leaf.late = late;
        leaf.done = false;
        leaf.begun = 0;
        EXPECT_EQ(leaf.executeTick(), NodeStatus::RUNNING);
        waitFor([&leaf] { return leaf.begun == 1; });
        BT::haltAllActions(&leaf);
        EXPECT_TRUE(leaf.isHalted());
        EXPECT_EQ(leaf.executeTick(), NodeStatus::RUNNING);
        waitFor([&leaf] { return leaf.begun == 2; });
        EXPECT_EQ(leaf.executeTick(), NodeStatus::RUNNING);  // not the FAILURE of the run that was halted
        leaf.done = true;
        waitFor([&leaf] { return leaf.executeTick() == NodeStatus::SUCCESS; });
        EXPECT_EQ(leaf.begun, 2);
    }
}

TEST(AsyncAction, AnAskThatCameTooEarlyIsAskedAgain)
{
    for (int i = 0; i < 20; ++i) {
        auto leaf = std::make_shared<Asked>("asked");
        BT::Tree tree(leaf.get(), {leaf});
        leaf->executeTick();
        BT::haltAllActions(leaf.get());  // as tick() begins, or before
        EXPECT_EQ(leaf->executeTick(), NodeStatus::RUNNING);
    }
}

TEST(AsyncAction, GoesWithItsTreeAtOnce)
{
    class Bound : public BT::AsyncActionNode
    {
    public:
        explicit Bound(const std::string& name) : AsyncActionNode(name) {}
        ~Bound() override { gone = true; }
        NodeStatus tick() override
        {
            while (!halt_asked_)
                std::this_thread::yield();
            EXPECT_FALSE(gone);
            return NodeStatus::SUCCESS;
        }
        void halt() override { halt_asked_ = true; }

        std::atomic<bool> gone = false;

    private:
        std::atomic<bool> halt_asked_ = false;
    };
    for (int i = 0; i < 200; ++i) {
        auto leaf = std::make_shared<Bound>("bound");
        BT::TreeNode* root = leaf.get();
        BT::Tree tree(root, {std::move(leaf)});
        root->executeTick();
    }
}

/// A flow that does not let the end of its run pass.
class Stubborn : public BT::CoroActionNode
{
public:
    explicit Stubborn(const std::string& name) : CoroActionNode(name) {}

    NodeStatus tick() override
    {
        steps.emplace_back("begins");
        for (;;)
            try {
                setStatusRunningAndYield();
                steps.emplace_back("goes on");
            } catch (...) {
                steps.emplace_back("caught");
                if (gives_in)
                    return NodeStatus::FAILURE;
            }
    }

    std::vector<std::string> steps;
    bool gives_in = false;
};

TEST(Coroutine, AHaltEndsThoughTheFlowCatchesAll)
{
    for (const bool gives_in : {true, false}) {
        Stubborn node("stubborn");
        node.gives_in = gives_in;
        node.executeTick();
        node.executeTick();
        node.halt();
        EXPECT_EQ(node.status(), NodeStatus::IDLE);
        EXPECT_EQ(node.executeTick(), NodeStatus::RUNNING);
        EXPECT_THAT(node.steps, ElementsAre("begins", "goes on", "caught", "begins"));
        node.halt();
    }
}

TEST(Coroutine, AFlowWhoseNodeGoesUnhaltedTouchesItNoMore)
{
    class Holding : public BT::CoroActionNode
    {
    public:
        explicit Holding(int& released) : CoroActionNode("holding"), released_(released) {}
        NodeStatus tick() override
        {
            struct Told
            {
                Holding& node;
                ~Told()
                {
                    ++node.released_;
                    node.rooms_.emplace_back("hall");
                }
            } const told{*this};
            setStatusRunningAndYield();
            return NodeStatus::SUCCESS;
        }

    private:
        int& released_;
        std::vector<std::string> rooms_;
    };
    int released = 0;
    auto node = std::make_unique<Holding>(released);
    EXPECT_EQ(node->executeTick(), NodeStatus::RUNNING);
    node.reset();
    EXPECT_EQ(released, 0);

    BT::TreeNode::Ptr in_tree = std::make_shared<Holding>(released);
    BT::Tree tree(in_tree.get(), {in_tree});
    in_tree->executeTick();
    tree = {};
    EXPECT_EQ(released, 1);  // the tree halted it first
}

TEST(Coroutine, AFlowThatHaltsTheTreeItRunsInEndsAtItsNextYield)
{
    class HaltsAll : public BT::CoroActionNode
    {
    public:
        explicit HaltsAll(const std::string& name) : CoroActionNode(name) {}
        NodeStatus tick() override
        {
            setStatusRunningAndYield();
            BT::haltAllActions(root);
            setStatusRunningAndYield();
            went_on = true;
            return NodeStatus::SUCCESS;
        }
        BT::TreeNode* root = nullptr;
        bool went_on = false;
    };
    ScriptedTree t;
    t.factory.registerNodeType<HaltsAll>("HaltsAll");
    t.plant(node("DoWhile", {leaf("HaltsAll"), action("a", "R")}));
    auto& flow = dynamic_cast<HaltsAll&>(t.at("HaltsAll"));
    flow.root = t.tree.root_node;
    EXPECT_EQ(t.tick(), "R a");
    EXPECT_EQ(t.tick(), "R a! a");
    EXPECT_EQ(flow.status(), NodeStatus::IDLE);
    EXPECT_FALSE(flow.went_on);
}

}  // namespace
}  // namespace vemra::test
