#include "trees/navigation/navigate_proc.h"

// The drive across a home whose map is known from an earlier run. The map keeps what it holds: the
// draw mode is locked for the whole walk, whatever the steps on the way ask for.
TREE(NavigateProcWithHistoryMap)
{
    return navigate({
        .near_run = SequenceStar(SetMapDrawMode{.draw_mode = "None", .LockState = "false"},
                                 SubtreeCondition{"NaviOnePointProc.xml"}),
        .far_walk = DoWhile(SetMapDrawMode{.draw_mode = "None", .LockState = "true"},
                            SubtreeCondition{"GotoPointWithHistoryMap.xml"}),
    });
}
