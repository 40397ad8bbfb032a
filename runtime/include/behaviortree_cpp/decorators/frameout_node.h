#pragma once

#include "behaviortree_cpp/decorators/counted_node.h"

namespace BT {

/// A limit in ticks: the child gets `frames` of them; on the next tick it is halted, and that is FAILURE.
/// A negative number sets no limit, 0 fails at once. FAILURE with the child unticked when the number
/// cannot be read, as a motion must not start without its limit.
class FrameoutNode : public CountedNode
{
public:
    FrameoutNode(const std::string& name, const NodeParameters& parameters)
        : CountedNode(name, "frames", parameters)
    {}

    static const NodeParameters& requiredNodeParameters();

protected:
    NodeStatus tick() override;
};

}  // namespace BT
