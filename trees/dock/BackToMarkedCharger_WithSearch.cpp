#include "trees/dock/marked_charger.h"

namespace {

Node dock_within(const char* distance_mm)
{
    return points_within(distance_mm, "${current_pose}", "${only_charger_in_map}");
}

}  // namespace

// The same, with a search before the walk, and a walk that ends as soon as the dock is heard near its place.
TREE(BackToMarkedCharger_WithSearch)
{
    return SequenceStar(
        FallbackStar(dock_within("150"), ForceSuccess(SubtreeCondition{"SearchForCharger_lds.xml"})),
        ForceSuccess(
            FallbackStar(Fallback(Sequence(dock_within("1000"), SubtreeCondition{"ReadyToSearchForCharger"}),
                                  SequenceStar(take_marked_charger(), walk_to_marked_charger())),
                         SubtreeCondition{"BackToOrigin"})),
        SubtreeCondition{"SearchForCharger_lds.xml"});
}
