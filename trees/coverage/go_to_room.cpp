#include "trees/conditions.h"
#include "trees/coverage/rooms.h"

namespace vemra::trees {

namespace {

Node keep_goal()
{
    return SequenceStar(BlackboardCopy{"navi_target_point", "tmp_navi_target_point_tmp"},
                        BlackboardCopy{"navigation_path_segments", "tmp_navigation_path_segments_tmp"});
}

Node take_goal_back()
{
    return SequenceStar(BlackboardCopy{"tmp_navi_target_point_tmp", "navi_target_point"},
                        BlackboardCopy{"tmp_navigation_path_segments_tmp", "navigation_path_segments"},
                        BlackboardCopy{"navi_target_point", "subregion_decision_point"});
}

// With the other rooms shut the robot stands in the room, and so does what it is to do there.
Node stands_in_room()
{
    return DoWhile(StackBlackboard{"are_other_areas_closed"}, StackBlackboard{"out_vw_point"},
                   StackBlackboard{"navi_followwall_mode"}, StackBlackboard{"awesome_search_mode"},
                   StackBlackboard{"awesome_search_region"},
                   SequenceStar(SetBlackboard{"are_other_areas_closed", "true"},
                                search_map("Target", "${navi_target_point}"),
                                when(PromptInVirtualWall{}, keep_goal()), InCurrentDomain{},
                                TargetInCurrentSubregion{}, absent("trapped_in_polygon_virtual_wall")));
}

Node is_there()
{
    return SequenceStar(erase("mop_reach_target_segment"), set_flag("zone_searched"), keep_goal(),
                        FallbackStar(SequenceStar(stands_in_room(), Inverter(CheckSuccessiveNavigation{})),
                                     ForceFailure(take_goal_back())));
}

Node drive()
{
    return SequenceStar(
        SetBlackboard{"need_to_open_a_step_token", "true"},
        IfThenElseStar(key_is_true("SlamRetry_navi_token"),
                       DoWhile(UpdateSegmentMap{"false"}, SubtreeCondition{"NavigateProcWithHistoryMap"}),
                       SubtreeCondition{"NavigateProcWithHistoryMap"}));
}

Node follow_walls()
{
    return SequenceStar(SetBlackboard{"navi_followwall_mode", "Target"},
                        DoWhile(draw_locked("BlockOnly"), SubtreeCondition{"NavigateFollowWall"}));
}

}  // namespace

Node go_to_room()
{
    return FallbackStar(is_there(), drive(), follow_walls());
}

}  // namespace vemra::trees
