#include "trees/navigation/follow_wall.h"

// Follows the wall to the edge of the rectangle that was laid around the robot. The proc may end well or
// badly, only the rectangle ends the follow with success.
TREE(FollowWallTillRectLimit)
{
    return follow_till_rect_limit(
        "FollowWallTillRectLimit",
        Sequence(not_looped("robot_trajectory"), ForceFailure(SubtreeCondition{"FollowWallProc.xml"})));
}
