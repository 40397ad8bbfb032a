#include "trees/coverage/whole_home.h"

namespace {

// --- the flood search ---------------------------------------------------------------------------

Node find_open_floor()
{
    return SequenceStar(ForceSuccess(OpenAStep{}), search_map("Normal", "default", "search_target_point"),
                        FindNearestBoundary{.out_target_point = "navi_target_point",
                                            .source_point = "${search_target_point}"},
                        key::found_target_point.set("true"));
}

Node has_way()
{
    return FallbackStar(Sequence(points_within("50", "${navi_target_point}", "${search_target_point}"),
                                 key::navigation_path_segments.present()),
                        search_map("TargetCollision", "${navi_target_point}"),
                        search_map("TargetCollision", "${search_target_point}"));
}

Node go_to_open_floor()
{
    return FallbackStar(ForceFailure(key::search_target_point.copy_to(key::subregion_decision_point)),
                        SequenceStar(has_way(), SubtreeCondition{"NavigateProc"}),
                        SequenceStar(draw("Default"), follow_walls_to_goal("TargetCollision")));
}

Node go_to_second_chance()
{
    return FallbackStar(
        ForceFailure(key::navi_target_point.copy_to(key::subregion_decision_point)),
        IfThenElseStar(search_map("Target", "${navi_target_point}"), SubtreeCondition{"NavigateProc"},
                       key::found_target_point.set("false")),
        SequenceStar(draw("BlockOnly"), follow_walls_to_goal("Target")));
}

Node flood_search_and_navigate()
{
    return SubTree("FloodSearchAndNavigate",
                   RetryUntilSuccesful(-1, choose({{find_open_floor(), go_to_open_floor()},
                                                   {SequenceStar(find_second_chance(SlamRetryAreaCheck{}),
                                                                 key::found_target_point.set("true")),
                                                    go_to_second_chance()}},
                                                  key::found_target_point.set("false"))));
}

// --- one part after the other -------------------------------------------------------------------

// The planner runs only where the robot really stands in the part chosen.
Node clean_part()
{
    return optionally(SetCurrentSubregion{"${subregion_decision_point}"},
                      InCurrentSubregion{"${current_coord}"},
                      SubtreeCondition{"PlanInSubregion_FollowGong.xml"});
}

// What a trial bridge has led to holds for the next part.
Node keep_trial()
{
    return optionally(key::cross_trial_bridge_success.present(), key::cross_trial_bridge_success.is_true(),
                      key::do_not_reset_trial_token.set("true"));
}

Node clean_until_nothing_is_open()
{
    return ForceSuccess(
        Repeat(-1, SequenceStar(clean_part(), key::do_not_reset_trial_token.set("false"),
                                key::cross_trial_bridge_success.set("false"), flood_search_and_navigate(),
                                key::found_target_point.is_true(), goal_within("100"), keep_trial())));
}

Node cut_floor_once()
{
    return FallbackStar(
        key::subregion_fixed.present(),
        SequenceStar(FixSubregions{}, key::current_coord.copy_to(key::subregion_decision_point)));
}

Node cover()
{
    return SequenceStar(
        key::origin_point.default_from(key::current_coord), cut_floor_once(),
        RetryUntilSuccesful(-1, SequenceStar(clean_until_nothing_is_open(), prove_way_home(prove_way()))),
        key::OnElave.absent(),
        FallbackStar(InCurrentSubregion{"${subregion_decision_point}"},
                     key::current_coord.copy_to(key::subregion_decision_point)));
}

}  // namespace

// Covers the home part by part. Where a part is done, a flood search leads to the next open floor; when there
// is none left, the robot proves that it can get back to where it began. Failure says that it cannot.
TREE(AutoMode_FollowGong)
{
    return IfThenElse(
        GridmapLimitCheck{},
        Sequence(ForceSuccess(SubtreeCondition{"EscapeCoat"}),
                 DoWhile(key::OnElave.kept(), TraceLogger{},
                         StepUtility{.new_step_status = "Closed", .need_trace_invalid = "true"},
                         AlwaysSuccess{.new_door_status = "Open"}, parked_wall_check(), cover())),
        SubtreeCondition{"BackToMapLimit"});
}
