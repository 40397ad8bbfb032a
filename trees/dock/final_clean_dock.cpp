#include "trees/dock/docking_clean_dock.h"

namespace vemra::trees {

namespace {

Nodes point_clouds_off()
{
    return row(sensor_off("LdsPointcloud"), sensor_off("LaserTofPointcloud"),
               sensor_off("SideBrushPointcloud"), sensor_off("VirtualWall"));
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
        key::current_pose.copy_to(key::dock_rec_pose), key::dock_front.flag(),
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
        key::current_yaw_deg.copy_to(key::yaw_toward_dock),
        IfThenElseStar(
            RetryUntilSuccesful(3, turn_once), AlwaysSuccess{},
            ForceFailure(SequenceStar(erase(key::ignore_all_bump_event_flag, key::dock_final_front),
                                      SaySomething{"tq bumped too much"}, key::bumped_when_rotate.flag()))));
}

Node correct_by_outline()
{
    return IfThenElseStar(key::dock_fix_mid_dis.present(),
                          SequenceStar(Rotate{.angle_deg = "${dock_fix_mid_yaw}",
                                              .angular_velocity_deg_s = "30",
                                              .false_relative_true_absolute = "true"},
                                       drive_for("${dock_fix_mid_dis}", "50", "50"),
                                       IfThenElseStar(key::dock_fix_dir.holds("true"), guarded_turn(-90, 60),
                                                      guarded_turn(90, 60)),
                                       key::dock_fix_mid_dis.erase()),
                          AlwaysSuccess{});
}

Node half_turn_parked()
{
    return when(switched_off(), IfThenElseStar(key::dock_fix_dir.holds("true"), guarded_turn(182, 60),
                                               guarded_turn(-182, 60)));
}

Node icp_dock()
{
    return SubTree(
        "IcpDock",
        SequenceStar(
            key::dock_front.erase(), key::dock_final_front.flag(), FoundChargerCmd{}, Delay{10},
            key::ignore_all_bump_event_flag.flag(), turn_back_to_dock(),
            key::ignore_all_bump_event_flag.erase(), Stop{}, Delay{10}, key::dock_fix_mid_dis.erase(),
            ForceSuccess(Timeout(1000, FindChargerIcp{})), correct_by_outline(),
            FallbackStar(AlwaysSuccess{}, within("300", "${global_charger_pose}"), DockFinal7001{}),
            key::dock_final_front.erase(), key::dock_final_back.flag(),
            key::current_pose.copy_to(key::dock_start_back_pose),
            key::current_odom_yaw_deg.copy_to(key::dock_back_yaw), half_turn_parked(), Stop{},
            key::ignore_all_bump_event_flag.flag(),
            MotionActionAccount{"current_action", "Action", "GoBackwards"}, Timeout(17000, DockFinal7001{})));
}

Node plain_dock()
{
    return SequenceStar(
        key::dock_final_back.flag(),
        Rotate{.angle_deg = "181", .angular_velocity_deg_s = "60", .false_relative_true_absolute = "false"},
        Timeout(20000, FollowDockSignalBack{}));
}

Node docking_in_two_stages()
{
    return SubTree(
        "Docking",
        DoWhile(
            point_clouds_off(), key::shutdown_tof.flag(), key::shutdown_cliff.flag(), key::mop_revert.flag(),
            Named(
                "FollowSignal",
                Sequence(
                    IfThenElse(key::ignore_all_bump_event_flag.present(), AlwaysSuccess{}, no_bump()),
                    IfThenElseStar(
                        Frameout(3000, SequenceStar(come_up_to_dock(),
                                                    IfThenElseStar(switched_on(), icp_dock(), plain_dock()))),
                        AlwaysSuccess{},
                        ForceFailure(SequenceStar(SaySomething{"tolvar df"}, key::dock_front.flag())))))));
}

// --- what comes of a failure --------------------------------------------------------------------

Node smart_back_40cm_forwards()
{
    const auto step_aside = SequenceStar(
        WeighDockSignalSecondStep{"turn_target_angle"}, key::current_yaw_deg.copy_to(key::origin_yaw),
        turn_to_target_angle(), FallbackStar(drive_unless_bumped("125", "120", "120"), back2cm()),
        key::origin_yaw.copy_to(key::turn_target_angle), key::origin_yaw.erase(), turn_to_target_angle());
    return SubTree(
        "SmartBack40cm",
        SequenceStar(WeighDockSignalFirstStep{}, key::current_pose.copy_to(key::back_origin_point),
                     SaySomething{"tolvar back 40"}, back2cm(), half_turn("180", "80"),
                     ForceSuccess(Frameout(800, Sequence(no_bump(), within("400", "${back_origin_point}"),
                                                         wheels("100", "100")))),
                     half_turn("-180", "80"), key::back_origin_point.erase(),
                     IfThenElseStar(InDockField{}, step_aside, AlwaysSuccess{})));
}

Node smart_go_40cm()
{
    return SubTree(
        "SmartGo40cm",
        SequenceStar(
            key::current_pose.copy_to(key::go_origin_point),
            DoWhile(point_clouds_off(), FallbackStar(drive_unless_bumped("300", "100", "100"), back2cm())),
            SaySomething{"tolvar go 40"}, key::go_origin_point.erase(), half_turn("180", "80")));
}

Node give_up()
{
    return ForceFailure(walk_and_break_docking());
}

Node after_contact()
{
    return choose({{key::dock_final_front.present(),
                    SequenceStar(smart_back_40cm_forwards(), key::dock_final_front.erase(), break_docking())},
                   {key::dock_front.present(),
                    FallbackStar(ForceFailure(back2cm()), Frameout(100, GoBackwards{}),
                                 ForceFailure(SaySomething{"tolvar dock_front_break"}),
                                 ForceFailure(key::dock_front.erase()), break_docking_step())}},
                  give_up());
}

Node after_turn_was_blocked()
{
    return ForceFailure(SequenceStar(
        key::bumped_when_rotate.erase(), SaySomething{"tq : bumped_when_rotate"},
        SaySomething{"${yaw_toward_dock}"}, offset_yaw("${yaw_toward_dock}", "180", "turn_target_angle"),
        turn_to_target_angle(), drive_till_bump("100", "50", "50"), Stop{}, break_docking()));
}

Node without_contact()
{
    return choose({{key::dock_final_back.present(),
                    SequenceStar(smart_go_40cm(), key::dock_final_back.erase(), break_docking())},
                   {key::bumped_when_rotate.present(), after_turn_was_blocked()}},
                  give_up());
}

}  // namespace

Node final_approach_clean_dock()
{
    return RetryUntilSuccesful(
        -1, FallbackStar(
                ForceFailure(SequenceStar(SaySomething{"pv:docking test!"},
                                          key::StationNotNormal.set("false"), key::handle_wash_task.flag())),
                docking_in_two_stages(),
                IfThenElseStar(Bumped{"${bump_dir}"}, after_contact(), without_contact()), give_up()));
}

}  // namespace vemra::trees
