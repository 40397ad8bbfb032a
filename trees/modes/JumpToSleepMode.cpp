#include "trees/idioms.h"

// Runs beside a mode in which the robot rests and sends it to sleep after 30000 ticks of it.
TREE(JumpToSleepMode)
{
    return IfThenElse(Delay{30000},
                      SequenceStar(SetLastRobotMode{}, GetWheelsDropStateBeforeSleep{},
                                   ChangeRobotModeTo{.IsAimMode_Sleep = "true"}),
                      StopModeDeal{});
}
