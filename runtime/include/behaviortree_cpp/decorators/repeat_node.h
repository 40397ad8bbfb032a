#pragma once

#include "behaviortree_cpp/decorators/counted_node.h"

namespace BT {

/// Runs the child to SUCCESS `num_cycles` times, one cycle a tick at most, and then succeeds; a negative
/// number goes on until the child fails, 0 succeeds at once. FAILURE of the child ends it with FAILURE, and
/// so does a number that cannot be read.
class RepeatNode : public CountedNode
{
public:
    RepeatNode(const std::string& name, unsigned cycles)
        : CountedNode(name, "num_cycles", static_cast<int>(cycles))
    {}
    RepeatNode(const std::string& name, const NodeParameters& parameters)
        : CountedNode(name, "num_cycles", parameters)
    {}

    static const NodeParameters& requiredNodeParameters();

protected:
    NodeStatus tick() override;
};

}  // namespace BT
