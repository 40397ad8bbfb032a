#include "trees/navigation/follow_wall.h"

// Follows the wall at full speed.
TREE(FollowWallProc)
{
    return follow_wall({});
}
