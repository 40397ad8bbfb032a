#include "app/trees/liveness.h"

#include <algorithm>

namespace vemra::app {
namespace {

/// The results that a node can have.
struct Outcomes
{
    bool success = false;
    bool failure = false;
    bool running = false;

    bool operator==(const Outcomes&) const = default;
    [[nodiscard]] bool can(BT::NodeStatus result) const
    {
        return result == BT::NodeStatus::SUCCESS ? success : failure;
    }
    Outcomes& operator|=(const Outcomes& other)
    {
        success |= other.success;
        failure |= other.failure;
        running |= other.running;
        return *this;
    }
};

constexpr Outcomes kAny{true, true, true};

enum class Kind
{
    Sequence,
    Fallback,
    Choice,
    DoWhile,
    PostProcess,
    Other
};

Kind kindOf(const ModelNode& node)
{
    if (node.id == "Sequence" || node.id == "SequenceStar")
        return Kind::Sequence;
    if (node.id == "Fallback" || node.id == "FallbackStar")
        return Kind::Fallback;
    if (node.children.size() == 3 && (node.id == "IfThenElse" || node.id == "IfThenElseStar"))
        return Kind::Choice;
    if (node.id == "DoWhile")
        return Kind::DoWhile;
    return node.children.size() == 2 && node.id == "PostProcess" ? Kind::PostProcess : Kind::Other;
}

/// The count of a decorator that counts; nothing where it is read from the blackboard.
std::optional<std::string> countOf(const ModelNode& node)
{
    for (const char* port : {"num_cycles", "num_attempts", "frames"})
        if (const std::string* text = node.port(port);
            text != nullptr && text->find('$') == std::string::npos)
            return *text;
    return std::nullopt;
}

class Analysis
{
public:
    Analysis(const std::vector<TreeModel>& trees, const ConstantResult& constant) : constant_(constant)
    {
        for (const TreeModel& tree : trees)
            trees_.emplace(tree.name, State{&tree, std::vector<Outcomes>(tree.nodes.size()), {}, {}});
        for (auto& [name, state] : trees_)
            for (const ModelNode& node : state.tree->nodes)
                state.constants.push_back(constantOf(node));
        // Trees that enter one another are looked at until nothing is added any more.
        for (bool grown = true; grown;) {
            grown = false;
            for (auto& [name, state] : trees_)
                grown |= settle(state);
        }
    }

    std::map<std::string, TreeLife> walk(const std::string& first)
    {
        for (auto& [name, state] : trees_) {
            state.life.live.assign(state.tree->nodes.size(), false);
            state.life.off_by.assign(state.tree->nodes.size(), TreeLife::kNone);
        }
        if (trees_.contains(first))
            enter(first);
        else
            for (const auto& [name, state] : trees_)
                enter(name);
        std::map<std::string, TreeLife> lives;
        for (auto& [name, state] : trees_)
            lives.emplace(name, std::move(state.life));
        return lives;
    }

private:
    struct State
    {
        const TreeModel* tree;
        std::vector<Outcomes> outcomes;
        std::vector<std::optional<BT::NodeStatus>> constants;
        TreeLife life;
    };

    std::optional<BT::NodeStatus> constantOf(const ModelNode& node) const
    {
        if (node.id == "AlwaysSuccess")
            return BT::NodeStatus::SUCCESS;
        if (node.id == "AlwaysFailure")
            return BT::NodeStatus::FAILURE;
        return constant_(node);
    }

    // Children stand behind their parents.
    bool settle(State& state) const
    {
        bool grown = false;
        for (std::size_t i = state.tree->nodes.size(); i-- > 0;) {
            const Outcomes now = outcomesOf(state, i);
            grown |= !(now == state.outcomes[i]);
            state.outcomes[i] = now;
        }
        return grown;
    }

    Outcomes outcomesOf(const State& state, std::size_t index) const
    {
        if (!state.tree->written())
            return kAny;
        const ModelNode& node = state.tree->nodes[index];
        if (const auto constant = state.constants[index])
            return {*constant == BT::NodeStatus::SUCCESS, *constant == BT::NodeStatus::FAILURE, false};
        if (const std::string_view entered = enteredTree(node); !entered.empty())
            return outcomesOfTree(node, entered);
        if (node.children.empty())
            return {true, true, node.type != BT::NodeType::CONDITION};
        const auto child = [&](std::size_t at) { return state.outcomes[node.children[at]]; };
        switch (kindOf(node)) {
            case Kind::Sequence:
                return row(state, node, BT::NodeStatus::SUCCESS);
            case Kind::Fallback:
                return row(state, node, BT::NodeStatus::FAILURE);
            case Kind::Choice: {
                Outcomes all{false, false, child(0).running};
                if (child(0).success)
                    all |= child(1);
                if (child(0).failure)
                    all |= child(2);
                return all;
            }
            case Kind::DoWhile:
                return child(node.children.size() - 1);
            case Kind::PostProcess:
                return {child(0).success, child(0).failure, true};
            case Kind::Other:
                break;
        }
        return node.children.size() == 1 ? decorated(node, child(0)) : kAny;
    }

    Outcomes outcomesOfTree(const ModelNode& node, std::string_view entered) const
    {
        const std::string* path = node.port("subtree_file_path");
        if (path->find('$') != std::string::npos)
            return kAny;
        const auto other = trees_.find(std::string(entered));
        return other == trees_.end() ? Outcomes{false, true, false} : other->second.outcomes.front();
    }

    /// A row of children that goes on while they give `on`.
    static Outcomes row(const State& state, const ModelNode& node, BT::NodeStatus on)
    {
        Outcomes all;
        for (const std::size_t child : node.children) {
            Outcomes one = state.outcomes[child];
            const bool passes = one.can(on);
            (on == BT::NodeStatus::SUCCESS ? one.success : one.failure) = false;
            all |= one;
            if (!passes)
                return all;
        }
        (on == BT::NodeStatus::SUCCESS ? all.success : all.failure) = true;
        return all;
    }

    static Outcomes decorated(const ModelNode& node, const Outcomes& child)
    {
        const bool ends = child.success || child.failure;
        const auto count = countOf(node);
        const bool endless = count == "-1";
        if (node.id == "Inverter")
            return {child.failure, child.success, child.running};
        if (node.id == "ForceSuccess")
            return {ends, false, child.running};
        if (node.id == "ForceFailure")
            return {false, ends, child.running};
        if (node.id == "ActionDecorator" || node.id == "SubTree")
            return child;
        if (node.id == "Loop")
            return {!endless, false, true};
        if (node.id == "Repeat")
            return {!endless, child.failure, true};
        if (node.id == "RetryUntilSuccesful")
            return {child.success, !endless, true};
        if (node.id == "Frameout" || node.id == "Timeout" || node.id == "BB_Precondition")
            return {child.success, true, true};
        return kAny;
    }

    void enter(const std::string& name)
    {
        const auto found = trees_.find(name);
        if (found == trees_.end() || found->second.life.entered)
            return;
        found->second.life.entered = true;
        if (!found->second.tree->nodes.empty())
            visit(found->second, 0);
    }

    void visit(State& state, std::size_t index)
    {
        const ModelNode& node = state.tree->nodes[index];
        state.life.live[index] = true;
        if (const std::string_view entered = enteredTree(node); !entered.empty())
            enter(std::string(entered));
        const auto child = [&](std::size_t at) { return node.children[at]; };
        switch (kindOf(node)) {
            case Kind::Sequence:
                visitRow(state, node, BT::NodeStatus::SUCCESS);
                return;
            case Kind::Fallback:
                visitRow(state, node, BT::NodeStatus::FAILURE);
                return;
            case Kind::Choice:
                visit(state, child(0));
                branch(state, child(1), child(0), state.outcomes[child(0)].success);
                branch(state, child(2), child(0), state.outcomes[child(0)].failure);
                return;
            default:
                for (const std::size_t below : node.children)
                    branch(state, below, index, countOf(node) != "0");
        }
    }

    void visitRow(State& state, const ModelNode& node, BT::NodeStatus on)
    {
        std::optional<std::size_t> stop;
        for (const std::size_t child : node.children) {
            branch(state, child, stop.value_or(child), !stop);
            if (!stop && !state.outcomes[child].can(on))
                stop = child;
        }
    }

    void branch(State& state, std::size_t child, std::size_t decided_by, bool live)
    {
        if (live)
            visit(state, child);
        else
            state.life.off_by[child] = static_cast<int>(constantIn(state, decided_by));
    }

    /// The node below that has a constant result, or the one at hand where that follows from more than one.
    static std::size_t constantIn(const State& state, std::size_t index)
    {
        const std::size_t depth = state.tree->nodes[index].depth;
        for (std::size_t i = index; i < state.tree->nodes.size(); ++i) {
            if (i > index && state.tree->nodes[i].depth <= depth)
                break;
            if (state.constants[i] && state.tree->nodes[i].type == BT::NodeType::CONDITION)
                return i;
        }
        for (std::size_t i = index; i < state.tree->nodes.size(); ++i) {
            if (i > index && state.tree->nodes[i].depth <= depth)
                break;
            if (state.constants[i] || countOf(state.tree->nodes[i]) == "-1")
                return i;
        }
        return index;
    }

    const ConstantResult& constant_;
    std::map<std::string, State> trees_;
};

}  // namespace

std::size_t TreeLife::liveNodes() const
{
    return static_cast<std::size_t>(std::count(live.begin(), live.end(), true));
}

std::map<std::string, TreeLife> livenessOf(const std::vector<TreeModel>& trees, const std::string& first,
                                           const ConstantResult& constant)
{
    return Analysis(trees, constant).walk(first);
}

}  // namespace vemra::app
