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
                        ForceFailure(SequenceStar(SetBlackboard{"trapped_in_real_block", "true"}, Delay{5})));
}

// Every 50 frames the path is searched anew from where the follow has led by then. The mark keeps the body
// from searching in the same frames.
Node renew_direction_by_time()
{
    return Sequence(Delay{50}, SetBlackboard{"recalculating_navi_dir", "true"}, search_again(),
                    erase("recalculating_navi_dir"), CalculateNavigateDirection{});
}

// Within the rectangle the robot keeps to the wall whatever its direction: it has to get past the obstacle
// first. The frame that leaves the rectangle hands over to the second phase.
Node getting_past_the_obstacle()
{
    return SequenceStar(
        present("still_in_rect_limit"),
        FallbackStar(CheckFollowWallRectLimit{},
                     SequenceStar(erase("still_in_rect_limit"),
                                  FallbackStar(present("recalculating_navi_dir"),
                                               SequenceStar(search_again(), CalculateNavigateDirection{})),
                                  AlwaysFailure{})));
}

// Outside, the wall is followed as long as it leads towards a goal that is still ahead.
Node wall_still_leads_to_goal()
{
    return Sequence(CheckFollowWallMatchingNavi{},
                    Inverter(ArePointsTooClose{.distance_mm = "100",
                                               .point_mm_a = "${current_pose}",
                                               .point_mm_b = "${navi_followwall_target}"}));
}

Node follow_towards_goal()
{
    return SequenceStar(
        search_again(), CalculateNavigateDirection{}, NavigatedSetFollowWallDirection{},
        SetFollowWallRectLimit{}, set_flag("still_in_rect_limit"),
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
    return ForceFailure(PostProcess(
        DoWhile(
            StackBlackboard{"target_mode"},
            SequenceStar(NotTrapped{}, Bumped{.bump_dir = "${bump_dir}"},
                         BlackboardCopy{.source = "navi_target_point", .target = "navi_followwall_target"},
                         CheckSuccessiveCollision{},
                         SetBlackboardWithType{.key = "target_mode", .type = "bool", .value = "true"},
                         FallbackStar(follow_towards_goal(), follow_from_collision()),
                         SubtreeCondition{"Back2cm.xml"})),
        ResetBridgeList{}));
}
