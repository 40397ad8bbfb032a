#include "trees/idioms.h"

// The whole home is covered while the robot is on the map; off it, the robot first comes back.
TREE(RecursiveAutoMode_FollowGong)
{
    return IfThenElse(GridmapLimitCheck{}, SubtreeCondition{"AutoMode_FollowGong"},
                      SubtreeCondition{"BackToMapLimit"});
}
