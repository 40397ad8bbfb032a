#include "trees/dock/marked_charger.h"

// Walks to the trusted dock, or to where the run began, and searches there.
TREE(BackToMarkedCharger_WithoutSearch)
{
    return SequenceStar(
        ForceSuccess(FallbackStar(SequenceStar(take_marked_charger(), walk_to_marked_charger()),
                                  SubtreeCondition{"BackToOrigin"})),
        SubtreeCondition{"SearchForCharger_lds.xml"});
}
