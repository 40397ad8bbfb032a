#pragma once

#include <memory>
#include <string>
#include <vector>

#include "runtime/scripted_tree.h"

namespace vemra::test {

/// What composites and decorators must do, written for reading: each node is the state that its contract
/// gives it and nothing more. It shares with the runtime only the scripts' letters.
class Interpreter
{
public:
    explicit Interpreter(const Sketch& sketch) : root_(grow(sketch)) {}

    /// As ScriptedTree.
    std::string tick() { return told(tick(root_)); }
    std::string halt()
    {
        rest(root_);
        return told(Result::IDLE);
    }

    std::string flag = "false";  ///< the one key, which a `BB_Precondition` looks at
    std::int64_t now = 0;        ///< milliseconds

private:
    using Result = BT::NodeStatus;

    struct Model
    {
        const Sketch* sketch = nullptr;
        std::vector<Model> children;
        Result status = Result::IDLE;
        bool on = false;         ///< a run has begun
        std::int64_t count = 0;  ///< attempts, cycles, ticks, or the time of the start
        std::size_t place = 0;   ///< of the child whose turn it is
        Result main = Result::IDLE;
    };

    static Model grow(const Sketch& sketch);
    static bool isAction(const Model& m);
    static std::int64_t limit(const Model& m, const char* port) { return std::stoll(m.sketch->port(port)); }
    static bool isOff(const Model& m, const char* port) { return m.sketch->port(port) == "false"; }
    static bool ended(Result r) { return r == Result::SUCCESS || r == Result::FAILURE; }

    Result tick(Model& m);
    Result step(Model& m);
    Result reactive(Model& m, Result go_on);
    Result star(Model& m, Result go_on);
    Result choice(Model& m);
    Result rememberingChoice(Model& m);
    Result doWhile(Model& m);
    Result parallel(Model& m);
    Result postProcess(Model& m);
    Result counted(Model& m);
    Result limited(Model& m);
    Result delay(Model& m);

    /// `at_end`: because the one above has ended; places kept over a failure stand.
    void rest(Model& m, bool at_end = false);
    void restAll(Model& m, bool at_end = true)
    {
        for (Model& child : m.children)
            rest(child, at_end);
    }
    /// Whatever was kept for a next run goes too.
    static void forget(Model& m);
    std::string told(Result result)
    {
        const std::string line = script_.takeAsked();
        return letterOf(result) + (line.empty() ? "" : " " + line);
    }

    Model root_;
    Script script_;
};

}  // namespace vemra::test
