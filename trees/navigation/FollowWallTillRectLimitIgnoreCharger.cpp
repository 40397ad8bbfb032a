#include "trees/navigation/follow_wall.h"

// The same along a wall near the charger, whose field must not turn the robot away while it looks for it.
// Here the tree gives the order itself, and the step counts as one action, so that a step that has ended is
// not begun anew.
TREE(FollowWallTillRectLimitIgnoreCharger)
{
    return follow_till_rect_limit(
        "FollowWallTillRectLimitIgnoreCharger",
        Sequence(not_looped(), order_follow({.ignore_base = "true"}), SubtreeCondition{"Escape.xml"},
                 ForceFailure(ActionDecorator(SubtreeCondition{"FollowWallDeal"}))));
}
