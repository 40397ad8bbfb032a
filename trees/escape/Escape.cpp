#include "trees/idioms.h"

// First gate of every motion. After an escape it fails exactly once, so that the motion it guards starts anew
// from where the robot now stands, and it leaves the direction of whatever still touches.
TREE(Escape)
{
    return IfThenElseStar(
        FallbackStar(absent("finish_escape"),
                     ForceFailure(SequenceStar(SaySomething{"脱困过，包含脱困标志位"}, erase("finish_escape"),
                                               erase("origin_tick_cnt"),
                                               SensorCheckBumped{.out_bump_dir = "bump_dir"}))),
        SetBlackboard{"trapped", "false"}, ForceFailure(SetBlackboard{"trapped", "true"}));
}
