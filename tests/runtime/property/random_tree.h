#pragma once

#include <rapidcheck.h>

#include <string>
#include <vector>

#include "runtime/scripted_tree.h"

namespace vemra::test {

/// Grows a random tree of all composites and decorators over scripted leaves.
class RandomTree
{
public:
    Sketch grow() { return grow(kDepth); }

private:
    static constexpr int kDepth = 5;

    static int pick(int below) { return *rc::gen::resize(100, rc::gen::inRange(0, below)); }
    template <std::size_t N>
    static std::string oneOf(const char* const (&texts)[N])
    {
        return texts[pick(static_cast<int>(N))];
    }

    Sketch grow(int depth)
    {
        // Low numbers are plain leaves, so that what is shrunk comes out small; the root is never one.
        const int kind = depth == kDepth ? 6 + pick(18) : depth == 0 ? pick(6) : pick(24);
        if (kind < 4) {
            std::string script;
            for (int letters = 1 + pick(4); letters > 0; --letters)
                script += "SFRR"[pick(4)];
            const std::string name = "n" + std::to_string(count_++);
            return kind < 2 ? action(name, script) : condition(name, script);
        }
        switch (kind) {
            case 4:
                return leaf("Delay", {{"ticks", oneOf({"1", "0", "2"})}});
            case 5:
                return leaf("SetBlackboard", {{"key", "flag"}, {"value", oneOf({"true", "false"})}});
            case 6:
            case 7:
                return node(kind == 6 ? "Sequence" : "Fallback", children(1, 4, depth));
            case 8:
            case 9:
                return node(kind == 8 ? "SequenceStar" : "FallbackStar", reset(), children(1, 4, depth));
            case 10:
                return node("IfThenElse", {{"halt_on_switch", oneOf({"true", "false"})}},
                            children(3, 3, depth));
            case 11:
                return node("IfThenElseStar", reset(), children(3, 3, depth));
            case 12:
                return node("DoWhile", children(1, 4, depth));
            case 13: {
                auto below = children(1, 4, depth);
                const std::string threshold = std::to_string(1 + pick(static_cast<int>(below.size())));
                return node("ParallelNode", {{"threshold", threshold}}, std::move(below));
            }
            case 14:
                return node("PostProcess", {{"tick_on_halt", oneOf({"true", "true", "false"})}},
                            children(2, 2, depth));
            case 15:
                return node(oneOf({"ForceSuccess", "ForceFailure", "Inverter"}), children(1, 1, depth));
            case 16:
                return node(oneOf({"ActionDecorator", "SubTree"}), children(1, 1, depth));
            case 17:
            case 18:
            case 19:
            case 20: {
                constexpr const char* kCounting[][2] = {{"RetryUntilSuccesful", "num_attempts"},
                                                        {"Repeat", "num_cycles"},
                                                        {"Loop", "num_cycles"},
                                                        {"Frameout", "frames"}};
                const auto& [id, port] = kCounting[kind - 17];
                return node(id, {{port, oneOf({"1", "-1", "2", "3", "0"})}}, children(1, 1, depth));
            }
            case 21:
                return node("Timeout", {{"msec", oneOf({"40", "0", "-1", "20", "70"})}},
                            children(1, 1, depth));
            case 22:
                return node("BB_Precondition", {{"key", "flag"}, {"expected", "false"}},
                            children(1, 1, depth));
            default:
                return node("SubtreeCondition",
                            {{"subtree_file_path", "tree_" + std::to_string(count_++)},
                             {"expand_in_logger", "false"}},
                            children(1, 1, depth));
        }
    }

    std::vector<Sketch> children(int least, int most, int depth)
    {
        std::vector<Sketch> below;
        for (int left = least + pick(most - least + 1); left > 0; --left)
            below.push_back(grow(depth - 1));
        return below;
    }

    static BT::NodeParameters reset() { return {{"reset_on_failure", oneOf({"true", "true", "false"})}}; }

    int count_ = 0;
};

/// One line, as a description would read.
inline std::string toText(const Sketch& sketch)
{
    std::string text = sketch.name;
    for (const auto& [port, value] : sketch.ports)
        text.append(" ").append(port).append("=").append(value);
    if (sketch.children.empty())
        return text;
    text += "(";
    for (const Sketch& child : sketch.children)
        text.append(text.back() == '(' ? "" : ", ").append(toText(child));
    return text + ")";
}

}  // namespace vemra::test
