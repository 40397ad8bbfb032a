#include "trees/navigation/navigate_proc.h"

// The drive of an exploration. Here a clear straight line of any length counts as near, since the robot is
// out to see new floor and a plan over half-known cells would only lead it round about.
TREE(NavigateExploreProc)
{
    return navigate({
        .is_near =
            FallbackStar(goal_within("100"), IsPathClear{.from_point = "${current_pose}",
                                                         .obstacle_expanded_map = "${obstacle_expanded_map}",
                                                         .to_point = "${navi_target_point}",
                                                         .is_explore = "true"}),
        .near_run = SequenceStar(SetMapDrawMode{.draw_mode = "None"}, SubtreeCondition{"NaviOnePointProc"}),
        .far_walk = SubtreeCondition{"GotoPointExplore"},
    });
}
