#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "behaviortree_cpp/bt_factory.h"

namespace vemra::robot {

/// The answer of a test.
inline BT::NodeStatus passed(bool yes)
{
    return yes ? BT::NodeStatus::SUCCESS : BT::NodeStatus::FAILURE;
}

/// The text of a port as it is now, or `otherwise`.
inline std::string textOf(const BT::TreeNode& node, std::string_view port, const std::string& otherwise = {})
{
    std::string text;
    return node.getParam(port, text) ? text : otherwise;
}

/// The text of a port as it is now, empty where there is none. Nothing is copied where the port or the key it
/// refers to hold a text; then it is good until they change.
class PortText
{
public:
    PortText(const BT::TreeNode& node, std::string_view port)
    {
        const BT::Port* found = node.findPort(port);
        if (found == nullptr || !found->view(text_, scratch_))
            text_ = {};
    }
    PortText(const PortText&) = delete;
    PortText& operator=(const PortText&) = delete;

    [[nodiscard]] std::string_view view() const { return text_; }

private:
    std::string scratch_;
    std::string_view text_;
};

/// Whether the text of a port as it is now, empty where there is none, is `wanted`.
inline bool isText(const BT::TreeNode& node, std::string_view port, std::string_view wanted)
{
    return PortText(node, port).view() == wanted;
}

/// An action over many ticks made of functions: one for each tick, one for a halt while it runs.
class RunningAction final : public BT::ActionNodeBase
{
public:
    using Tick = std::function<BT::NodeStatus(BT::TreeNode&)>;
    using Halt = std::function<void()>;

    RunningAction(const std::string& name, const BT::NodeParameters& ports, Tick tick, Halt halt)
        : ActionNodeBase(name, ports), tick_(std::move(tick)), halt_(std::move(halt))
    {}

    void halt() override
    {
        if (halt_)
            halt_();
    }

    static BT::NodeBuilder builder(const Tick& tick, const Halt& halt = {})
    {
        return [tick, halt](const std::string& name, const BT::NodeParameters& ports) {
            return BT::makeNode<RunningAction>(name, ports, tick, halt);
        };
    }

private:
    BT::NodeStatus tick() override { return tick_(*this); }

    Tick tick_;
    Halt halt_;
};

/// A test of "something is to be dealt with" that must hold while the branch behind it deals with it: it
/// passes from the tick on which `begin` gives true to the end of the run of the node above, then `finish`
/// is called and it asks `begin` anew. `hold` may cut a run off that takes too long.
class PassCondition final : public BT::ConditionNode
{
public:
    struct Source
    {
        std::function<bool()> begin;   ///< is there something to deal with?
        std::function<bool()> hold;    ///< is the run still to go on?
        std::function<void()> finish;  ///< it has been dealt with
    };

    PassCondition(const std::string& name, const BT::NodeParameters& ports, Source source)
        : ConditionNode(name, ports), source_(std::move(source))
    {}

    BT::NodeStatus executeTick() override
    {
        // Brought back to IDLE from above: the run is over.
        if (on_ && (isHalted() || !source_.hold())) {
            on_ = false;
            source_.finish();
            // One tick of failure, so that a branch left running is halted.
            if (!isHalted()) {
                setStatus(BT::NodeStatus::FAILURE);
                return BT::NodeStatus::FAILURE;
            }
        }
        return ConditionNode::executeTick();
    }

    static BT::NodeBuilder builder(const Source& source)
    {
        return [source](const std::string& name, const BT::NodeParameters& ports) {
            return BT::makeNode<PassCondition>(name, ports, source);
        };
    }

private:
    BT::NodeStatus tick() override
    {
        on_ = on_ || source_.begin();
        return passed(on_);
    }

    Source source_;
    bool on_ = false;
};

}  // namespace vemra::robot
