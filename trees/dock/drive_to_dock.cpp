#include "trees/dock/drive_to_dock.h"

#include "trees/conditions.h"
#include "trees/dock/drive_follow.h"

namespace vemra::trees {

namespace {

Node go_toward_charger(const DriveForm& form)
{
    const auto follow_signal = Sequence(no_bump(), form.before_follow,
                                        IfThenElse(ConsistentlyLostDockSignal{}, SequenceStar(break_drive()),
                                                   FollowDockSignal{"${marker_signal_type}"}));
    const auto first = SubTree("GoTowardChargerFirstArc",
                               SequenceStar(back_off(form.still_touching, "20"), mark_place_of_bump(),
                                            first_arc(row(FollowWallDirJug{}), {80, -50, "120", "50", "190"},
                                                      {30, -25, "60", "85", "155"}, form.arc_heard)));
    // The limit of the first arc stands.
    const auto second =
        SubTree("GoTowardChargerSecondArc",
                SequenceStar(Inverter(BumpdirMatch{"${bump_dir}", "virtual"}),
                             back_off(form.still_touching, "15"), by_wall_side([&form](const Sense& sense) {
                                 return swing({0, -30, "60", "90", "150"}, sense, form.arc_heard);
                             })));
    return SubTree("GoTowardCharger",
                   SequenceStar(turn_to_charger(form.slow_arc_mm_s),
                                until_left("go_toward_charger_loop_break",
                                           Loop(-1, FallbackStar(follow_signal, first, second,
                                                                 go_toward_charger_follow_wall(form),
                                                                 go_toward_charger_reverse_follow_wall(form),
                                                                 SequenceStar(break_drive()))))));
}

}  // namespace

// --- the cycle ----------------------------------------------------------------------------------

Nodes begin_search(const Nodes& own)
{
    return row(own, erase("initial_bump_pose"), SetBlackboard{"charging_escape_times", "0"},
               SetBlackboard{"random_walk_times", "0"}, SetBlackboard{"full_round_turn_times", "0"},
               erase("go_to_dock_sector_indirect_force_inverse"), set_flag("first_time_search"),
               SetMapDrawMode{.draw_mode = "None"});
}

Node marking_turn()
{
    return RetryUntilSuccesful(
        3, FallbackStar(Sequence(ActionDecorator(NotTrapped{}), SubtreeCondition{"Escape"},
                                 SubtreeCondition{"GoChargingFullRoundTurn"}, Inverter(marked("Mixed"))),
                        ForceFailure(Sequence(SubtreeCondition{"Escape"},
                                              SubtreeCondition{"SearchForChargerRandomWalk"}))));
}

Nodes direction_is_known()
{
    return row(Inverter(marked("None")), Inverter(marked("Mixed")));
}

Node count_trapped_cycle()
{
    return SequenceStar(
        IntAdd{"${full_round_turn_times}", "-1", "full_round_turn_times"},
        IntAdd{"${charging_escape_times}", "1", "charging_escape_times"},
        when(IsAGreaterThanBInt{"${charging_escape_times}", "4"}, SetBlackboard{"charging_escape_times", "0"},
             SubtreeCondition{"SearchForChargerRandomWalk"}));
}

Node turn_away_and(Node drive)
{
    return SequenceStar(offset_yaw("${marker_dir}", "180", "turn_target_angle"), turn_to_target_angle(),
                        std::move(drive));
}

Node searching_cycle(const DriveForm& form, const Node& docking)
{
    const auto drive = Named("GoTowardCharger", Fallback(form.heard_in_field, go_toward_charger(form)));
    return Named(
        "SearchingForCharger",
        SequenceStar(
            SetBlackboard{"docking_try_times", "0"}, SetBlackboard{"back_out_of_field_times", "0"},
            erase("back_init_bump_cnt"), IsAGreaterThanBInt{"5", "${full_round_turn_times}"},
            IntAdd{"${full_round_turn_times}", "1", "full_round_turn_times"}, marking_turn(),
            direction_is_known(), account_motion("Charge"),
            FallbackStar(Sequence(SubtreeCondition{"Escape"},
                                  SequenceStar(form.leave_field, erase("first_time_search"), drive, docking)),
                         NotTrapped{}, count_trapped_cycle())));
}

// --- turning to the dock ------------------------------------------------------------------------

namespace {

/// The arc of a robot that stands to one side of the dock.
struct StartArc
{
    const char* name;
    const char* inner_name;
    int sign;              ///< of the arc: +1 to the left
    const char* receiver;  ///< that hears the dock first
    const char* side_signal;
    const char* central_signal;
};

Node start_with_arc(const StartArc& arc, const char* slow_mm_s)
{
    const auto degrees = [&arc](int value) { return std::to_string(arc.sign * value); };
    const auto yaw_has_passed = [&arc](const char* limit) {
        return arc.sign > 0 ? yaw_above(limit) : yaw_below(limit);
    };
    const auto outer_wheel = [&arc](const char* mm_s) {
        return arc.sign > 0 ? wheels("0", mm_s) : wheels(mm_s, "0");
    };
    const auto arc_ended_well =
        SequenceStar(offset_yaw("${current_yaw_deg}", degrees(10).c_str(), "temp_var"),
                     arc.sign > 0 ? IsAGreaterThanBFloat{"${temp_var}", "${marker_dir}"}
                                  : IsAGreaterThanBFloat{"${marker_dir}", "${temp_var}"});
    return Named(
        arc.name,
        SequenceStar(
            Named(arc.inner_name,
                  SequenceStar(
                      offset_yaw("${marker_dir}", degrees(-90).c_str(), "turn_target_angle"),
                      turn_to_target_angle(),
                      RoundAngleDeg{.key_to_round = "marker_dir", .target_angle = "${current_yaw_deg}"})),
            offset_yaw("${marker_dir}", degrees(-15).c_str(), "min_turn_angle"),
            Named("GoArcAndGoToCharger",
                  FallbackStar(
                      Sequence(no_bump(), Fallback(yaw_has_passed("${min_turn_angle}"), outer_wheel("120")),
                               Fallback(hears(arc.receiver, arc.side_signal),
                                        hears(arc.receiver, arc.central_signal), hears("Any", "Middle"),
                                        yaw_has_passed("${marker_dir}"), outer_wheel(slow_mm_s))),
                      ForceFailure(back2cm()), arc_ended_well,
                      SequenceStar(BlackboardCopy{"marker_dir", "turn_target_angle"},
                                   turn_to_target_angle())))));
}

}  // namespace

Node turn_to_charger(const char* slow_arc_mm_s)
{
    constexpr StartArc from_right{"OnRightSideOfCharger", "LeftSideFacingCharger", +1, mr, "Left",
                                  "CentralLeft"};
    constexpr StartArc from_left{"OnLeftSideOfCharger", "RightSideFacingCharger", -1, ml, "Right",
                                 "CentralRight"};
    return SubTree(
        "TurnToCharger",
        Named("GoTowardCharger",
              IfThenElseStar(
                  Fallback(marked("Middle"), marked("CentralLeft"), marked("CentralRight"), marked("Mixed")),
                  Named("GoTowardChargerDirectly",
                        SequenceStar(BlackboardCopy{"marker_dir", "turn_target_angle"},
                                     turn_to_target_angle())),
                  Named("StartWithAnArc",
                        IfThenElseStar(marked("Left"), start_with_arc(from_right, slow_arc_mm_s),
                                       start_with_arc(from_left, slow_arc_mm_s))))));
}

// --- round what is met --------------------------------------------------------------------------

Node back_off(const Node& still_touching, const char* frames)
{
    return Sequence(
        SubtreeCondition{"Escape"},
        ForceSuccess(DoWhile(Sequence(SensorCheckBumped{"merge_bump_dir"}, erase("mid_bump"),
                                      BumpdirMerge{"${bump_dir}", "${merge_bump_dir}", "bump_dir"}),
                             IfThenElse(still_touching, GoBackwards{}, Frameout(frames, GoBackwards{})))),
        Stop{});
}

Node mark_place_of_bump()
{
    return IfThenElseStar(SequenceStar(present("initial_bump_pose"), within("150", "${initial_bump_pose}")),
                          set_flag("ignore_middle_dock"), erase("ignore_middle_dock"));
}

Node swing(const Arc& arc, const Sense& sense, Node (*heard)(const Sense&))
{
    const auto past_limit = [&sense] { return yaw_past(sense, "${arc_break_yaw}"); };
    return SequenceStar(
        only_if(arc.limit_deg != 0,
                offset_yaw("${current_yaw_deg}", turned(sense, arc.limit_deg).c_str(), "arc_break_yaw")),
        guarded_turn(turned(sense, arc.turn_away_deg), arc.turn_deg_s),
        Sequence(no_bump(),
                 Fallback(past_limit(), Sequence(yaw_past(sense, "${initial_bump_yaw}"), heard(sense)),
                          sense.sign > 0 ? wheels(arc.slow_mm_s, arc.fast_mm_s)
                                         : wheels(arc.fast_mm_s, arc.slow_mm_s))),
        FallbackStar(Inverter(past_limit()), SubtreeCondition{"SearchForChargerOverturnSolv"},
                     SequenceStar(random_walk(), break_drive())));
}

Nodes first_arc(const Nodes& side_of_wall, const Arc& after_middle, const Arc& after_side,
                Node (*heard)(const Sense&))
{
    const auto to_side = [heard](const Arc& arc) {
        return by_wall_side([&arc, heard](const Sense& sense) { return swing(arc, sense, heard); });
    };
    return row(
        note_bump(), AdvancedSetFollowWallDirection{}, side_of_wall,
        Inverter(BumpdirMatch{"${bump_dir}", "virtual"}),
        IfThenElseStar(BumpdirMatch{"${bump_dir}", "middle"}, to_side(after_middle), to_side(after_side)));
}

}  // namespace vemra::trees
