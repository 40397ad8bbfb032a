#include "trees/idioms.h"

// Drives back to where the cleaning was broken off for want of charge.
TREE(LowpowerResume)
{
    return SequenceStar(optionally(key::lowpower_coord_save.present(),
                                   key::lowpower_coord_save.copy_to(key::navi_target_point),
                                   SubtreeCondition{"NavigateProcWithHistoryMapNoneStop"}),
                        key::lowpower_coord_save.erase());
}
