#pragma once

#include "trees/idioms.h"

namespace vemra::trees {

/// Books what the robot does from here on as `action`.
inline Node account_action(const char* action)
{
    return MotionActionAccount{.bb = "current_action", .cur_mode = "Action", .detail_type = action};
}

/// A companion that takes the motion beside it out of the trace of where the robot has cleaned.
inline Node off_the_trace(const char* reason)
{
    return key::not_trace_token.set(reason);
}

}  // namespace vemra::trees
