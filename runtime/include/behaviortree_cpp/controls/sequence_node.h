#pragma once

#include "behaviortree_cpp/control_node.h"

namespace BT {

/// Goes over its children from the first on every tick. FAILURE of a child: all are halted, FAILURE.
/// RUNNING: later running children are halted, RUNNING. All SUCCESS: SUCCESS. An action that has succeeded
/// in this run is not started again until the run ends. Without children: SUCCESS.
class SequenceNode : public ControlNode
{
public:
    explicit SequenceNode(const std::string& name, const NodeParameters& parameters = {})
        : ControlNode(name, parameters)
    {}

protected:
    NodeStatus tick() override;
};

}  // namespace BT
