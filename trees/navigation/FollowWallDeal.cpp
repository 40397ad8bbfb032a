#include "trees/idioms.h"

// One step along the wall, with a look at what the laser suspects beside it. A review that has moved the
// robot leaves a token: the robot then rests in place of the next step. The choice is made anew in every
// frame, so the rest lasts no longer than the token is there, whatever its pause says.
TREE(FollowWallDeal)
{
    return Sequence(SubtreeCondition{"AlwaysSuccess.xml"}, SubtreeCondition{"LaserReviewAction.xml"},
                    IfThenElse(key::review_halt_token.present(),
                               SequenceStar(key::review_halt_token.erase(), Delay{50}), SensorConsole{}));
}
