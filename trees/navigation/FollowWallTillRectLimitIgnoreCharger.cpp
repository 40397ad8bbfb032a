#include "trees/navigation/follow_wall.h"

// The same along a wall near the charger, whose field must not turn the robot away while it looks for it.
// Here the tree gives the order itself. The `ActionDecorator` holds nothing: the Sequence asks its own child,
// the `ForceFailure`, whether it is an action, and that one always fails when the step ends.
TREE(FollowWallTillRectLimitIgnoreCharger)
{
    return follow_till_rect_limit(
        "FollowWallTillRectLimitIgnoreCharger",
        Sequence(not_looped(), order_follow({.ignore_base = "true"}), SubtreeCondition{"Escape.xml"},
                 ForceFailure(ActionDecorator(SubtreeCondition{"FollowWallDeal"}))));
}
