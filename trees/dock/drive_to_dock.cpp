#include "trees/dock/drive_to_dock.h"

#include "trees/dock/drive_follow.h"
#include "trees/idioms.h"

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
    return SubTree(
        "GoTowardCharger",
        SequenceStar(turn_to_charger(form.slow_arc_mm_s),
                     drive_to_charger.scope(Loop(
                         -1, FallbackStar(follow_signal, first, second, go_toward_charger_follow_wall(form),
                                          go_toward_charger_reverse_follow_wall(form),
                                          SequenceStar(break_drive()))))));
}

}  // namespace

// --- the cycle ----------------------------------------------------------------------------------

Nodes begin_search(const Nodes& own)
{
    return row(own, key::initial_bump_pose.erase(), key::charging_escape_times.set(0),
               key::random_walk_times.set(0), key::full_round_turn_times.set(0),
               key::go_to_dock_sector_indirect_force_inverse.erase(), key::first_time_search.flag(),
               SetMapDrawMode{.draw_mode = "None"});
}

Node marking_turn()
{
    return RetryUntilSuccesful(
        3, FallbackStar(Sequence(ActionDecorator(NotTrapped{}), SubtreeCondition{"Escape"},
                                 SubtreeCondition{"GoChargingFullRoundTurn"}, Inverter(marked("Mixed"))),
                        ForceFailure(guarded(SubtreeCondition{"SearchForChargerRandomWalk"}))));
}

Nodes direction_is_known()
{
    return row(Inverter(marked("None")), Inverter(marked("Mixed")));
}

Node count_trapped_cycle()
{
    return SequenceStar(key::full_round_turn_times.plus(-1), key::charging_escape_times.plus(1),
                        when(key::charging_escape_times.above(4), key::charging_escape_times.set(0),
                             SubtreeCondition{"SearchForChargerRandomWalk"}));
}

Node turn_away_and(Node drive)
{
    return SequenceStar(offset_yaw("${marker_dir}", "180", "turn_target_angle"), turn_to_target_angle(),
                        std::move(drive));
}

Node searching_cycle(const Node& leave_field, const Node& heard, const Node& drive, const Node& docking)
{
    return Named(
        "SearchingForCharger",
        SequenceStar(
            key::docking_try_times.set(0), key::back_out_of_field_times.set(0),
            key::back_init_bump_cnt.erase(), key::full_round_turn_times.below(5),
            key::full_round_turn_times.plus(1), marking_turn(), direction_is_known(),
            account_motion("Charge"),
            FallbackStar(guarded(SequenceStar(leave_field, key::first_time_search.erase(),
                                              Named("GoTowardCharger", Fallback(heard, drive)), docking)),
                         NotTrapped{}, count_trapped_cycle())));
}

Node searching_cycle(const DriveForm& form, const Node& docking)
{
    return searching_cycle(form.leave_field, form.heard_in_field, go_toward_charger(form), docking);
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
                     arc.sign > 0 ? key::temp_var.above(key::marker_dir.value())
                                  : key::marker_dir.above(key::temp_var.value()));
    return Named(
        arc.name,
        SequenceStar(
            Named(arc.inner_name,
                  SequenceStar(
                      offset_yaw("${marker_dir}", degrees(-90).c_str(), "turn_target_angle"),
                      turn_to_target_angle(),
                      RoundAngleDeg{.key_to_round = "marker_dir", .target_angle = "${current_yaw_deg}"})),
            offset_yaw("${marker_dir}", degrees(-15).c_str(), "min_turn_angle"),
            Named(
                "GoArcAndGoToCharger",
                FallbackStar(
                    Sequence(no_bump(), Fallback(yaw_has_passed("${min_turn_angle}"), outer_wheel("120")),
                             Fallback(hears(arc.receiver, arc.side_signal),
                                      hears(arc.receiver, arc.central_signal), hears("Any", "Middle"),
                                      yaw_has_passed("${marker_dir}"), outer_wheel(slow_mm_s))),
                    ForceFailure(back2cm()), arc_ended_well,
                    SequenceStar(key::marker_dir.copy_to(key::turn_target_angle), turn_to_target_angle())))));
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
        Named(
            "GoTowardCharger",
            IfThenElseStar(
                Fallback(marked("Middle"), marked("CentralLeft"), marked("CentralRight"), marked("Mixed")),
                Named("GoTowardChargerDirectly",
                      SequenceStar(key::marker_dir.copy_to(key::turn_target_angle), turn_to_target_angle())),
                Named("StartWithAnArc",
                      IfThenElseStar(marked("Left"), start_with_arc(from_right, slow_arc_mm_s),
                                     start_with_arc(from_left, slow_arc_mm_s))))));
}

// --- round what is met --------------------------------------------------------------------------

Node back_off(const Node& still_touching, const char* frames)
{
    return Sequence(
        SubtreeCondition{"Escape"},
        ForceSuccess(DoWhile(Sequence(SensorCheckBumped{"merge_bump_dir"}, key::mid_bump.erase(),
                                      BumpdirMerge{"${bump_dir}", "${merge_bump_dir}", "bump_dir"}),
                             IfThenElse(still_touching, GoBackwards{}, Frameout(frames, GoBackwards{})))),
        Stop{});
}

Node mark_place_of_bump()
{
    return IfThenElseStar(Sequence(key::initial_bump_pose.present(), within("150", "${initial_bump_pose}")),
                          key::ignore_middle_dock.flag(), key::ignore_middle_dock.erase());
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
