#include "trees/coverage/plan_in_subregion.h"

namespace vemra::trees {

namespace {

Node at_unmarked_border()
{
    return SequenceStar(Inverter(FarFromVirtualBound{"${current_subregion}"}),
                        Inverter(OnMarkedVirtualBound{}));
}

// The border of the part is traced like a wall.
Node bump_into_border()
{
    return SensorTriggerBump{"SubregionBorder"};
}

// --- a piece of wall ----------------------------------------------------------------------------

// A trace that runs onto another one ends the piece. So does a wall that cannot be followed; its chain is
// closed.
Node trace_wall()
{
    return Sequence(SubtreeCondition{"Escape"},
                    MarkChainCheckOverlap{.chain_id = "${current_chain_id}",
                                          .follow_wall_right = "${follow_wall_dir}",
                                          .map_mask = "${map_mask}"},
                    SetBlackboard{"cross_trial_bridge_success", "false"},
                    FallbackStar(SubtreeCondition{"FollowWallProc"},
                                 ForceFailure(SequenceStar(NotTrapped{}, close_chain()))));
}

Node subregion_follow_wall()
{
    return SubTree(
        "SubregionFollowWall",
        Sequence(
            SetBlackboard{"follow_wall_type", "Real"}, account_motion("Followwall"),
            set_flag("disable_layer_marker"),
            ActionDecorator(ForceSuccess(DoWhile(
                StackBlackboard{"current_clean_times"},
                TemporarilyEnableSensor{.lock_status = "false", .sensor = "FollowWallVirtualWallMap"},
                Sequence(SetBlackboardWithType{"current_clean_times", "int", "255"},
                         ActionDecorator(SubtreeCondition{"Back2cm"}), draw("Default"),
                         DoWhile(MarkFollowWallMap{"${map_mask}"}, MarkVirtualBound{"${current_subregion}"},
                                 traced_as("FollowWallWithMarkMap"), trace_wall()))))),
            SubtreeCondition{"Back2cm"}));
}

// --- where to go next ---------------------------------------------------------------------------

Node in_traced_area(const char* point)
{
    return IsPointInRegionArea{
        .out_map = "chain_region_mask", .region = "${current_subregion}", .src_point = point};
}

Node find_open_chain_end()
{
    return PostProcess(search_part("Chain"), erase("closest_chain_end"));
}

// The name of the second key is kept as it stands.
Node block_is_traced_already()
{
    return SequenceStar(
        IfThenElseStar(present("chain_region_check_point"), in_traced_area("${chain_region_check_point}"),
                       SequenceStar(SaySomething{"No chain_region_check_pointpoint!!!"},
                                    BlackboardCopy{"awesome_search_block", "chain_region_check_pointpoint"},
                                    in_traced_area("${chain_region_check_pointpoint}"))),
        SaySomething{"Block搜索结果在区域链内，无需前往！"});
}

Node find_block_outside()
{
    return SequenceStar(
        RetryUntilSuccesful(
            -1, SequenceStar(
                    erase("continue_search_block"),
                    FallbackStar(search_part("Block"), SetBlackboard{"continue_search_block", "true"}),
                    FallbackStar(present("continue_search_block"), Inverter(block_is_traced_already())))),
        absent("continue_search_block"));
}

// Within the traced area a block is worth a visit only behind the trial bridge that was just crossed.
Node find_block()
{
    return IfThenElseStar(
        SequenceStar(absent("need_search_block"), in_traced_area("${current_coord}")),
        SequenceStar(key_is_true("cross_trial_bridge_success"),
                     DoWhile(TmpProcSpecialBridge{"${crossed_navigation_bridge}"}, search_part("Block"))),
        find_block_outside());
}

// --- going there --------------------------------------------------------------------------------

Node keeping_side_of_wall(Nodes companions, Node body)
{
    return DoWhile(StackBlackboard{"follow_wall_dir"}, companions, std::move(body));
}

Node approach()
{
    return FallbackStar(
        keeping_side_of_wall({}, SubtreeCondition{"NavigateProc"}), goal_within("155"),
        SequenceStar(contact_needs_tracing(), begin_chain()),
        keeping_side_of_wall(row(goal_within("155")), SequenceStar(follow_walls_to_goal("TargetCollision"))));
}

// Another goal is driven to; without one the approach is over.
Node no_other_goal()
{
    return Inverter(
        FallbackStar(find_open_chain_end(), find_block(), ForceFailure(SensorCheckBumped{"bump_dir"})));
}

// The drive is meant to touch: a contact fails it, and a piece of wall begins there.
Node touch_block()
{
    return SequenceStar(
        ExtendBlockPoint{.block_point = "${awesome_search_block}",
                         .out_block_point = "navi_target_point",
                         .source_point = "${current_coord}",
                         .map_mask = "${map_mask}",
                         .region = "${current_subregion}"},
        erase("awesome_search_block"),
        DoWhile(TemporarilyEnableSensor{.lock_status = "false", .sensor = "FollowWallVirtualWallMap"},
                MarkFollowWallMap{"0"}, traced_as("NaviOnePoint"),
                Sequence(Inverter(SensorCheckBumped{"bump_dir"}), SubtreeCondition{"NaviOnePointProc"},
                         set_flag("chain_block_fail"))),
        close_chain(), erase("chain_block_fail"));
}

Node reach_goal()
{
    return IfThenElseStar(SequenceStar(at_unmarked_border(),
                                       Inverter(IsPointInRectangle{.point = "${awesome_search_block}",
                                                                   .rectangle = "${current_subregion}"}),
                                       Inverter(bumped())),
                          bump_into_border(), touch_block());
}

Node go_to_goal()
{
    return DoWhile(
        TemporarilyEnableSensor{.lock_status = "true", .sensor = "DockField"},
        TemporarilyEnableSensor{.lock_status = "true", .sensor = "ChargerVirtualWall"},
        SequenceStar(draw("None"),
                     FallbackStar(goal_within("155"),
                                  RetryUntilSuccesful(-1, FallbackStar(approach(), no_other_goal()))),
                     goal_within("155"), reach_goal()));
}

}  // namespace

Node gong_follow_wall()
{
    return SubTree(
        "GongFollowWall",
        RetryUntilSuccesful(
            -1,
            PostProcess(SequenceStar(account_motion("Followwall"),
                                     FallbackStar(zigzag_is_on(), set_bool("followwall_motion_type", "true")),
                                     set_bool("gong_motion_type", "false"), SubtreeCondition{"Back2cm"},
                                     optionally(bumped(), draw("Default"),
                                                SetBlackboard{"finished_gong_follow_wall", "true"},
                                                subregion_follow_wall(), erase("need_search_block")),
                                     IfThenElseStar(FallbackStar(find_open_chain_end(), find_block()),
                                                    ForceFailure(go_to_goal()), AlwaysSuccess{})),
                        set_bool("followwall_motion_type", "false"))));
}

Node wall_phase()
{
    return SequenceStar(
        BlackboardCopy{"current_subregion", "region_of_interest"}, account_motion("Followwall"),
        optionally(at_unmarked_border(), Inverter(bumped()),
                   Inverter(HasOpenChain{.layer_id = "${chain_layer_id}", .region = "${current_subregion}"}),
                   bump_into_border()),
        erase("skip_cutting_chain"), BB_Precondition("cross_bridge_near_chain_end", gong_follow_wall()),
        absent("need_search_block"));
}

}  // namespace vemra::trees
