#pragma once

#include "behaviortree_cpp/control_node.h"

namespace BT {

/// The reactive choice of three children: condition, then-branch, else-branch. The condition is ticked on
/// every tick; SUCCESS selects the then-branch, FAILURE the else-branch, RUNNING gives RUNNING and leaves
/// the branches alone. With `halt_on_switch` "true" (also when left off) a branch left running is halted
/// on the tick of the switch, before the other is ticked; with "false" it stays as it is, is taken up where
/// it stood if it is selected again, and is halted when the node ends. FAILURE without three children.
class IfThenElseNode : public ControlNode
{
public:
    IfThenElseNode(const std::string& name, const NodeParameters& parameters) : ControlNode(name, parameters)
    {}

    static const NodeParameters& requiredNodeParameters();

protected:
    NodeStatus tick() override;

private:
    OnPort halt_port_;
};

/// The remembering choice: the condition may take many ticks; once it is decided, the selected branch runs
/// to its end without another look at it. With `reset_on_failure` "false" a failed branch is tried again on
/// the next tick, the choice kept. FAILURE without three children.
class IfThenElseStarNode : public ControlNode
{
public:
    IfThenElseStarNode(const std::string& name, const NodeParameters& parameters)
        : ControlNode(name, parameters)
    {}

    static const NodeParameters& requiredNodeParameters();

    void halt() override;

protected:
    NodeStatus tick() override;

private:
    /// Index of the child whose turn it is: the condition, or the branch chosen.
    std::size_t turn_ = 0;
    OnPort reset_port_;
};

}  // namespace BT
