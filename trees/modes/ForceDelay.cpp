#include "trees/idioms.h"

// A wait of three seconds by the robot's own timer, which is set back at both ends.
TREE(ForceDelay)
{
    return SequenceStar(RobotTimer_ms_Init{},
                        IfThenElse(RobotTimerLongerThan_ms{"3000"}, RobotTimer_ms_Init{}, ForceRunning{}));
}
