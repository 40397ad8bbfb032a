#pragma once

/// Drives into the unknown.

#include "trees/navigation/search.h"

namespace vemra::trees {

inline Nodes end_stage()
{
    return BreakKey{key::explore_break}.leave();
}

inline Node guarded_round(const char* angle_deg)
{
    return guarded_turn(angle_deg, 40);
}

/// The next frontier, and how the robot gets there.
inline Node drive_to_frontier(const Nodes& where_the_drive_fails)
{
    return RetryUntilSuccesful(-1, IfThenElseStar(SequenceStar(search_map("Explore"), ExploreOpt{}),
                                                  FallbackStar(SubtreeCondition{"NavigateExploreProc"},
                                                               SequenceStar(where_the_drive_fails)),
                                                  key::no_point_fs.set("true")));
}

/// Runs `body` until no frontier is left.
inline Node until_no_point(Node body)
{
    return ForceSuccess(BB_Precondition(key::no_point_fs, Loop(-1, std::move(body))));
}

}  // namespace vemra::trees
