#include "trees/idioms.h"

// On the charger the way to sleep is counted at full charge alone.
TREE(ChargingJumpToSleepMode)
{
    return IfThenElse(RobotPowerGetHigherThan{"100"}, SubtreeCondition{"JumpToSleepMode"},
                      RobotTimer_s_Init{});
}
