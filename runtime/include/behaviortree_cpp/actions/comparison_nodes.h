#pragma once

#include "behaviortree_cpp/condition_node.h"

namespace BT {

/// SUCCESS when the texts of `string_a` and `string_b` are equal. FAILURE when a port is missing or refers
/// to a key that is not there.
class StringMatchNode : public ConditionNode
{
public:
    using ConditionNode::ConditionNode;
    static const NodeParameters& requiredNodeParameters();

protected:
    NodeStatus tick() override;

private:
    PortRef a_{"string_a"};
    PortRef b_{"string_b"};
};

/// SUCCESS when the truth values of `bool_a` and `bool_b` are equal. A text that is neither "true" nor
/// "false" nor a number has none, and then, as for a missing port or key, it is FAILURE.
class BoolMatchNode : public ConditionNode
{
public:
    using ConditionNode::ConditionNode;
    static const NodeParameters& requiredNodeParameters();

protected:
    NodeStatus tick() override;

private:
    PortRef a_{"bool_a"};
    PortRef b_{"bool_b"};
};

/// SUCCESS when the integer `A` is greater than `B`; fractions are cut off. FAILURE when one cannot be read.
class IsAGreaterThanBIntNode : public ConditionNode
{
public:
    using ConditionNode::ConditionNode;
    static const NodeParameters& requiredNodeParameters();

protected:
    NodeStatus tick() override;

private:
    PortRef a_{"A"};
    PortRef b_{"B"};
};

/// SUCCESS when the number `A` is greater than `B`. FAILURE when one cannot be read.
class IsAGreaterThanBFloatNode : public ConditionNode
{
public:
    using ConditionNode::ConditionNode;
    static const NodeParameters& requiredNodeParameters();

protected:
    NodeStatus tick() override;

private:
    PortRef a_{"A"};
    PortRef b_{"B"};
};

}  // namespace BT
