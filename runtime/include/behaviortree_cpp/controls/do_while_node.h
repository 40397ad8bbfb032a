#pragma once

#include "behaviortree_cpp/control_node.h"

namespace BT {

/// Companions around a body, the last child. Every tick ticks all children from first to last, whatever the
/// companions return; one that ended is ticked anew on the next tick. The node's result is the body's; when
/// the body ends, the companions still running are halted. FAILURE without children.
class DoWhileNode : public ControlNode
{
public:
    explicit DoWhileNode(const std::string& name, const NodeParameters& parameters = {})
        : ControlNode(name, parameters)
    {}

protected:
    NodeStatus tick() override;
};

}  // namespace BT
