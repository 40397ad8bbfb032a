#include "trees/navigation/navigate_proc.h"

// The drive over known floor alone, used on the way home: the plan was searched without the unknown cells.
TREE(NavigateProcNoUnknown)
{
    return navigate({.far_walk = SubtreeCondition{"GotoPointNoUnknown.xml"}});
}
