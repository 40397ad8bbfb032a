#include "trees/navigation/goto_point.h"

// The walk towards unseen floor, which ends as soon as that floor is seen.
TREE(GotoPointExplore)
{
    return walk_the_plan({.label = "GotoPointExplore",
                          .stop_when_target_is_clear = true,
                          .check_virtual_wall_after_failed_bridge = false});
}
