#pragma once

#include "behaviortree_cpp/control_node.h"

namespace BT {

/// What `SequenceStar` and `FallbackStar` share: the place in the list is kept from tick to tick.
class StarNode : public ControlNode
{
public:
    void halt() override;

protected:
    StarNode(const std::string& name, bool reset_on_failure);
    StarNode(const std::string& name, const NodeParameters& parameters);

    /// Runs the children on from the kept place for as long as they give `go_on`.
    NodeStatus run(NodeStatus go_on);
    /// Port `reset_on_failure`; true when it is missing or unreadable.
    [[nodiscard]] bool resetsOnFailure();

private:
    std::size_t place_ = 0;
    bool reset_on_failure_ = true;
    OnPort reset_port_;
};

}  // namespace BT
