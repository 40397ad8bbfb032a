#pragma once

#include "behaviortree_cpp/control_node.h"

namespace BT {

/// Goes over its children from the first on every tick. SUCCESS of a child: all are halted, SUCCESS.
/// RUNNING: later running children are halted, RUNNING. All FAILURE: FAILURE. An action that has failed in
/// this run is not started again until the run ends. Without children: FAILURE.
class FallbackNode : public ControlNode
{
public:
    explicit FallbackNode(const std::string& name, const NodeParameters& parameters = {})
        : ControlNode(name, parameters)
    {}

protected:
    NodeStatus tick() override;
};

}  // namespace BT
