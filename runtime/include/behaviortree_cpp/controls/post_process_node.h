#pragma once

#include "behaviortree_cpp/control_node.h"

namespace BT {

/// A main child and a final child. While the main child runs, the node is that child; when it ends, the
/// final child is run to its end and the node gives the main child's result. With `tick_on_halt` "true"
/// (also when left off) a halt during the main child halts it and then ticks the final child once, so that
/// the clean-up is done on every way out; what is then still running is halted. FAILURE without two
/// children.
class PostProcessNode : public ControlNode
{
public:
    PostProcessNode(const std::string& name, const NodeParameters& parameters) : ControlNode(name, parameters)
    {}

    static const NodeParameters& requiredNodeParameters();

    void halt() override;

protected:
    NodeStatus tick() override;

private:
    /// IDLE while the main child runs, then its result.
    NodeStatus main_result_ = NodeStatus::IDLE;
    OnPort tick_port_;
};

}  // namespace BT
