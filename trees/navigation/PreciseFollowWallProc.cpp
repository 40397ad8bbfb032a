#include "trees/navigation/follow_wall.h"

// Follows the wall as closely as the robot can, where only a short stretch of it may be used.
TREE(PreciseFollowWallProc)
{
    return follow_wall({.precise = "true"});
}
