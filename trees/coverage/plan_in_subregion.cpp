#include "trees/coverage/plan_in_subregion.h"

namespace vemra::trees {

namespace {

// A robot that crossed a bridge near a chain's end is in a new place: the loop begins afresh.
Node part_is_closed()
{
    return when(key::cross_bridge_near_chain_end.present(), key::cross_bridge_near_chain_end.is("false"));
}

Node phases(const PartPlanner& planner)
{
    return with_sensor(
        "SubregionBorder", sensor_on("SubregionVirtualWall"), key::region_of_interest.kept(),
        RetryUntilSuccesful(
            -1, IfThenElseStar(FallbackStar(Inverter(key::cross_bridge_near_chain_end.set("false")),
                                            zigzag_is_on(), wall_phase()),
                               zigzag_phase(planner), part_is_closed())));
}

Node work(const PartPlanner& planner)
{
    return SequenceStar(
        FallbackStar(key::do_not_reset_trial_token.is_true(), key::cross_trial_bridge_success.set("false")),
        IfThenElse(InCurrentSubregion{}, phases(planner), way_back()));
}

Node forget_phase()
{
    return SequenceStar(erase(key::gong_motion_type, key::followwall_motion_type));
}

}  // namespace

Node plan_in_subregion(const PartPlanner& planner)
{
    return DoWhile(TraceLogger{},
                   Sequence(key::origin_point.default_from(key::current_coord), key::bump_dir.set("None"),
                            set_bool("follow_wall_dir", "true"), key::current_chain_id.set_typed(0),
                            GetRobotTrajectorySize{"subregion_trace_start_index"}, Delay{1},
                            key::block_map_time.counts_seconds(),
                            PostProcess(IfThenElseStar(work(planner), ForceSuccess(forget_phase()),
                                                       ForceFailure(forget_phase())),
                                        key::need_search_block.erase())));
}

// --- the way back -------------------------------------------------------------------------------

Node way_back()
{
    const auto drive = DoWhile(draw_locked("None"), SubtreeCondition{"NavigateProc.xml"});
    const auto follow = DoWhile(draw_locked("BlockOnly"), SequenceStar(follow_walls_to_goal("Target")));
    const auto look = PostProcess(search_part("Region"),
                                  VirtualWallAddPoint{.point_mm = "${current_pose}", .layer = "${map_mask}"});
    return PostProcess(
        SequenceStar(
            key::return_to_region_abort.set("false"),
            IfThenElseStar(BB_Precondition(
                               key::return_to_region_abort,
                               RetryUntilSuccesful(
                                   3, IfThenElseStar(look, FallbackStar(drive, follow),
                                                     ForceFailure(key::return_to_region_abort.set("true"))))),
                           key::return_to_region_abort.erase(),
                           ForceFailure(key::return_to_region_abort.erase()))),
        key::bump_dir.set("None"));
}

}  // namespace vemra::trees
