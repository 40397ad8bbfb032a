#include "trees/navigation/goto_point.h"

// The walk towards unseen floor, which ends as soon as that floor is seen.
TREE(GotoPointExplore)
{
    return walk_the_plan({.label = "GotoPointExplore",
                          .drive = row(Inverter(ExploreTargetClear{}), drive_along_path()),
                          .after_failed_bridge = record_failed_crossing()});
}
