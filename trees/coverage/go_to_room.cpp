#include "trees/coverage/rooms.h"
#include "trees/idioms.h"

namespace vemra::trees {

namespace {

Node keep_goal()
{
    return SequenceStar(key::navi_target_point.copy_to(key::tmp_navi_target_point_tmp),
                        key::navigation_path_segments.copy_to(key::tmp_navigation_path_segments_tmp));
}

Node take_goal_back()
{
    return SequenceStar(key::tmp_navi_target_point_tmp.copy_to(key::navi_target_point),
                        key::tmp_navigation_path_segments_tmp.copy_to(key::navigation_path_segments),
                        key::navi_target_point.copy_to(key::subregion_decision_point));
}

// With the other rooms shut the robot stands in the room, and so does what it is to do there.
Node stands_in_room()
{
    return DoWhile(
        key::are_other_areas_closed.kept(), key::out_vw_point.kept(), key::navi_followwall_mode.kept(),
        key::awesome_search_mode.kept(), key::awesome_search_region.kept(),
        SequenceStar(key::are_other_areas_closed.set("true"), search_map("Target", "${navi_target_point}"),
                     when(PromptInVirtualWall{}, keep_goal()), InCurrentDomain{}, TargetInCurrentSubregion{},
                     key::trapped_in_polygon_virtual_wall.absent()));
}

Node is_there()
{
    return SequenceStar(key::mop_reach_target_segment.erase(), key::zone_searched.flag(), keep_goal(),
                        FallbackStar(SequenceStar(stands_in_room(), Inverter(CheckSuccessiveNavigation{})),
                                     ForceFailure(take_goal_back())));
}

Node drive()
{
    return SequenceStar(
        key::need_to_open_a_step_token.set("true"),
        IfThenElseStar(key::SlamRetry_navi_token.is_true(),
                       DoWhile(UpdateSegmentMap{"false"}, SubtreeCondition{"NavigateProcWithHistoryMap"}),
                       SubtreeCondition{"NavigateProcWithHistoryMap"}));
}

Node follow_walls()
{
    return SequenceStar(key::navi_followwall_mode.set("Target"),
                        DoWhile(draw_locked("BlockOnly"), SubtreeCondition{"NavigateFollowWall"}));
}

}  // namespace

Node go_to_room()
{
    return FallbackStar(is_there(), drive(), follow_walls());
}

}  // namespace vemra::trees
