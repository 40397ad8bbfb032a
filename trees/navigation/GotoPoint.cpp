#include "trees/navigation/goto_point.h"

// The plain walk along a plan. The limit lies far above any home, so the token is
// granted for every path whose length is known.
TREE(GotoPoint)
{
    return walk_the_plan({.trace_paths_below_cells = 1048576, .back_off_after_failed_bridge = true});
}
