#pragma once

/// Steps under a condition, where the failure of a step counts. (`optionally` is a success in any case.)

#include "trees/idioms.h"

namespace vemra::trees {

/// Several steps as one node; a single one stays as it is.
template <Steps... Children>
Node steps_as_one(Children&&... steps)
{
    Nodes nodes = row(std::forward<Children>(steps)...);
    if (nodes.size() == 1)
        return std::move(nodes.front());
    return SequenceStar(nodes);
}

/// Does the steps if `given` passes. If it does not, there is nothing to do, and that is a success.
template <Steps... Children>
Node when(Node given, Children&&... steps)
{
    return IfThenElseStar(std::move(given), steps_as_one(std::forward<Children>(steps)...), AlwaysSuccess{});
}

/// Does the steps unless `given` passes.
template <Steps... Children>
Node unless(Node given, Children&&... steps)
{
    return FallbackStar(std::move(given), steps_as_one(std::forward<Children>(steps)...));
}

}  // namespace vemra::trees
