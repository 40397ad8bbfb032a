#include "trees/coverage/plan_in_subregion.h"

namespace vemra::trees {

namespace {

Node at_unmarked_border()
{
    return Sequence(Inverter(FarFromVirtualBound{"${current_subregion}"}), Inverter(OnMarkedVirtualBound{}));
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
                    key::cross_trial_bridge_success.set("false"),
                    FallbackStar(SubtreeCondition{"FollowWallProc"},
                                 ForceFailure(SequenceStar(NotTrapped{}, close_chain()))));
}

Node subregion_follow_wall()
{
    return SubTree(
        "SubregionFollowWall",
        Sequence(
            key::follow_wall_type.set("Real"), account_motion("Followwall"), key::disable_layer_marker.flag(),
            ActionDecorator(ForceSuccess(DoWhile(
                key::current_clean_times.kept(), sensor_on("FollowWallVirtualWallMap"),
                Sequence(key::current_clean_times.set_typed(255),
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
    return PostProcess(search_part("Chain"), key::closest_chain_end.erase());
}

// The name of the second key is kept as it stands.
Node block_is_traced_already()
{
    return SequenceStar(
        IfThenElseStar(key::chain_region_check_point.present(), in_traced_area("${chain_region_check_point}"),
                       SequenceStar(SaySomething{"No chain_region_check_pointpoint!!!"},
                                    key::awesome_search_block.copy_to(key::chain_region_check_pointpoint),
                                    in_traced_area("${chain_region_check_pointpoint}"))),
        SaySomething{"Block搜索结果在区域链内，无需前往！"});
}

Node find_block_outside()
{
    return SequenceStar(
        RetryUntilSuccesful(
            -1, SequenceStar(
                    key::continue_search_block.erase(),
                    FallbackStar(search_part("Block"), key::continue_search_block.set("true")),
                    FallbackStar(key::continue_search_block.present(), Inverter(block_is_traced_already())))),
        key::continue_search_block.absent());
}

// Within the traced area a block is worth a visit only behind the trial bridge that was just crossed.
Node find_block()
{
    return IfThenElseStar(
        Sequence(key::need_search_block.absent(), in_traced_area("${current_coord}")),
        SequenceStar(key::cross_trial_bridge_success.is_true(),
                     DoWhile(TmpProcSpecialBridge{"${crossed_navigation_bridge}"}, search_part("Block"))),
        find_block_outside());
}

// --- going there --------------------------------------------------------------------------------

Node keeping_side_of_wall(Nodes companions, Node body)
{
    return DoWhile(key::follow_wall_dir.kept(), companions, std::move(body));
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
        key::awesome_search_block.erase(),
        with_sensor("FollowWallVirtualWallMap", MarkFollowWallMap{"0"}, traced_as("NaviOnePoint"),
                    Sequence(Inverter(SensorCheckBumped{"bump_dir"}), SubtreeCondition{"NaviOnePointProc"},
                             key::chain_block_fail.flag())),
        close_chain(), key::chain_block_fail.erase());
}

Node reach_goal()
{
    return IfThenElseStar(Sequence(at_unmarked_border(),
                                   Inverter(IsPointInRectangle{.point = "${awesome_search_block}",
                                                               .rectangle = "${current_subregion}"}),
                                   Inverter(bumped())),
                          bump_into_border(), touch_block());
}

Node go_to_goal()
{
    return DoWhile(
        sensor_held_on("DockField"), sensor_held_on("ChargerVirtualWall"),
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
            -1, PostProcess(
                    SequenceStar(
                        account_motion("Followwall"),
                        FallbackStar(zigzag_is_on(), set_bool("followwall_motion_type", "true")),
                        set_bool("gong_motion_type", "false"), SubtreeCondition{"Back2cm"},
                        optionally(bumped(), draw("Default"), key::finished_gong_follow_wall.set("true"),
                                   subregion_follow_wall(), key::need_search_block.erase()),
                        when(FallbackStar(find_open_chain_end(), find_block()), ForceFailure(go_to_goal()))),
                    set_bool("followwall_motion_type", "false"))));
}

Node wall_phase()
{
    return SequenceStar(
        key::current_subregion.copy_to(key::region_of_interest), account_motion("Followwall"),
        optionally(at_unmarked_border(), Inverter(bumped()),
                   Inverter(HasOpenChain{.layer_id = "${chain_layer_id}", .region = "${current_subregion}"}),
                   bump_into_border()),
        key::skip_cutting_chain.erase(),
        BB_Precondition(key::cross_bridge_near_chain_end, gong_follow_wall()),
        key::need_search_block.absent());
}

}  // namespace vemra::trees
