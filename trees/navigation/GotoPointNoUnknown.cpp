#include "trees/navigation/goto_point.h"

// The walk over known floor. Only short hops may count as traced.
TREE(GotoPointNoUnknown)
{
    return walk_the_plan({.trace_paths_below_cells = 30});
}
