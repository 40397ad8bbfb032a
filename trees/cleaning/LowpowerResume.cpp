#include "trees/idioms.h"

// Drives back to where the cleaning was broken off for want of charge.
TREE(LowpowerResume)
{
    return SequenceStar(
        optionally(present("lowpower_coord_save"),
                   BlackboardCopy{.source = "lowpower_coord_save", .target = "navi_target_point"},
                   SubtreeCondition{"NavigateProcWithHistoryMapNoneStop"}),
        erase("lowpower_coord_save"));
}
