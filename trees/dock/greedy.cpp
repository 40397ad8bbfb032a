#include "trees/dock/greedy.h"

namespace vemra::trees {

Node walk_within_limit(const GreedyWalk& walk)
{
    const auto draw_blocks = SetMapDrawMode{.draw_mode = "BlockOnly"};
    const auto follow_wall =
        SequenceStar(NotTrapped{}, Bumped{"${bump_dir}"}, only_if(!walk.draws_blocks_last, draw_blocks),
                     AdvancedSetFollowWallDirection{}, SetFollowWallRectLimit{},
                     only_if(walk.draws_blocks_last, draw_blocks),
                     SubtreeCondition{"FollowWallTillRectLimitIgnoreCharger"});
    return ForceSuccess(Sequence(
        IsPointInRectangle{.point = "${current_pose}", .rectangle = "${navigate_limit}"},
        Repeat(walk.cycles, SequenceStar(search({.mode = "Target", .target = "${navi_target_point}"}),
                                         ForceSuccess(FallbackStar(SubtreeCondition{"NavigateProc"},
                                                                   ForceFailure(follow_wall))),
                                         Inverter(goal_within(walk.arrival_mm))))));
}

Node solve_loop(const char* break_key)
{
    const auto back_to_bump = SequenceStar(
        key::initial_bump_pose.copy_to(key::navi_target_point), MakeMap{.roi = "${navigate_limit}"},
        key::follow_wall_dir.copy_to(key::follow_wall_dir_bak),
        walk_within_limit({.cycles = "-1", .arrival_mm = "150", .draws_blocks_last = true}),
        key::follow_wall_dir_bak.copy_to(key::follow_wall_dir), SetBlackboard{break_key, "true"});
    return SequenceStar(
        GeneratePointCenteredRectMm{
            .center = "${initial_bump_pose}", .half_size_mm = "1500", .out_rect = "navigate_limit"},
        IfThenElseStar(SubtreeCondition{"SearchForChargerGreedyNavigate"}, SetBlackboard{break_key, "true"},
                       back_to_bump),
        Delay{1});
}

}  // namespace vemra::trees
