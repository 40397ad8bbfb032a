#include "trees/idioms.h"

// Brings a sleeping robot back to the mode in which it fell asleep. The key that woke it has done its work
// and is not to be read as a command.
TREE(WakeFromSleep)
{
    return IfThenElseStar(
        in_mode("SleepMode"),
        SequenceStar(SaySomething{"Wake From Sleep"}, BackToLastRobotMode{}, EraseKeyValue{}),
        AlwaysFailure{});
}
