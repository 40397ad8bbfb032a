#pragma once

#include "behaviortree_cpp/decorators/counted_node.h"

namespace BT {

/// Runs the child until it succeeds, one attempt a tick at most. FAILURE once `num_attempts` have failed;
/// a negative number never runs out, 0 fails at once. FAILURE when the number cannot be read.
class RetryNode : public CountedNode
{
public:
    RetryNode(const std::string& name, unsigned attempts)
        : CountedNode(name, "num_attempts", static_cast<int>(attempts))
    {}
    RetryNode(const std::string& name, const NodeParameters& parameters)
        : CountedNode(name, "num_attempts", parameters)
    {}

    static const NodeParameters& requiredNodeParameters();

protected:
    NodeStatus tick() override;
};

}  // namespace BT
