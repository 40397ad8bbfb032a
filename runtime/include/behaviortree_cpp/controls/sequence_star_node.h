#pragma once

#include "behaviortree_cpp/controls/star_node.h"

namespace BT {

/// A sequence that keeps its place: RUNNING of a child is taken up again at that child. FAILURE with
/// `reset_on_failure` "true" (also when left off) halts all and goes back to the first child; with "false"
/// the next tick tries the failed child again, also when the node above has ended in between; a halt that
/// comes by before the node above has ended lets it begin from the first. Without children: SUCCESS.
class SequenceStarNode : public StarNode
{
public:
    explicit SequenceStarNode(const std::string& name, bool reset_on_failure = true)
        : StarNode(name, reset_on_failure)
    {}
    SequenceStarNode(const std::string& name, const NodeParameters& parameters) : StarNode(name, parameters)
    {}

    static const NodeParameters& requiredNodeParameters();

protected:
    NodeStatus tick() override { return run(NodeStatus::SUCCESS); }
};

}  // namespace BT
