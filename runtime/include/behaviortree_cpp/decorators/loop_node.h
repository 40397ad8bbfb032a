#pragma once

#include "behaviortree_cpp/decorators/counted_node.h"

namespace BT {

/// Runs the child `num_cycles` times whatever comes of it, one cycle a tick at most, and then succeeds; a
/// negative number never ends, 0 succeeds at once. FAILURE when the number cannot be read.
class LoopNode : public CountedNode
{
public:
    LoopNode(const std::string& name, const NodeParameters& parameters)
        : CountedNode(name, "num_cycles", parameters)
    {}

    static const NodeParameters& requiredNodeParameters();

protected:
    NodeStatus tick() override;
};

}  // namespace BT
