#include "trees/idioms.h"

// The step back after a collision, with the escape gate before it: where an escape has just moved the robot,
// there is nothing left to back off from.
TREE(Back2cm)
{
    return SequenceStar(guarded(SubtreeCondition{"BTBack2cm.xml"}), SubtreeCondition{"AlwaysSuccess.xml"});
}
