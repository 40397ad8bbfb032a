#include "trees/mapping/explore.h"

namespace {

Node drive_and_mark()
{
    return DoWhile(ExploreMarkCharger{}, SetMapDrawMode{.draw_mode = "BlockOnly", .LockState = "true"},
                   drive_to_frontier(row(NotTrapped{}, SubtreeCondition{"NavigateFollowWall"})));
}

}  // namespace

// Drives along the edge of the map until there is none. A dock that is heard is marked in passing. Always
// fails.
TREE(QuickExplore)
{
    const auto drive =
        SequenceStar(drive_and_mark(), IfThenElseStar(present("navi_target_point"), goal_within("100"),
                                                      SetBlackboard{"explore_break", "true"}));
    return SequenceStar(
        SetBlackboard{"explore_break", "false"}, SetBlackboard{"nav_explore", "true"},
        erase("explore_found_charger"), erase("mark_charger_point"),
        BB_Precondition("explore_break",
                        Sequence(ForceSuccess(SubtreeCondition{"EscapeCoat"}),
                                 RetryUntilSuccesful(-1, SequenceStar(SetBlackboard{"no_point_fs", "false"},
                                                                      until_no_point(drive))))),
        Delay{10}, AlwaysFailure{});
}
