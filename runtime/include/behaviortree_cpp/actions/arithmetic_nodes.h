#pragma once

#include "behaviortree_cpp/action_node.h"

namespace BT {

// Each writes nothing and gives FAILURE when an input cannot be read. An output port that is missing or
// empty stores nothing, which is no failure.

/// `int_a` + `int_b` into `out_sum`, an integer. A sum out of the range of int64 is a FAILURE.
class IntAddNode : public SyncActionNode
{
public:
    using SyncActionNode::SyncActionNode;
    static const NodeParameters& requiredNodeParameters();

protected:
    NodeStatus tick() override;

private:
    KeyPort out_{"out_sum"};
};

/// `a` + `b` into `out_sum`, a real number.
class FloatAddNode : public SyncActionNode
{
public:
    using SyncActionNode::SyncActionNode;
    static const NodeParameters& requiredNodeParameters();

protected:
    NodeStatus tick() override;

private:
    KeyPort out_{"out_sum"};
};

/// The number that differs from `dividend` by a whole multiple of `divisor` and lies in
/// [`bias`, `bias` + `divisor`), into `out_remainder`. FAILURE for a divisor not above 0.
class FloatModulusNode : public SyncActionNode
{
public:
    using SyncActionNode::SyncActionNode;
    static const NodeParameters& requiredNodeParameters();

protected:
    NodeStatus tick() override;

private:
    KeyPort out_{"out_remainder"};
};

}  // namespace BT
