#pragma once

#include "behaviortree_cpp/control_node.h"

namespace BT {

/// Ticks its children in order and counts within the tick. `threshold` successes: all are halted and it is
/// SUCCESS at once, the children behind unticked. More failures than children less `threshold`: likewise
/// FAILURE. Else RUNNING; children that ended are ticked anew on the next tick. FAILURE when `threshold`
/// cannot be read.
class ParallelNode : public ControlNode
{
public:
    ParallelNode(const std::string& name, int threshold) : ControlNode(name), threshold_(threshold) {}
    ParallelNode(const std::string& name, const NodeParameters& parameters)
        : ControlNode(name, parameters), reads_port_(true)
    {}

    static const NodeParameters& requiredNodeParameters();

    [[nodiscard]] unsigned thresholdM() const { return static_cast<unsigned>(threshold_); }
    void setThresholdM(unsigned threshold) { threshold_ = static_cast<int>(threshold); }

protected:
    NodeStatus tick() override;

private:
    int threshold_ = 1;
    bool reads_port_ = false;
};

}  // namespace BT
