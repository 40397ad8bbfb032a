#include "trees/navigation/goto_point.h"

// The walk across the map of an earlier run, none of which counts as traced.
TREE(GotoPointWithHistoryMap)
{
    return walk_the_plan(
        {.drive = drive_along_path(), .after_failed_bridge = SequenceStar(record_and_leave_virtual_wall())});
}
