#include "trees/coverage/plan_in_subregion.h"

namespace vemra::trees {

namespace {

// A robot that crossed a bridge near a chain's end is in a new place: the loop begins afresh.
Node part_is_closed()
{
    return IfThenElseStar(present("cross_bridge_near_chain_end"),
                          key_is("cross_bridge_near_chain_end", "false"), AlwaysSuccess{});
}

Node phases(const PartPlanner& planner)
{
    return DoWhile(
        TemporarilyEnableSensor{.lock_status = "false", .sensor = "SubregionBorder"},
        TemporarilyEnableSensor{.lock_status = "false", .sensor = "SubregionVirtualWall"},
        StackBlackboard{"region_of_interest"},
        RetryUntilSuccesful(
            -1, IfThenElseStar(FallbackStar(Inverter(SetBlackboard{"cross_bridge_near_chain_end", "false"}),
                                            zigzag_is_on(), wall_phase()),
                               zigzag_phase(planner), part_is_closed())));
}

Node work(const PartPlanner& planner)
{
    return SequenceStar(FallbackStar(key_is_true("do_not_reset_trial_token"),
                                     SetBlackboard{"cross_trial_bridge_success", "false"}),
                        IfThenElse(InCurrentSubregion{}, phases(planner), way_back()));
}

Node forget_phase()
{
    return SequenceStar(erase("gong_motion_type"), erase("followwall_motion_type"));
}

}  // namespace

Node plan_in_subregion(const PartPlanner& planner)
{
    return DoWhile(
        TraceLogger{},
        Sequence(default_from("origin_point", "current_coord"), SetBlackboard{"bump_dir", "None"},
                 set_bool("follow_wall_dir", "true"), SetBlackboardWithType{"current_chain_id", "int", "0"},
                 GetRobotTrajectorySize{"subregion_trace_start_index"}, Delay{1},
                 ConditionTimerSecs{.secs_out_key = "block_map_time", .start_from = "${block_map_time}"},
                 PostProcess(IfThenElseStar(work(planner), ForceSuccess(forget_phase()),
                                            ForceFailure(forget_phase())),
                             erase("need_search_block"))));
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
            SetBlackboard{"return_to_region_abort", "false"},
            IfThenElseStar(BB_Precondition("return_to_region_abort",
                                           RetryUntilSuccesful(
                                               3, IfThenElseStar(look, FallbackStar(drive, follow),
                                                                 ForceFailure(SetBlackboard{
                                                                     "return_to_region_abort", "true"})))),
                           erase("return_to_region_abort"), ForceFailure(erase("return_to_region_abort")))),
        SetBlackboard{"bump_dir", "None"});
}

}  // namespace vemra::trees
