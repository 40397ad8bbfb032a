#include "trees/navigation/follow_wall.h"

namespace {

// A search towards the goal in the mode of the search before. Where it finds no way any more, the obstacle
// shuts the robot in, and the mark tells whoever watches for that; the pause gives a watcher the time to act.
Node search_again()
{
    return FallbackStar(AwesomeSearch{.output_point = "navi_followwall_target",
                                      .region = "${gridmap_limit}",
                                      .search_mode = "${awesome_search_mode}",
                                      .source_point = "${current_coord}",
                                      .target = "${navi_followwall_target}",
                                      .target_mode = "${target_mode}"},
                        ForceFailure(SequenceStar(key::trapped_in_real_block.set("true"), Delay{5})));
}

// Every 50 frames the path is searched anew from where the follow has led by then. The mark keeps the body
// from searching in the same frames.
Node renew_direction_by_time()
{
    return Sequence(Delay{50}, key::recalculating_navi_dir.set("true"), search_again(),
                    key::recalculating_navi_dir.erase(), CalculateNavigateDirection{});
}

// Within the rectangle the robot keeps to the wall whatever its direction: it has to get past the obstacle
// first. The frame that leaves the rectangle hands over to the second phase.
Node getting_past_the_obstacle()
{
    return SequenceStar(
        key::still_in_rect_limit.present(),
        FallbackStar(CheckFollowWallRectLimit{},
                     fail_after(key::still_in_rect_limit.erase(),
                                FallbackStar(key::recalculating_navi_dir.present(),
                                             SequenceStar(search_again(), CalculateNavigateDirection{})))));
}

// Outside, the wall is followed as long as it leads towards a goal that is still ahead.
Node wall_still_leads_to_goal()
{
    return Sequence(CheckFollowWallMatchingNavi{}, Inverter(near(key::navi_followwall_target, 100)));
}

Node follow_towards_goal()
{
    return SequenceStar(
        search_again(), CalculateNavigateDirection{}, NavigatedSetFollowWallDirection{},
        SetFollowWallRectLimit{}, key::still_in_rect_limit.flag(),
        ForceSuccess(
            DoWhile(renew_direction_by_time(),
                    Sequence(Fallback(getting_past_the_obstacle(), wall_still_leads_to_goal()),
                             not_looped("robot_trajectory"), SubtreeCondition{"FollowWallProc.xml"}))));
}

// With no way to the goal known, the collision alone gives the side, and the rectangle the end.
Node follow_from_collision()
{
    return SequenceStar(AdvancedSetFollowWallDirection{}, SetFollowWallRectLimit{},
                        ForceSuccess(Sequence(CheckFollowWallRectLimit{}, not_looped("robot_trajectory"),
                                              SubtreeCondition{"FollowWallProc.xml"})));
}

}  // namespace

// The way on after a navigation that ended in a collision: the obstacle is followed for as long as that
// brings the robot nearer to its goal, then the robot steps back. A navigation that failed for any other
// reason is left alone. The tree always fails; whether the goal is reached is for the caller to see.
TREE(NavigateFollowWall)
{
    return ForceFailure(
        PostProcess(DoWhile(key::target_mode.kept(),
                            SequenceStar(NotTrapped{}, Bumped{.bump_dir = "${bump_dir}"},
                                         key::navi_target_point.copy_to(key::navi_followwall_target),
                                         CheckSuccessiveCollision{}, key::target_mode.set_typed("true"),
                                         FallbackStar(follow_towards_goal(), follow_from_collision()),
                                         SubtreeCondition{"Back2cm.xml"})),
                    ResetBridgeList{}));
}
