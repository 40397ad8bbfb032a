#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cstdlib>

#include "behaviortree_cpp/decorators/subtree_condition_node.h"
#include "runtime/host_store.h"
#include "runtime/property/interpreter.h"
#include "runtime/property/random_tree.h"

namespace vemra::test {
namespace {

/// Calls `visit` for each node from `root` down, and into the trees entered.
void walk(const BT::TreeNode& root, const std::function<void(const BT::TreeNode&)>& visit)
{
    BT::applyRecursiveVisitor(&root, [&visit](const BT::TreeNode* node) {
        visit(*node);
        const auto* entry = dynamic_cast<const BT::SubtreeConditionNode*>(node);
        if (entry != nullptr && entry->entered() != nullptr)
            walk(*entry->entered()->root_node, visit);
    });
}

void checkNothingRunsBelow(const BT::TreeNode& top)
{
    walk(top, [](const BT::TreeNode& node) { RC_ASSERT(node.status() != BT::NodeStatus::RUNNING); });
}

void checkNothingIsOnBelowIdle(const BT::TreeNode& top)
{
    walk(top, [](const BT::TreeNode& node) {
        if (!node.isHalted())
            return;
        if (const auto* control = dynamic_cast<const BT::ControlNode*>(&node))
            for (const BT::TreeNode* child : control->children())
                RC_ASSERT(child->isHalted());
        if (const auto* decorator = dynamic_cast<const BT::DecoratorNode*>(&node))
            RC_ASSERT(decorator->child()->isHalted());
    });
}

enum class Command
{
    Tick,
    Halt,
    FlagUp,
    FlagDown
};

Command anyCommand()
{
    const int number = *rc::gen::resize(100, rc::gen::inRange(0, 12));
    return number < 9 ? Command::Tick : static_cast<Command>(number - 8);
}

struct Properties : testing::Test
{
    static void SetUpTestSuite() { setenv("RC_PARAMS", "max_success=1500", 0); }
};

TEST_F(Properties, TreesDoTickByTickWhatTheContractsSay)
{
    EXPECT_TRUE(rc::check([] {
        RandomTree random;
        const Sketch sketch = random.grow();
        RC_LOG() << toText(sketch) << '\n';
        ScriptedTree real;
        real.blackboard =
            makeBlackboard(*rc::gen::element(Keeps::Itself, Keeps::Itself, Keeps::InAHostsStore));
        real.blackboard->setClock(real.clock);
        real.plant(sketch);
        Interpreter wanted(sketch);
        real.blackboard->set("flag", wanted.flag);

        for (int left = 40; left > 0; --left) {
            real.clock->now = wanted.now += 20;
            switch (anyCommand()) {
                case Command::Tick:
                    RC_ASSERT(real.tick() == wanted.tick());
                    if (real.tree.root_node->status() != BT::NodeStatus::RUNNING)
                        checkNothingRunsBelow(*real.tree.root_node);
                    break;
                case Command::Halt:
                    RC_ASSERT(real.halt() == wanted.halt());
                    walk(*real.tree.root_node, [](const BT::TreeNode& node) { RC_ASSERT(node.isHalted()); });
                    break;
                case Command::FlagUp:
                    real.blackboard->set("flag", "true");
                    wanted.flag = "true";
                    break;
                case Command::FlagDown:
                    real.blackboard->set("flag", "false");
                    wanted.flag = "false";
                    break;
            }
            checkNothingIsOnBelowIdle(*real.tree.root_node);
        }
    }));
}

TEST_F(Properties, NumbersReadBackAsTheyWereWritten)
{
    EXPECT_TRUE(rc::check([](std::int64_t integer, double real) {
        std::string text;
        BT::appendNumber(text, integer);
        std::int64_t integer_back = 0;
        RC_ASSERT(BT::parseInteger(text, integer_back));
        RC_ASSERT(integer_back == integer);
        text.clear();
        BT::appendNumber(text, real);
        double real_back = 0;
        RC_ASSERT(BT::parseReal(text, real_back));
        RC_ASSERT(real_back == real);
    }));
}

TEST_F(Properties, NoTextOfAPortThrows)
{
    EXPECT_TRUE(rc::check([] {
        const auto pieces =
            *rc::gen::container<std::vector<std::string>>(rc::gen::elementOf(std::vector<std::string>{
                "${a}", "${", "}",   "${none}", "${text}", "-", "+",  "*",  "/", "(",    ")",      " ", "7",
                "0",    ".5", "1e9", "&&",      "||",      "!", "==", "<=", ">", "word", "${big}", "$"}));
        std::string text;
        for (const std::string& piece : pieces)
            text += piece;
        RC_LOG() << text << '\n';
        const auto board = BT::Blackboard::create<BT::BlackboardLocal>();
        board->set("a", 7);
        board->set("text", "kitchen");
        board->set("big", std::numeric_limits<std::int64_t>::min());
        BT::PortList ports(BT::NodeParameters{{"v", text}});
        BT::Port& port = ports.all().front();
        port.compile(*board);
        std::int64_t integer = 0;
        double real = 0;
        bool truth = false;
        std::string as_text;
        BT::Any any;
        const bool is_integer = port.toInteger(integer);
        const bool is_real = port.toReal(real);
        RC_ASSERT(!is_integer || is_real);
        (void)port.toBoolean(truth);
        (void)port.toAny(any);
        RC_ASSERT(port.toText(as_text) || port.form() == BT::PortForm::Reference);
    }));
}

}  // namespace
}  // namespace vemra::test
