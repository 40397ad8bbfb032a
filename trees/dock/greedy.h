#pragma once

/// A limited walk past an obstacle that the wall follower went round and round.

#include "trees/dock/search.h"

namespace vemra::trees {

struct GreedyWalk
{
    const char* cycles;
    const char* arrival_mm;
    bool draws_blocks_last;  ///< after the rectangle is set up, not before the side is chosen
};

/// Drives to `navi_target_point` and follows walls where that fails, as long as the robot is within
/// `navigate_limit`.
Node walk_within_limit(const GreedyWalk& walk);

/// What a loop around an obstacle is solved by; `break_key` ends what the robot was about.
Node solve_loop(const char* break_key);

}  // namespace vemra::trees
