#pragma once

#include "behaviortree_cpp/decorators/counted_node.h"

namespace BT {

/// A limit in milliseconds of the blackboard's clock. Each tick ticks the child first; one that has ended
/// gives its result, late or not, and one that is still running when the limit has gone by is halted, which
/// is FAILURE. A negative number sets no limit. FAILURE when the number cannot be read.
class TimeoutNode : public CountedNode
{
public:
    TimeoutNode(const std::string& name, unsigned milliseconds)
        : CountedNode(name, "msec", static_cast<int>(milliseconds))
    {}
    TimeoutNode(const std::string& name, const NodeParameters& parameters)
        : CountedNode(name, "msec", parameters)
    {}

    static const NodeParameters& requiredNodeParameters();

protected:
    NodeStatus tick() override;

private:
    std::int64_t start_ms_ = 0;
};

}  // namespace BT
