#include "trees/cleaning/shared.h"

// The virtual walls are set up, and a robot that starts within one leaves it first.
TREE(PreprocessDealsBeforeCleaning)
{
    return Sequence(first_escape(),
                    DoWhile(StackBlackboard{"navi_target_point"},
                            SequenceStar(GenerateVirtualWalls{}, SubtreeCondition{"CheckInVirtualWall.xml"},
                                         erase("clean_start_vw_check"))));
}
