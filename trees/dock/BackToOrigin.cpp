#include "trees/dock/walks.h"

namespace {

Node at_goal()
{
    return points_within("100", "${navi_target_point}", "${current_coord}");
}

}  // namespace

// Walks back to where the run began.
TREE(BackToOrigin)
{
    return SequenceStar(ForceSuccess(Repeat(-1, SequenceStar(find_track_near_origin(), search_known_floor(),
                                                             SubTree("NavigateNonestop",
                                                                     ForceSuccess(drive_over_known_floor())),
                                                             Inverter(at_goal())))),
                        at_goal());
}
