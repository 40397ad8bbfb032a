#include "trees/cleaning/shared.h"

// The virtual walls are set up, and a robot that starts within one leaves it first.
TREE(PreprocessDealsBeforeCleaning)
{
    return Sequence(first_escape(),
                    DoWhile(key::navi_target_point.kept(),
                            SequenceStar(GenerateVirtualWalls{}, SubtreeCondition{"CheckInVirtualWall.xml"},
                                         key::clean_start_vw_check.erase())));
}
