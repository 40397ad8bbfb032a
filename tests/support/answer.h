#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "behaviortree_cpp/bt_factory.h"
#include "support/notation.h"

namespace vemra::test {

using BT::NodeStatus;

/// One tick of a scripted leaf, as the function that answers it sees it.
struct Moment
{
    const BT::TreeNode& node;
    BT::Blackboard& keys;
    int frame;
    int tick_of_run;  ///< 0 on the tick that starts the leaf

    /// The port's text as it reads now; empty when it has none.
    [[nodiscard]] std::string port(std::string_view name) const;
    template <class T>
    void set(std::string_view key, const T& value) const
    {
        keys.set(key, value);
    }
    void set(std::string_view notes) const { setKeys(keys, notes); }
};

/// What a leaf answers, said in one line:
///     robot.leaf("IsBumpWarning").succeeds();
///     robot.leaf("EscapeBumpDeal").succeedsAfter(5);
///     robot.leaf("Rotate angle_deg=-180").fails();
///     robot.leaf("CheckClifBump").inTurn({FAILURE, SUCCESS}).writes("bump_dir", "Left");
/// The last of several that fit a tick answers it.
class Answer
{
public:
    using Function = std::function<NodeStatus(const Moment&)>;

    explicit Answer(std::string who, bool at_once) : who_(std::move(who)), at_once_(at_once) {}

    /// Only where the port reads as `value`; several must all hold.
    Answer& where(const std::string& port, const std::string& value);
    /// Only while the function says so.
    Answer& provided(std::function<bool(const Moment&)> holds);

    Answer& succeeds()
    {
        return decides([](const Moment&) { return NodeStatus::SUCCESS; });
    }
    Answer& fails()
    {
        return decides([](const Moment&) { return NodeStatus::FAILURE; });
    }
    /// Succeeds or fails, as it is given here.
    Answer& gives(bool yes) { return yes ? succeeds() : fails(); }
    /// Succeeds while the flag is set; the flag must outlive the answer.
    Answer& follows(const bool& flag)
    {
        return decides([&flag](const Moment&) { return flag ? NodeStatus::SUCCESS : NodeStatus::FAILURE; });
    }
    /// RUNNING until halted.
    Answer& runs()
    {
        return decides([](const Moment&) { return NodeStatus::RUNNING; });
    }
    /// RUNNING on so many ticks of each run, then the result.
    Answer& succeedsAfter(int ticks) { return endsAfter(ticks, NodeStatus::SUCCESS); }
    Answer& failsAfter(int ticks) { return endsAfter(ticks, NodeStatus::FAILURE); }
    /// One result a tick, over all nodes and runs; the last stays.
    Answer& inTurn(std::initializer_list<NodeStatus> results);
    Answer& decides(Function function);

    /// Written on each tick on which the answer is SUCCESS, as it is when nothing else is said.
    template <class T>
    Answer& writes(const std::string& key, const T& value)
    {
        effects_.push_back(
            [key, any = BT::Any(value)](const Moment& now) { now.keys.slot(key).assign(any); });
        return *this;
    }
    /// As writes(), into the key that the port names.
    template <class T>
    Answer& fills(const std::string& port, const T& value)
    {
        effects_.push_back(
            [port, any = BT::Any(value)](const Moment& now) { now.keys.slot(now.port(port)).assign(any); });
        return *this;
    }

    [[nodiscard]] bool fits(const Moment& now) const;
    /// Throws std::logic_error when it is not said what to answer, or a condition answers RUNNING.
    NodeStatus give(const Moment& now) const;

private:
    Answer& endsAfter(int ticks, NodeStatus result);

    std::string who_;
    bool at_once_;
    std::vector<std::function<bool(const Moment&)>> limits_;
    Function function_;
    std::vector<std::function<void(const Moment&)>> effects_;
};

}  // namespace vemra::test
