#pragma once

#include "behaviortree_cpp/action_node.h"
#include "behaviortree_cpp/condition_node.h"

namespace BT {

/// RUNNING for `ticks` ticks and SUCCESS on the next; 0 or less succeeds at once. FAILURE when the number,
/// which is read as the wait begins, cannot be read.
class DelayNode : public ActionNodeBase
{
public:
    using ActionNodeBase::ActionNodeBase;
    static const NodeParameters& requiredNodeParameters();

    void halt() override
    {
        on_ = false;
        setStatus(NodeStatus::IDLE);
    }

protected:
    NodeStatus tick() override;

private:
    std::int64_t left_ = 0;
    bool on_ = false;
};

/// Always RUNNING.
class ForceRunningNode : public ActionNodeBase
{
public:
    using ActionNodeBase::ActionNodeBase;

    void halt() override { setStatus(NodeStatus::IDLE); }

protected:
    NodeStatus tick() override { return NodeStatus::RUNNING; }
};

/// A test that always passes and counts while it is ticked: on its first tick it reads `start_from`, and on
/// each it writes that number plus the ticks since then to `frames_out_key`. A halt, or the end of the node
/// above, makes the next tick a first one. A `start_from` that cannot be read counts as 0.
class ConditionTimerFramesNode : public ConditionNode
{
public:
    using ConditionNode::ConditionNode;
    static const NodeParameters& requiredNodeParameters();

    NodeStatus executeTick() override;

protected:
    NodeStatus tick() override;

private:
    KeyPort out_{"frames_out_key"};
    std::int64_t frames_ = 0;
};

/// The same in whole seconds of the blackboard's clock, to `secs_out_key`.
class ConditionTimerSecsNode : public ConditionNode
{
public:
    using ConditionNode::ConditionNode;
    static const NodeParameters& requiredNodeParameters();

    NodeStatus executeTick() override;

protected:
    NodeStatus tick() override;

private:
    KeyPort out_{"secs_out_key"};
    std::int64_t start_seconds_ = 0;
    std::int64_t start_ms_ = 0;
};

}  // namespace BT
