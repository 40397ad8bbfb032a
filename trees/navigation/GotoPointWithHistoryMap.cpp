#include "trees/navigation/goto_point.h"

// The walk across the map of an earlier run, none of which counts as traced.
TREE(GotoPointWithHistoryMap)
{
    return walk_the_plan({});
}
