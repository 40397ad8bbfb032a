#include "trees/idioms.h"

// First gate of every motion. After an escape it fails exactly once, so that the motion it guards starts anew
// from where the robot now stands, and it leaves the direction of whatever still touches.
TREE(Escape)
{
    return IfThenElseStar(
        FallbackStar(key::finish_escape.absent(),
                     ForceFailure(SequenceStar(SaySomething{"脱困过，包含脱困标志位"},
                                               erase(key::finish_escape, key::origin_tick_cnt),
                                               SensorCheckBumped{.out_bump_dir = "bump_dir"}))),
        key::trapped.set("false"), ForceFailure(key::trapped.set("true")));
}
