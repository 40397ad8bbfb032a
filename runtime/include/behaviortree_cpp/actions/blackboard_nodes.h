#pragma once

#include "behaviortree_cpp/action_node.h"
#include "behaviortree_cpp/condition_node.h"

namespace BT {

/// Writes `value` under `key` as `type`: "int", "float" or "bool". FAILURE, nothing written, when the type
/// is another, the value cannot be read as it, or `key` names nothing.
class SetBlackboardWithTypeNode : public SyncActionNode
{
public:
    using SyncActionNode::SyncActionNode;
    static const NodeParameters& requiredNodeParameters();

protected:
    NodeStatus tick() override;

private:
    KeyPort key_{"key"};
};

/// Takes `key` away. SUCCESS also when it was not there; FAILURE only when `key` names nothing.
class EraseBlackboardNode : public SyncActionNode
{
public:
    using SyncActionNode::SyncActionNode;
    static const NodeParameters& requiredNodeParameters();

protected:
    NodeStatus tick() override;

private:
    KeyPort key_{"key"};
};

/// SUCCESS when `key` is on the blackboard, whatever its value. FAILURE when `key` names nothing.
class BlackboardContainsNode : public ConditionNode
{
public:
    using ConditionNode::ConditionNode;
    static const NodeParameters& requiredNodeParameters();

protected:
    NodeStatus tick() override;

private:
    KeyPort key_{"key"};
};

/// Copies the value under `source` to `target`, type and all. FAILURE, nothing written, when `source` is
/// not there or a port names nothing.
class BlackboardCopyNode : public SyncActionNode
{
public:
    using SyncActionNode::SyncActionNode;
    static const NodeParameters& requiredNodeParameters();

protected:
    NodeStatus tick() override;

private:
    KeyPort source_{"source"};
    KeyPort target_{"target"};
};

/// A scope: keeps the value of `key`, or its absence, from its first tick, is RUNNING, and puts it back
/// when it is halted. FAILURE when `key` names nothing.
class StackBlackboardNode : public ActionNodeBase
{
public:
    using ActionNodeBase::ActionNodeBase;
    static const NodeParameters& requiredNodeParameters();

    void halt() override;

protected:
    NodeStatus tick() override;

private:
    KeyPort key_{"key"};
    Any* kept_of_ = nullptr;
    Any kept_;
};

}  // namespace BT
