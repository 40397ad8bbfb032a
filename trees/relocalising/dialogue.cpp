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
        "go_slam_break",
        Loop(-1, SequenceStar(
                     snap_or_search(),
                     RetryUntilSuccesful(
                         -1, IfThenElseStar(search_target(), drive_to_point(row(goal_within("100"))),
                                            cannot_get_back())),
                     IfThenElseStar(present("navi_target_point"),
                                    SequenceStar(goal_within("100"), report("back_origin"), leave_walk()),
                                    cannot_get_back()))));
}

}  // namespace

Node navi_back_origin()
{
    return SubTree(
        "NaviBackOrigin",
        DoWhile(ConditionTimerFrames{.frames_out_key = "reloc_back_ori_time",
                                     .start_from = "${reloc_back_ori_time}"},
                ForceSuccess(Fallback(
                    IfThenElseStar(IsAGreaterThanBInt{"${reloc_back_ori_time}", "${reloc_back_ori_limit}"},
                                   report("cant_back_origin"), AlwaysFailure{}),
                    SequenceStar(SaySomething{"tolvar back ori"},
                                 BlackboardCopy{"reloc_back_pose", "navi_target_point"},
                                 SetBlackboard{"go_slam_break", "false"}, walk_back())))));
}

// --- looking at SLAM's point --------------------------------------------------------------------

namespace {

Node walk_to_slam_point()
{
    const auto pass =
        RetryUntilSuccesful(-1, IfThenElseStar(search_target(), drive_to_point({}),
                                               SequenceStar(set_flag("cant_reach_exp"), leave_walk())));
    const auto arrival = IfThenElseStar(
        present("navi_target_point"), FallbackStar(Inverter(goal_within("100")), SequenceStar(leave_walk())),
        SequenceStar(leave_walk()));
    return SequenceStar(SaySomething{"tolvar goto slam exp"},
                        BlackboardCopy{"slam_exp_pose", "navi_target_point"}, erase("slam_exp_pose"),
                        SetBlackboard{"go_slam_break", "false"},
                        BB_Precondition("go_slam_break", Loop(-1, SequenceStar(pass, arrival))));
}

// The limit is tested with a point in hand alone.
Node go_to_slam_point()
{
    return DoWhile(
        ConditionTimerFrames{.frames_out_key = "reloc_time", .start_from = "${reloc_time}"},
        ForceSuccess(IfThenElseStar(
            present("slam_exp_pose"),
            Fallback(IsAGreaterThanBInt{"${reloc_time}", "${reloc_time_limit}"}, walk_to_slam_point()),
            SaySomething{"tolvar no slam point"})));
}

Node turn_until_told()
{
    return SubTree(
        "RotTilRcvStop",
        keep_choosing(
            {{present("rotate_reloc_finish"),
              Named("5", SequenceStar(SaySomething{"tolvar rcv 5"}, erase("rotate_reloc_finish"),
                                      set_flag("last_rot_reloc"), Stop{}))},
             {present("exp_reloc_result"),
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
        return Named(number, SequenceStar(SaySomething{say}, std::move(more), erase("last_rot_reloc")));
    };
    return Named(
        "wait for 8",
        IfThenElse(
            present("ready_exp_again"), done("8", "tolvar rcv 8", row(erase("ready_exp_again"))),
            Named("wait for 7",
                  IfThenElse(SequenceStar(present("exp_reloc_result"), verdict_is("false")),
                             done("7", "tolvar rcv 7 out", {}),
                             Named("wait for 6",
                                   IfThenElse(SequenceStar(present("exp_reloc_result"), verdict_is("true")),
                                              done("6", "tolvar rcv 6 out", {}), Loop(-1, Stop{})))))));
}

Nodes renew_way_back()
{
    return row(SetBlackboard{"reloc_back_ori_limit", "3000"}, SetBlackboard{"reloc_back_ori_time", "0"});
}

}  // namespace

Node explore_reloc()
{
    return SubTree(
        "ExploreReloc",
        SequenceStar(
            SetMapDrawMode{.draw_mode = "BlockOnly", .LockState = "false"},
            SaySomething{"tolvar explore reloc"}, SetBlackboard{"reloc_time_limit", "1000"},
            SetBlackboard{"reloc_time", "0"}, go_to_slam_point(),

            // Older answers are cleared before the question goes out.
            SaySomething{"tolvar send reach"}, erase("exp_reloc_result"), erase("ready_exp_again"),
            erase("rotate_reloc_finish"), report("reach_reloc"),

            SequenceStar(
                erase("last_rot_reloc"), turn_until_told(),
                Named("last receive 5",
                      IfThenElseStar(present("last_rot_reloc"), wait_for_verdict(), AlwaysSuccess{})),
                renew_way_back(),
                Named("last receive 5", IfThenElseStar(present("exp_reloc_result"), navi_back_origin(),
                                                       SaySomething{"tolvar not 6/7"})),
                erase("relocalize_start_move"), Delay{1})));
}

// --- the crossing -------------------------------------------------------------------------------

Node static_crossing()
{
    const auto back =
        PostProcess(SequenceStar(SaySomething{"tolvar cross back ori"}, renew_way_back(), navi_back_origin()),
                    erase("exp_reloc_result"));
    const auto draw_nothing = [] { return SetMapDrawMode{.draw_mode = "None", .LockState = "false"}; };
    return SequenceStar(
        Delay{100}, erase("exp_reloc_result"), note_place("crossline_center", "crossline_original_yaw"),
        set_flag("in_lds_reloc_proc"), draw_nothing(), walk_leg("-1000;0"), draw_nothing(), walk_to_center(),
        SaySomething{"tolvar cross exp"}, report("reach_reloc"),
        keep_choosing({{present("rotate_reloc_finish"), stop_turning()}, {present("exp_reloc_result"), back}},
                      keep_turning()),
        erase("static_exp"));
}

// --- the commands -------------------------------------------------------------------------------

Node dialogue()
{
    const auto wait_for_command = Loop(-1, SequenceStar(Stop{}, SaySomething{"tolvar wait cmd"}, Delay{100}));
    return SequenceStar(IfThenElse(present("rotate_reloc_finish"), stop_turning(), keep_turning()),
                        RelocMap{"start"},
                        Loop(-1, keep_choosing({{present("relocalize_start_move"),
                                                 PostProcess(explore_reloc(), erase("exp_reloc_result"))},
                                                {present("static_exp"), static_crossing()}},
                                               wait_for_command)));
}

}  // namespace vemra::trees
