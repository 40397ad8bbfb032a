#include "support/scripted_robot.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <stdexcept>

#include "behaviortree_cpp/actions/always_success_node.h"
#include "leaves/host/holding.h"
#include "leaves/host/host.h"
#include "robot/base/clock.h"
#include "support/sketched_tree.h"
#include "support/tree_library.h"
#include "support/visited_board.h"

namespace vemra::test {
class ScriptedRobot::FrameClock final : public BT::Clock
{
public:
    explicit FrameClock(const int& frame) : frame_(frame) {}
    [[nodiscard]] std::int64_t milliseconds() const override
    {
        return std::int64_t{frame_} * robot::kFrameMs;
    }

private:
    const int& frame_;
};

/// What one leaf, or one tree that is replaced, answers.
class ScriptedRobot::LeafScript
{
public:
    LeafScript(std::string who, bool is_condition, NodeStatus otherwise, const leaf::LeafContract* contract)
        : who_(std::move(who)), is_condition_(is_condition), otherwise_(otherwise), contract_(contract)
    {}

    Answer& add() { return answers_.emplace_back(who_, is_condition_); }

    NodeStatus give(const Moment& now) const
    {
        const auto fitting = std::find_if(answers_.rbegin(), answers_.rend(),
                                          [&now](const Answer& answer) { return answer.fits(now); });
        return fitting != answers_.rend() ? fitting->give(now) : otherwise_;
    }

    [[nodiscard]] const std::string& who() const { return who_; }
    [[nodiscard]] bool hasPort(std::string_view name) const
    {
        return contract_ != nullptr &&
               std::any_of(contract_->ports.begin(), contract_->ports.end(),
                           [name](const leaf::PortContract& port) { return port.name == name; });
    }

private:
    std::string who_;
    bool is_condition_;
    NodeStatus otherwise_;
    const leaf::LeafContract* contract_;
    std::deque<Answer> answers_;  // references to its elements stay good
};

template <class Base>
class ScriptedRobot::ScriptedNode final : public Base
{
public:
    ScriptedNode(const std::string& name, const BT::NodeParameters& ports, ScriptedRobot& robot,
                 const LeafScript& script)
        : Base(name, ports), robot_(robot), script_(script)
    {}

    void halt() override
    {
        if (this->status() == NodeStatus::RUNNING)
            robot_.transcript_.halt(*this, robot_.frame_);
        this->setStatus(NodeStatus::IDLE);
    }

private:
    NodeStatus tick() override
    {
        const bool starts = this->status() != NodeStatus::RUNNING;
        tick_of_run_ = starts ? 0 : tick_of_run_ + 1;
        const Moment now{*this, *robot_.keys_, robot_.frame_, tick_of_run_};
        // Told first of all, with the ports as they are before the answer changes keys.
        robot_.transcript_.ask(*this, script_.who(), robot_.frame_, starts);
        const NodeStatus result = script_.give(now);
        robot_.transcript_.settle(*this, result);
        return result;
    }

    ScriptedRobot& robot_;
    const LeafScript& script_;
    int tick_of_run_ = 0;
};

ScriptedRobot::ScriptedRobot()
    : clock_(std::make_shared<FrameClock>(frame_)), keys_(BT::Blackboard::create<VisitedBoard>())
{
    keys_->setClock(clock_);
    registerLeaves();
    factory_.registerFromPlugin(treeLibrary());
}

ScriptedRobot::~ScriptedRobot() = default;

void ScriptedRobot::registerLeaves()
{
    leaf::LeafHost host(factory_);
    host.use_runtime_builtin();
    for (const leaf::LeafContract& contract : leaf::all()) {
        const std::string id(contract.id);
        if (host.implemented(id))
            continue;
        const bool condition = contract.kind == leaf::LeafKind::Condition;
        const NodeStatus otherwise = condition             ? NodeStatus::FAILURE
                                     : leaf::isHolding(id) ? NodeStatus::RUNNING
                                                           : NodeStatus::SUCCESS;
        const auto& script =
            scripts_.emplace(id, std::make_unique<LeafScript>(id, condition, otherwise, &contract))
                .first->second;
        host.builder(
            id,
            [this, condition, script = script.get()](
                const std::string& name, const BT::NodeParameters& ports) -> std::unique_ptr<BT::TreeNode> {
                if (condition)
                    return std::make_unique<ScriptedNode<BT::ConditionNode>>(name, ports, *this, *script);
                return std::make_unique<ScriptedNode<BT::ActionNodeBase>>(name, ports, *this, *script);
            });
    }
}

Answer& ScriptedRobot::leaf(std::string_view text)
{
    const auto [who, values] = stepOf(text);
    const auto found = scripts_.find(who);
    if (found == scripts_.end())
        throw std::invalid_argument("no leaf '" + who + "' that a script could answer");
    (void)known(text);
    Answer& answer = found->second->add();
    for (const auto& [port, value] : values)
        answer.where(port, value);
    return answer;
}

Answer& ScriptedRobot::tree(const std::string& name)
{
    if (!factory_.hasTree(name))
        throw std::invalid_argument("no tree '" + name + "'");
    const auto [at, added] = scripts_.try_emplace(name);
    if (added) {
        at->second = std::make_unique<LeafScript>(name, false, NodeStatus::SUCCESS, nullptr);
        factory_.registerTreeBuilder(
            name, [this, script = at->second.get()](const BT::BehaviorTreeFactory&,
                                                    const BT::Blackboard::Ptr& blackboard) {
                auto node = std::make_shared<ScriptedNode<BT::ActionNodeBase>>(
                    script->who(), BT::NodeParameters{}, *this, *script);
                node->setBlackboard(blackboard);
                BT::Tree tree;
                tree.root_node = node.get();
                tree.nodes.push_back(std::move(node));
                return tree;
            });
    }
    return at->second->add();
}

Answer& ScriptedRobot::answerOf(const std::string& name)
{
    return factory_.hasTree(name) ? tree(name) : leaf(name);
}

void ScriptedRobot::succeed(std::string_view names)
{
    for (const Step& step : stepsOf(names))
        answerOf(step.who).succeeds();
}

void ScriptedRobot::fail(std::string_view names)
{
    for (const Step& step : stepsOf(names))
        answerOf(step.who).fails();
}

void ScriptedRobot::pointsOnALine()
{
    const auto apart = [](const Moment& now) {
        return std::abs(std::stod(now.port("point_mm_a")) - std::stod(now.port("point_mm_b")));
    };
    leaf("ArePointsTooClose").decides([apart](const Moment& now) {
        return apart(now) < std::stod(now.port("distance_mm")) ? SUCCESS : FAILURE;
    });
    leaf("PointToPointDist").decides([apart](const Moment& now) {
        now.set(now.port("dist_mm"), apart(now));
        return SUCCESS;
    });
}

std::optional<std::string> ScriptedRobot::key(std::string_view key) const
{
    const BT::Any* value = keys_->getAny(key);
    if (value == nullptr)
        return std::nullopt;
    std::string text;
    value->appendText(text);
    return text;
}

void ScriptedRobot::textsAsTheyStand()
{
    const auto same = [this](const char* id, const char* a, const char* b) {
        leaf(id).decides(
            [a, b](const Moment& now) { return now.port(a) == now.port(b) ? SUCCESS : FAILURE; });
    };
    same("SignalTypeMatch", "a_type", "b_type");
    same("BumpdirMatch", "para_a", "para_b");
    leaf("Bumped").decides([](const Moment& now) {
        const std::string side = now.port("bump_dir");
        return side.empty() || side == "None" ? FAILURE : SUCCESS;
    });
}

void ScriptedRobot::begin(BT::Tree tree)
{
    halt();
    transcript_ = {};
    root_ = std::move(tree);
}

void ScriptedRobot::start(const std::string& tree)
{
    begin(factory_.createTree(tree, keys_));
}

void ScriptedRobot::startGuarded(const std::vector<std::string>& trees)
{
    Sketch task = node("Sequence", {});
    for (const std::string& name : trees) {
        if (!factory_.hasTree(name))
            throw std::invalid_argument("no tree '" + name + "'");
        task.children.push_back(enter(name));
    }
    begin(grown(task, factory_, keys_));
}

NodeStatus ScriptedRobot::tick(int frames)
{
    if (root_.root_node == nullptr)
        throw std::logic_error("no tree was started");
    NodeStatus result = NodeStatus::IDLE;
    for (int i = 0; i < frames; ++i) {
        ++frame_;
        result = root_.root_node->executeTick();
        if (result != NodeStatus::RUNNING)
            BT::haltNode(*root_.root_node);
    }
    return result;
}

NodeStatus ScriptedRobot::finish(int at_most)
{
    NodeStatus result = NodeStatus::RUNNING;
    for (int i = 0; i < at_most && result == NodeStatus::RUNNING; ++i)
        result = tick();
    return result;
}

void ScriptedRobot::tickUntil(std::string_view step, int at_most)
{
    for (int i = 0; i < at_most; ++i) {
        tick();
        if (askedNow(step))
            return;
    }
    ADD_FAILURE() << step << " was not asked within " << at_most << " frames:\n"
                  << transcript_.print(stepOf(step).who);
}

void ScriptedRobot::halt()
{
    if (root_.root_node != nullptr)
        BT::haltNode(*root_.root_node);
}

std::vector<Step> ScriptedRobot::known(std::string_view text) const
{
    std::vector<Step> steps = stepsOf(text);
    for (const auto& [who, values] : steps) {
        const auto script = scripts_.find(who);
        if (script == scripts_.end())
            throw std::invalid_argument("nothing is recorded of '" + who +
                                        "': no scripted leaf, and no tree that the script replaces");
        for (const auto& [port, value] : values)
            if (!script->second->hasPort(port))
                throw std::invalid_argument(std::string("'").append(who) + "' has no port '" + port + "'");
    }
    return steps;
}

Step ScriptedRobot::knownStep(std::string_view text) const
{
    (void)known(text);
    return stepOf(text);
}

testing::AssertionResult ScriptedRobot::said(const std::string& message) const
{
    const Step log{"Log", {{"message", message}}};
    return transcript_.firstFrame(log) ? transcript_.asked(log)
                                       : transcript_.asked({"SaySomething", log.values});
}

testing::AssertionResult ScriptedRobot::notSaid(const std::string& message) const
{
    const Step log{"Log", {{"message", message}}};
    return transcript_.firstFrame(log) ? transcript_.notAsked(log)
                                       : transcript_.notAsked({"SaySomething", log.values});
}

std::string ScriptedRobot::letters(std::initializer_list<std::pair<const char*, char>> names) const
{
    std::string all;
    for (const Asking& asking : transcript_.askings())
        for (const auto& [who, letter] : names)
            if (asking.who == who)
                all += letter;
    return all;
}

}  // namespace vemra::test
