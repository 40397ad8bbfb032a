#include "trees/coverage/lines_first.h"

namespace {

Node plan_line(const char* source_point)
{
    return PlanNextLineForVslam{
        .is_rotate = "${gong_vertically}", .region = "${current_subregion}", .source_point = source_point};
}

// Floor from which no line leads anywhere is kept for comparison.
Node plan_from_floor()
{
    return SequenceStar(
        key::bump_dir_save.set("None"), search_part("Normal"), key::navi_target_point_for_comp.erase(),
        key::flood_search_failed.set("false"),
        FallbackStar(plan_line("${navi_target_point}"),
                     ForceFailure(key::navi_target_point.copy_to(key::navi_target_point_for_comp))));
}

// Along the walls, but not out of the rectangle around the way.
Node follow_walls()
{
    return SequenceStar(
        draw("Default"), key::navi_followwall_mode.set("Target"), SetNaviFollowWallRectLimit{},
        Sequence(CheckFollowWallRectLimit{"navi_follow_wall_limit"}, SubtreeCondition{"NavigateFollowWall"}));
}

Node drive()
{
    return navigate_and_follow_wall("TargetCollision", follow_walls());
}

}  // namespace

// Covers a part of the floor by lines; walls are followed from one line to the next.
TREE(PlanInSubregion_GongFollow)
{
    return lines_first({.plan_from_here = plan_line("${current_coord}"),
                        .plan_from_floor = plan_from_floor(),
                        .watch_to_start = row(SensorCheckBumped{"switch_line_bump_dir"}),
                        .on_line = DoWhile(traced_as("InTheLine"), drive()),
                        .beside_line = DoWhile(traced_as("AfterFootNavi"), drive()),
                        .drive = drive()});
}
