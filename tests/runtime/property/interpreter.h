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

    static std::int64_t limit(const Model& m, const char* port) { return std::stoll(m.sketch->port(port)); }
    static bool isOff(const Model& m, const char* port) { return m.sketch->port(port) == "false"; }
    static bool ended(Result r) { return r == Result::SUCCESS || r == Result::FAILURE; }

    static Model grow(const Sketch& sketch)
    {
        Model m;
        m.sketch = &sketch;
        for (const Sketch& child : sketch.children)
            m.children.push_back(grow(child));
        return m;
    }

    static bool isAction(const Model& m)
    {
        const std::string& id = m.sketch->id;
        return id == "ScriptedAction" || id == "Delay" || id == "SetBlackboard" || id == "ActionDecorator";
    }

    Result tick(Model& m)
    {
        const Result result = step(m);
        m.status = result;
        return result;
    }

    Result step(Model& m)
    {
        const std::string& id = m.sketch->id;
        if (id == "ScriptedAction" || id == "ScriptedCondition")
            return script_.next(m.sketch->name, m.sketch->port("script"));
        if (id == "Delay")
            return delay(m);
        if (id == "SetBlackboard") {
            flag = m.sketch->port("value");
            return Result::SUCCESS;
        }

        m.status = Result::RUNNING;
        if (id == "Sequence" || id == "Fallback")
            return reactive(m, id == "Sequence" ? Result::SUCCESS : Result::FAILURE);
        if (id == "SequenceStar" || id == "FallbackStar")
            return star(m, id == "SequenceStar" ? Result::SUCCESS : Result::FAILURE);
        if (id == "IfThenElse")
            return choice(m);
        if (id == "IfThenElseStar")
            return rememberingChoice(m);
        if (id == "DoWhile")
            return doWhile(m);
        if (id == "ParallelNode")
            return parallel(m);
        if (id == "PostProcess")
            return postProcess(m);
        if (id == "RetryUntilSuccesful" || id == "Repeat" || id == "Loop")
            return counted(m);
        if (id == "Frameout" || id == "Timeout")
            return limited(m);

        Model& child = m.children.front();
        if (id == "BB_Precondition") {
            if (flag == m.sketch->port("expected"))
                return tick(child);
            rest(child);
            return Result::FAILURE;
        }
        const Result result = tick(child);
        if (id == "SubtreeCondition" && ended(result)) {
            rest(child);
            forget(child);
        }
        if (!ended(result) || id == "SubTree" || id == "ActionDecorator" || id == "SubtreeCondition")
            return result;
        if (id == "ForceSuccess")
            return Result::SUCCESS;
        if (id == "ForceFailure")
            return Result::FAILURE;
        if (id == "Inverter")
            return result == Result::SUCCESS ? Result::FAILURE : Result::SUCCESS;
        throw std::logic_error("no contract for " + id);
    }

    /// From the first child on every tick; an action's result stands until the run ends.
    Result reactive(Model& m, Result go_on)
    {
        for (std::size_t i = 0; i < m.children.size(); ++i) {
            if (isAction(m.children[i]) && m.children[i].status == go_on)
                continue;
            const Result result = tick(m.children[i]);
            if (result == go_on)
                continue;
            if (result == Result::RUNNING) {
                for (std::size_t later = i + 1; later < m.children.size(); ++later)
                    if (m.children[later].status == Result::RUNNING)
                        rest(m.children[later]);
                return Result::RUNNING;
            }
            restAll(m);
            return result;
        }
        restAll(m);
        return go_on;
    }

    /// The place is kept over RUNNING and, if so wished, over a failure.
    Result star(Model& m, Result go_on)
    {
        for (; m.place < m.children.size(); ++m.place) {
            const Result result = tick(m.children[m.place]);
            if (result == Result::RUNNING)
                return result;
            if (result != go_on) {
                restAll(m);
                if (result == Result::SUCCESS || !isOff(m, "reset_on_failure"))
                    m.place = 0;
                return result;
            }
        }
        restAll(m);
        m.place = 0;
        return go_on;
    }

    Result choice(Model& m)
    {
        const Result condition = tick(m.children[0]);
        if (!ended(condition))
            return Result::RUNNING;
        const std::size_t selected = condition == Result::SUCCESS ? 1 : 2;
        if (!isOff(m, "halt_on_switch"))
            rest(m.children[3 - selected]);
        const Result result = tick(m.children[selected]);
        if (ended(result))
            restAll(m);
        return result;
    }

    Result rememberingChoice(Model& m)
    {
        if (m.place == 0) {
            const Result condition = tick(m.children[0]);
            if (!ended(condition))
                return Result::RUNNING;
            m.place = condition == Result::SUCCESS ? 1 : 2;
        }
        const Result result = tick(m.children[m.place]);
        if (ended(result)) {
            restAll(m);
            if (result == Result::SUCCESS || !isOff(m, "reset_on_failure"))
                m.place = 0;
        }
        return result;
    }

    Result doWhile(Model& m)
    {
        Result body = Result::RUNNING;
        for (Model& child : m.children)
            body = tick(child);
        if (ended(body))
            restAll(m);
        return body;
    }

    Result parallel(Model& m)
    {
        const std::int64_t threshold = limit(m, "threshold");
        const auto children = static_cast<std::int64_t>(m.children.size());
        std::int64_t successes = 0;
        std::int64_t failures = 0;
        Result result = Result::RUNNING;
        for (Model& child : m.children) {
            const Result one = tick(child);
            successes += one == Result::SUCCESS ? 1 : 0;
            failures += one == Result::FAILURE ? 1 : 0;
            if (successes == threshold)
                result = Result::SUCCESS;
            else if (failures > children - threshold)
                result = Result::FAILURE;
            if (ended(result)) {
                restAll(m);
                break;
            }
        }
        return result;
    }

    Result postProcess(Model& m)
    {
        if (m.main == Result::IDLE) {
            const Result main = tick(m.children[0]);
            if (!ended(main))
                return Result::RUNNING;
            m.main = main;
        }
        if (!ended(tick(m.children[1])))
            return Result::RUNNING;
        restAll(m);
        return std::exchange(m.main, Result::IDLE);
    }

    /// One round a tick, so many rounds.
    Result counted(Model& m)
    {
        const std::string& id = m.sketch->id;
        const bool retry = id == "RetryUntilSuccesful";
        const std::int64_t rounds = limit(m, retry ? "num_attempts" : "num_cycles");
        const Result when_spent = retry ? Result::FAILURE : Result::SUCCESS;
        Result result = Result::RUNNING;
        if (m.count == rounds)
            result = when_spent;
        else {
            const Result round = tick(m.children[0]);
            if (ended(round)) {
                if ((retry && round == Result::SUCCESS) || (id == "Repeat" && round == Result::FAILURE))
                    result = round;
                else if (++m.count == rounds)
                    result = when_spent;
            }
        }
        if (ended(result)) {
            m.count = 0;
            rest(m.children[0], true);
        }
        return result;
    }

    /// So many ticks or milliseconds from the first tick on.
    Result limited(Model& m)
    {
        const bool frames = m.sketch->id == "Frameout";
        const std::int64_t most = limit(m, frames ? "frames" : "msec");
        if (!m.on)
            m.count = frames ? 0 : now;
        m.on = true;
        const std::int64_t gone_by = frames ? m.count++ : now - m.count;
        const bool over = most >= 0 && gone_by >= most;
        // Milliseconds may go by while the child ends; a count of frames has no such doubt.
        Result result = Result::FAILURE;
        if (!over || !frames)
            result = tick(m.children[0]);
        if (over && !ended(result))
            result = Result::FAILURE;
        if (ended(result)) {
            m.on = false;
            rest(m.children[0], true);
        }
        return result;
    }

    Result delay(Model& m)
    {
        if (m.count++ < limit(m, "ticks"))
            return Result::RUNNING;
        m.count = 0;
        return Result::SUCCESS;
    }

    /// `at_end`: because the one above has ended; places kept over a failure stand.
    void rest(Model& m, bool at_end = false)
    {
        if (m.status == Result::IDLE)
            return;
        const bool was_running = m.status == Result::RUNNING;
        const bool places_stand = at_end && !was_running;
        if (was_running && (m.sketch->id == "ScriptedAction" || m.sketch->id == "ScriptedCondition"))
            script_.asked.push_back(m.sketch->name + "!");
        if (was_running && m.sketch->id == "PostProcess" && m.main == Result::IDLE) {
            rest(m.children[0]);
            if (!isOff(m, "tick_on_halt"))
                tick(m.children[1]);
        }
        restAll(m, places_stand);
        m.main = Result::IDLE;
        m.count = 0;
        m.on = false;
        if (!places_stand)
            m.place = 0;
        m.status = Result::IDLE;
        if (m.sketch->id == "SubtreeCondition")
            forget(m.children.front());
    }

    /// Whatever was kept for a next run goes too.
    static void forget(Model& m)
    {
        m.place = 0;
        for (Model& child : m.children)
            forget(child);
    }

    void restAll(Model& m, bool at_end = true)
    {
        for (Model& child : m.children)
            rest(child, at_end);
    }

    std::string told(Result result)
    {
        const std::string line = script_.takeAsked();
        return letterOf(result) + (line.empty() ? "" : " " + line);
    }

    Model root_;
    Script script_;
};

}  // namespace vemra::test
