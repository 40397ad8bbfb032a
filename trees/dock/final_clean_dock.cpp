#include "trees/dock/docking_clean_dock.h"

namespace vemra::trees {

namespace {

Node off(const char* sensor)
{
    return TemporarilyDisableSensor{.lock_status = "false", .sensor = sensor};
}

Nodes point_clouds_off()
{
    return row(off("LdsPointcloud"), off("LaserTofPointcloud"), off("SideBrushPointcloud"),
               off("VirtualWall"));
}

// --- head on ------------------------------------------------------------------------------------

Node too_close_when_follow()
{
    return SubTree("IsTooCloseToDockWhenFollow",
                   SequenceStar(front_hears("Middle"), InDockField{}, nearer_than("550"),
                                SaySomething{"tq too close to dock when follow"}));
}

Node come_up_to_dock()
{
    return SequenceStar(
        BlackboardCopy{"current_pose", "dock_rec_pose"}, set_flag("dock_front"),
        Fallback(Inverter(InMiddleDockOnceInAWhile{}), Inverter(within("150", "${dock_rec_pose}")),
                 too_close_when_follow(), Timeout(8000, FollowDockSignalFinal{})));
}

// --- backwards ----------------------------------------------------------------------------------

// The robot touches the dock while it turns; three times is too often.
Node turn_back_to_dock()
{
    const auto turn_once = FallbackStar(Sequence(no_bump(), SubtreeCondition{"Escape"},
                                                 Rotate{.angle_deg = "${turn_target_angle}",
                                                        .angular_velocity_deg_s = "60",
                                                        .false_relative_true_absolute = "true"}),
                                        ForceFailure(SequenceStar(SaySomething{"tq back 2cm"}, back2cm())));
    return SequenceStar(
        offset_yaw("${current_yaw_deg}", "180", "turn_target_angle"),
        BlackboardCopy{"current_yaw_deg", "yaw_toward_dock"},
        IfThenElseStar(
            RetryUntilSuccesful(3, turn_once), AlwaysSuccess{},
            ForceFailure(SequenceStar(erase("ignore_all_bump_event_flag"), erase("dock_final_front"),
                                      SaySomething{"tq bumped too much"}, set_flag("bumped_when_rotate")))));
}

Node correct_by_outline()
{
    return IfThenElseStar(present("dock_fix_mid_dis"),
                          SequenceStar(Rotate{.angle_deg = "${dock_fix_mid_yaw}",
                                              .angular_velocity_deg_s = "30",
                                              .false_relative_true_absolute = "true"},
                                       drive_for("${dock_fix_mid_dis}", "50", "50"),
                                       IfThenElseStar(BoolMatch{"${dock_fix_dir}", "true"},
                                                      guarded_turn("-90", "60"), guarded_turn("90", "60")),
                                       erase("dock_fix_mid_dis")),
                          AlwaysSuccess{});
}

Node half_turn_parked()
{
    return IfThenElseStar(switched_off(),
                          IfThenElseStar(BoolMatch{"${dock_fix_dir}", "true"}, guarded_turn("182", "60"),
                                         guarded_turn("-182", "60")),
                          AlwaysSuccess{});
}

Node icp_dock()
{
    return SubTree(
        "IcpDock",
        SequenceStar(erase("dock_front"), set_flag("dock_final_front"), FoundChargerCmd{}, Delay{10},
                     set_flag("ignore_all_bump_event_flag"), turn_back_to_dock(),
                     erase("ignore_all_bump_event_flag"), Stop{}, Delay{10}, erase("dock_fix_mid_dis"),
                     ForceSuccess(Timeout(1000, FindChargerIcp{})), correct_by_outline(),
                     FallbackStar(AlwaysSuccess{}, within("300", "${global_charger_pose}"), DockFinal7001{}),
                     erase("dock_final_front"), set_flag("dock_final_back"),
                     BlackboardCopy{"current_pose", "dock_start_back_pose"},
                     BlackboardCopy{"current_odom_yaw_deg", "dock_back_yaw"}, half_turn_parked(), Stop{},
                     set_flag("ignore_all_bump_event_flag"),
                     MotionActionAccount{"current_action", "Action", "GoBackwards"},
                     Timeout(17000, DockFinal7001{})));
}

Node plain_dock()
{
    return SequenceStar(
        set_flag("dock_final_back"),
        Rotate{.angle_deg = "181", .angular_velocity_deg_s = "60", .false_relative_true_absolute = "false"},
        Timeout(20000, FollowDockSignalBack{}));
}

Node docking_in_two_stages()
{
    return SubTree(
        "Docking",
        DoWhile(
            point_clouds_off(), set_flag("shutdown_tof"), set_flag("shutdown_cliff"), set_flag("mop_revert"),
            Named(
                "FollowSignal",
                Sequence(
                    IfThenElse(present("ignore_all_bump_event_flag"), AlwaysSuccess{}, no_bump()),
                    IfThenElseStar(
                        Frameout(3000, SequenceStar(come_up_to_dock(),
                                                    IfThenElseStar(switched_on(), icp_dock(), plain_dock()))),
                        AlwaysSuccess{},
                        ForceFailure(SequenceStar(SaySomething{"tolvar df"}, set_flag("dock_front"))))))));
}

// --- what comes of a failure --------------------------------------------------------------------

Node smart_back_40cm_forwards()
{
    const auto step_aside = SequenceStar(
        WeighDockSignalSecondStep{"turn_target_angle"}, BlackboardCopy{"current_yaw_deg", "origin_yaw"},
        turn_to_target_angle(), FallbackStar(drive_unless_bumped("125", "120", "120"), back2cm()),
        BlackboardCopy{"origin_yaw", "turn_target_angle"}, erase("origin_yaw"), turn_to_target_angle());
    return SubTree(
        "SmartBack40cm",
        SequenceStar(WeighDockSignalFirstStep{}, BlackboardCopy{"current_pose", "back_origin_point"},
                     SaySomething{"tolvar back 40"}, back2cm(), half_turn("180", "80"),
                     ForceSuccess(Frameout(800, Sequence(no_bump(), within("400", "${back_origin_point}"),
                                                         wheels("100", "100")))),
                     half_turn("-180", "80"), erase("back_origin_point"),
                     IfThenElseStar(InDockField{}, step_aside, AlwaysSuccess{})));
}

Node smart_go_40cm()
{
    return SubTree(
        "SmartGo40cm",
        SequenceStar(
            BlackboardCopy{"current_pose", "go_origin_point"},
            DoWhile(point_clouds_off(), FallbackStar(drive_unless_bumped("300", "100", "100"), back2cm())),
            SaySomething{"tolvar go 40"}, erase("go_origin_point"), half_turn("180", "80")));
}

Node give_up()
{
    return ForceFailure(walk_and_break_docking());
}

Node after_contact()
{
    return choose(
        {{present("dock_final_front"),
          SequenceStar(smart_back_40cm_forwards(), erase("dock_final_front"), break_docking())},
         {present("dock_front"), FallbackStar(ForceFailure(back2cm()), Frameout(100, GoBackwards{}),
                                              ForceFailure(SaySomething{"tolvar dock_front_break"}),
                                              ForceFailure(erase("dock_front")), break_docking_step())}},
        give_up());
}

Node after_turn_was_blocked()
{
    return ForceFailure(SequenceStar(
        erase("bumped_when_rotate"), SaySomething{"tq : bumped_when_rotate"},
        SaySomething{"${yaw_toward_dock}"}, offset_yaw("${yaw_toward_dock}", "180", "turn_target_angle"),
        turn_to_target_angle(), drive_till_bump("100", "50", "50"), Stop{}, break_docking()));
}

Node without_contact()
{
    return choose({{present("dock_final_back"),
                    SequenceStar(smart_go_40cm(), erase("dock_final_back"), break_docking())},
                   {present("bumped_when_rotate"), after_turn_was_blocked()}},
                  give_up());
}

}  // namespace

Node final_approach_clean_dock()
{
    return RetryUntilSuccesful(
        -1,
        FallbackStar(ForceFailure(SequenceStar(SaySomething{"pv:docking test!"},
                                               SetBlackboard{"StationNotNormal", "false"},
                                               set_flag("handle_wash_task"))),
                     docking_in_two_stages(),
                     IfThenElseStar(Bumped{"${bump_dir}"}, after_contact(), without_contact()), give_up()));
}

}  // namespace vemra::trees
