#include "trees/dock/search.h"

namespace {

Node walk()
{
    return Sequence(key::current_pose.copy_to(key::random_walk_source),
                    RandomPointNearAnother{.max_dist = "800",
                                           .min_dist = "450",
                                           .out_point = "navi_target_point",
                                           .source_point = "${current_pose}"},
                    no_bump(), SetMapDrawMode{.draw_mode = "None"}, SubtreeCondition{"NaviOnePointProc"},
                    key::random_walk_source.erase());
}

// A walk that was cut short still counts, if the robot got somewhere by it.
Node cut_short()
{
    return SequenceStar(back2cm(), Inverter(within("150", "${random_walk_source}")),
                        key::random_walk_source.erase());
}

}  // namespace

// Shifts the robot to some place near by. Five of these are all that a search has.
TREE(SearchForChargerRandomWalk)
{
    return SequenceStar(
        key::random_walk_times.below(5), key::random_walk_times.plus(1),
        ForceSuccess(with_sensor(
            "DockField",
            RetryUntilSuccesful(
                5, FallbackStar(walk(), cut_short(), ForceFailure(key::random_walk_source.erase()))))));
}
