#include "trees/navigation/navigate_proc.h"

// Drives to `navi_target_point`, for which the caller has just searched a path. This is the way nearly
// every task gets from one place to the next.
TREE(NavigateProc)
{
    return navigate({.far_walk = SubtreeCondition{"GotoPoint.xml"}});
}
