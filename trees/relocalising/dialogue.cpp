#include "trees/relocalising/dialogue.h"

namespace vemra::trees {

// --- the way back -------------------------------------------------------------------------------

namespace {

Node snap_or_search()
{
    return ForceSuccess(
        FallbackStar(search_target(), FindNearestInTrajectory{.out_point_grid = "navi_target_point",
                                                              .search_for = "slamclear",
                                                              .start_from = "${navi_target_point}"}));
}

Node cannot_get_back()
{
    return SequenceStar(report("cant_back_origin"), leave_walk());
}

Node walk_back()
{
    return BB_Precondition(
        key::go_slam_break,
        Loop(-1, SequenceStar(
                     snap_or_search(),
                     RetryUntilSuccesful(
                         -1, IfThenElseStar(search_target(), drive_to_point(row(goal_within("100"))),
                                            cannot_get_back())),
                     IfThenElseStar(key::navi_target_point.present(),
                                    SequenceStar(goal_within("100"), report("back_origin"), leave_walk()),
                                    cannot_get_back()))));
}

}  // namespace

Node navi_back_origin()
{
    return SubTree(
        "NaviBackOrigin",
        DoWhile(key::reloc_back_ori_time.counts_frames(),
                ForceSuccess(
                    Fallback(IfThenElseStar(key::reloc_back_ori_time.above(key::reloc_back_ori_limit.value()),
                                            report("cant_back_origin"), AlwaysFailure{}),
                             SequenceStar(SaySomething{"tolvar back ori"},
                                          key::reloc_back_pose.copy_to(key::navi_target_point),
                                          key::go_slam_break.set("false"), walk_back())))));
}

// --- looking at SLAM's point --------------------------------------------------------------------

namespace {

Node walk_to_slam_point()
{
    const auto pass =
        RetryUntilSuccesful(-1, IfThenElseStar(search_target(), drive_to_point({}),
                                               SequenceStar(key::cant_reach_exp.flag(), leave_walk())));
    const auto arrival = IfThenElseStar(
        key::navi_target_point.present(),
        FallbackStar(Inverter(goal_within("100")), SequenceStar(leave_walk())), SequenceStar(leave_walk()));
    return SequenceStar(SaySomething{"tolvar goto slam exp"},
                        key::slam_exp_pose.copy_to(key::navi_target_point), key::slam_exp_pose.erase(),
                        key::go_slam_break.set("false"),
                        BB_Precondition(key::go_slam_break, Loop(-1, SequenceStar(pass, arrival))));
}

// The limit is tested with a point in hand alone.
Node go_to_slam_point()
{
    return DoWhile(key::reloc_time.counts_frames(),
                   ForceSuccess(IfThenElseStar(
                       key::slam_exp_pose.present(),
                       Fallback(key::reloc_time.above(key::reloc_time_limit.value()), walk_to_slam_point()),
                       SaySomething{"tolvar no slam point"})));
}

Node turn_until_told()
{
    return SubTree(
        "RotTilRcvStop",
        keep_choosing(
            {{key::rotate_reloc_finish.present(),
              Named("5", SequenceStar(SaySomething{"tolvar rcv 5"}, key::rotate_reloc_finish.erase(),
                                      key::last_rot_reloc.flag(), Stop{}))},
             {key::exp_reloc_result.present(),
              keep_choosing(
                  {{verdict_is("true"), Named("6", SequenceStar(SaySomething{"tolvar rcv 6"}, Stop{}))},
                   {verdict_is("false"), Named("7", SequenceStar(SaySomething{"tolvar rcv 7"}, Stop{}))}},
                  AlwaysFailure{})}},
            keep_turning()));
}

// The robot stands for as long as SLAM takes.
Node wait_for_verdict()
{
    const auto done = [](const char* number, const char* say, Nodes more) {
        return Named(number, SequenceStar(SaySomething{say}, std::move(more), key::last_rot_reloc.erase()));
    };
    return Named(
        "wait for 8",
        IfThenElse(
            key::ready_exp_again.present(), done("8", "tolvar rcv 8", row(key::ready_exp_again.erase())),
            Named("wait for 7",
                  IfThenElse(Sequence(key::exp_reloc_result.present(), verdict_is("false")),
                             done("7", "tolvar rcv 7 out", {}),
                             Named("wait for 6",
                                   IfThenElse(Sequence(key::exp_reloc_result.present(), verdict_is("true")),
                                              done("6", "tolvar rcv 6 out", {}), Loop(-1, Stop{})))))));
}

Nodes renew_way_back()
{
    return row(key::reloc_back_ori_limit.set(3000), key::reloc_back_ori_time.set(0));
}

}  // namespace

Node explore_reloc()
{
    return SubTree(
        "ExploreReloc",
        SequenceStar(
            SetMapDrawMode{.draw_mode = "BlockOnly", .LockState = "false"},
            SaySomething{"tolvar explore reloc"}, key::reloc_time_limit.set(1000), key::reloc_time.set(0),
            go_to_slam_point(),

            // Older answers are cleared before the question goes out.
            SaySomething{"tolvar send reach"},
            erase(key::exp_reloc_result, key::ready_exp_again, key::rotate_reloc_finish),
            report("reach_reloc"),

            SequenceStar(
                key::last_rot_reloc.erase(), turn_until_told(),
                Named("last receive 5", when(key::last_rot_reloc.present(), wait_for_verdict())),
                renew_way_back(),
                Named("last receive 5", IfThenElseStar(key::exp_reloc_result.present(), navi_back_origin(),
                                                       SaySomething{"tolvar not 6/7"})),
                key::relocalize_start_move.erase(), Delay{1})));
}

// --- the crossing -------------------------------------------------------------------------------

Node static_crossing()
{
    const auto back =
        PostProcess(SequenceStar(SaySomething{"tolvar cross back ori"}, renew_way_back(), navi_back_origin()),
                    key::exp_reloc_result.erase());
    const auto draw_nothing = [] { return SetMapDrawMode{.draw_mode = "None", .LockState = "false"}; };
    return SequenceStar(
        Delay{100}, key::exp_reloc_result.erase(), note_place("crossline_center", "crossline_original_yaw"),
        key::in_lds_reloc_proc.flag(), draw_nothing(), walk_leg("-1000;0"), draw_nothing(), walk_to_center(),
        SaySomething{"tolvar cross exp"}, report("reach_reloc"),
        keep_choosing(
            {{key::rotate_reloc_finish.present(), stop_turning()}, {key::exp_reloc_result.present(), back}},
            keep_turning()),
        key::static_exp.erase());
}

// --- the commands -------------------------------------------------------------------------------

Node dialogue()
{
    const auto wait_for_command = Loop(-1, SequenceStar(Stop{}, SaySomething{"tolvar wait cmd"}, Delay{100}));
    return SequenceStar(IfThenElse(key::rotate_reloc_finish.present(), stop_turning(), keep_turning()),
                        RelocMap{"start"},
                        Loop(-1, keep_choosing({{key::relocalize_start_move.present(),
                                                 PostProcess(explore_reloc(), key::exp_reloc_result.erase())},
                                                {key::static_exp.present(), static_crossing()}},
                                               wait_for_command)));
}

}  // namespace vemra::trees
