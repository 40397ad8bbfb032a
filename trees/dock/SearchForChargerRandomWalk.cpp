#include "trees/dock/search.h"

namespace {

Node walk()
{
    return Sequence(BlackboardCopy{"current_pose", "random_walk_source"},
                    RandomPointNearAnother{.max_dist = "800",
                                           .min_dist = "450",
                                           .out_point = "navi_target_point",
                                           .source_point = "${current_pose}"},
                    no_bump(), SetMapDrawMode{.draw_mode = "None"}, SubtreeCondition{"NaviOnePointProc"},
                    erase("random_walk_source"));
}

// A walk that was cut short still counts, if the robot got somewhere by it.
Node cut_short()
{
    return SequenceStar(back2cm(), Inverter(within("150", "${random_walk_source}")),
                        erase("random_walk_source"));
}

}  // namespace

// Shifts the robot to some place near by. Five of these are all that a search has.
TREE(SearchForChargerRandomWalk)
{
    return SequenceStar(
        IsAGreaterThanBInt{"5", "${random_walk_times}"},
        IntAdd{"${random_walk_times}", "1", "random_walk_times"},
        ForceSuccess(with_sensor(
            "DockField", RetryUntilSuccesful(5, FallbackStar(walk(), cut_short(),
                                                             ForceFailure(erase("random_walk_source")))))));
}
