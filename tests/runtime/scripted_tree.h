#pragma once

#include <map>
#include <memory>
#include <string_view>

#include "support/sketched_tree.h"

namespace vemra::test {

/// A leaf that answers by its script, a letter a tick, again and again: R, S or F.
inline Sketch action(std::string name, std::string script)
{
    return {"ScriptedAction", {{"script", std::move(script)}}, {}, std::move(name)};
}
inline Sketch condition(std::string name, std::string script)
{
    return {"ScriptedCondition", {{"script", std::move(script)}}, {}, std::move(name)};
}

inline char letterOf(BT::NodeStatus status)
{
    return "IRSF"[static_cast<std::size_t>(status)];
}
inline BT::NodeStatus statusOf(char letter)
{
    return static_cast<BT::NodeStatus>(std::string_view("IRSF").find(letter));
}

/// The scripts' places, kept by the name of the leaf, and what was asked of the leaves: "a" is a tick,
/// "a!" a halt.
struct Script
{
    std::map<std::string, std::size_t> places;
    std::vector<std::string> asked;

    BT::NodeStatus next(const std::string& name, const std::string& letters)
    {
        asked.push_back(name);
        return statusOf(letters[places[name]++ % letters.size()]);
    }

    /// All asked since the last call, in one line.
    std::string takeAsked()
    {
        std::string line;
        for (const std::string& one : std::exchange(asked, {}))
            line += (line.empty() ? "" : " ") + one;
        return line;
    }
};

template <class Base>
class ScriptedLeaf : public Base
{
public:
    ScriptedLeaf(const std::string& name, const BT::NodeParameters& ports, std::shared_ptr<Script> script)
        : Base(name, ports), script_(std::move(script)), letters_(ports.at("script"))
    {}

    void halt() override
    {
        script_->asked.push_back(this->name() + "!");
        this->setStatus(BT::NodeStatus::IDLE);
    }

protected:
    BT::NodeStatus tick() override { return script_->next(this->name(), letters_); }

private:
    std::shared_ptr<Script> script_;
    std::string letters_;
};

class ManualClock : public BT::Clock
{
public:
    [[nodiscard]] std::int64_t milliseconds() const override { return now; }
    std::int64_t now = 0;
};

/// A factory and a blackboard with a tree that was grown from a sketch.
class ScriptedTree
{
public:
    ScriptedTree()
    {
        blackboard->setClock(clock);
        registerLeaf<BT::ActionNodeBase>("ScriptedAction");
        registerLeaf<BT::ConditionNode>("ScriptedCondition");
    }
    explicit ScriptedTree(const Sketch& sketch) : ScriptedTree() { plant(sketch); }

    void plant(const Sketch& sketch)
    {
        registerTrees(sketch);
        tree = grown(sketch, factory, blackboard);
    }

    /// Registers `sketch` as a tree of its own.
    void registerTree(const std::string& name, const Sketch& sketch)
    {
        factory.registerTreeBuilder(
            name, [this, sketch](const BT::BehaviorTreeFactory&, const BT::Blackboard::Ptr&) {
                ++built[sketch.name];
                return grown(sketch, factory, blackboard);
            });
    }

    /// Ticks the root; gives its result and what was asked of the leaves: "R a b!".
    std::string tick()
    {
        const char result = letterOf(tree.root_node->executeTick());
        return told(result);
    }
    /// As many ticks, in one line: "R a, F a".
    std::string ticks(int count)
    {
        std::string line = tick();
        for (int i = 1; i < count; ++i)
            line += ", " + tick();
        return line;
    }
    std::string halt()
    {
        BT::haltAllActions(tree.root_node);
        return told(letterOf(tree.root_node->status()));
    }

    /// Ticks, or halts where "halt " stands, once for each part of the line, and gives what came of it in
    /// that form: "R a b, F b, halt I, R a".
    std::string replay(const std::string& line)
    {
        std::string came;
        for (std::size_t at = 0; at < line.size(); at = std::min(line.find(", ", at), line.size() - 2) + 2) {
            const bool halts = line.compare(at, 5, "halt ") == 0;
            came += (came.empty() ? "" : ", ") + (halts ? "halt " + halt() : tick());
        }
        return came;
    }

    /// The first node of that name.
    BT::TreeNode& at(const std::string& name)
    {
        for (const auto& one : tree.nodes)
            if (one->name() == name)
                return *one;
        throw std::out_of_range(name);
    }

    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    std::shared_ptr<Script> script = std::make_shared<Script>();
    BT::BehaviorTreeFactory factory;
    BT::Blackboard::Ptr blackboard = BT::Blackboard::create<BT::BlackboardLocal>();
    std::map<std::string, int> built;  ///< how often each registered tree was made, by its root's name
    BT::Tree tree;

private:
    template <class Base>
    void registerLeaf(const std::string& id)
    {
        factory.registerBuilder({BT::getType<Base>(), id, {}},
                                [script = script](const std::string& name, const BT::NodeParameters& ports) {
                                    return std::make_unique<ScriptedLeaf<Base>>(name, ports, script);
                                });
    }

    std::string told(char result)
    {
        const std::string line = script->takeAsked();
        return result + (line.empty() ? "" : " " + line);
    }

    void registerTrees(const Sketch& sketch)
    {
        if (sketch.id == "SubtreeCondition" && !sketch.children.empty())
            registerTree(sketch.port("subtree_file_path"), sketch.children.front());
        for (const Sketch& child : sketch.children)
            registerTrees(child);
    }
};

}  // namespace vemra::test
