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
    const auto drive = SequenceStar(
        drive_and_mark(),
        IfThenElseStar(key::navi_target_point.present(), goal_within("100"), key::explore_break.set("true")));
    return fail_after(
        key::explore_break.set("false"), key::nav_explore.set("true"),
        erase(key::explore_found_charger, key::mark_charger_point),
        BB_Precondition(key::explore_break,
                        Sequence(ForceSuccess(SubtreeCondition{"EscapeCoat"}),
                                 RetryUntilSuccesful(-1, SequenceStar(key::no_point_fs.set("false"),
                                                                      until_no_point(drive))))),
        Delay{10});
}
