#include "trees/dock/walks.h"

namespace vemra::trees {

namespace {

Node has_way()
{
    return SequenceStar(
        MakeMap{.roi = "${gridmap_limit}", .expand_mode = "NoUnknown"},
        FallbackStar(search_known_floor(),
                     SequenceStar(FindNearestTarget{}, search_map("Target", "${navi_target_point}"))));
}

Node drive(const WalkToDock& walk)
{
    return FallbackStar(
        SequenceStar(SetMapDrawMode{.draw_mode = "None"}, SubtreeCondition{"NavigateProcNoUnknown"}),
        goal_within("150"), SequenceStar(follow_walls_over_known_floor(walk.follow_mode)));
}

// A doubtful way is driven, and the walk goes on from there.
Node drive_doubtful_way()
{
    return IfThenElseStar(
        way_is_sound(), AlwaysSuccess{},
        ForceFailure(DoWhile(
            sensor_held_off("LaserTofPointcloud"), key::ignore_pointcloud_during_escaping.kept(),
            SequenceStar(key::ignore_pointcloud_during_escaping.set("true"), drive_or_follow_walls()))));
}

}  // namespace

Node walk_to_dock(const WalkToDock& walk)
{
    return RetryUntilSuccesful(
        -1, choose({{has_way(), drive(walk)},
                    {search({.mode = walk.last_search, .target = "${navi_target_point}", .tolerance = "1"}),
                     drive_doubtful_way()}},
                   walk.no_way));
}

}  // namespace vemra::trees
