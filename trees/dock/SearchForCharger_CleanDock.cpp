#include "trees/dock/docking_clean_dock.h"
#include "trees/dock/drive_to_dock.h"

namespace {

Node leave_field()
{
    return IfThenElseStar(
        SequenceStar(key::marker_in_dock_field.holds("true"), key::first_time_search.present(),
                     Inverter(charger_is_known())),
        turn_away_and(without_sensor("DockField", FallbackStar(drive_unless_bumped("125", "120", "120"),
                                                               SubtreeCondition{"Back2cm.xml"}))),
        AlwaysSuccess{});
}

Node heard_in_field()
{
    return Sequence(key::ignore_dock_filed_flag.absent(), InDockField{}, front_hears());
}

// --- too close to the dock ----------------------------------------------------------------------

Node feel_for_field(const char* angle_deg)
{
    return turn_until(Sequence(InDockField{}, key::near_to_dock_field_flag.flag()), angle_deg, "45");
}

Node too_close_when_startup()
{
    return SubTree(
        "IsTooCloseToDockWhenStartup",
        SequenceStar(nearer_than("600"), key::near_to_dock_field_flag.erase(), feel_for_field("15"),
                     feel_for_field("-30"), feel_for_field("15"), key::near_to_dock_field_flag.take(),
                     SaySomething{"tq : near to dock field"}));
}

Node move_away_from_dock()
{
    return SubTree("MoveAwayFromDock",
                   SequenceStar(SaySomething{"tq : too close to dock"}, half_turn("180", "60"),
                                drive_till_bump("125", "120", "120"),
                                IfThenElseStar(Bumped{"${bump_dir}"}, back2cm(), AlwaysSuccess{}),
                                half_turn("180", "60"), SaySomething{"tq move end"}));
}

// --- a signal that came by a mirror -------------------------------------------------------------

Node turn_half_back_and_look()
{
    const auto got_field = Fallback(InDockField{}, hears(ml), hears(mr));
    return SequenceStar(Named("TryTurnToDock", guarded(Rotate{.angle_deg = "${turn_to_charger_angle}",
                                                              .angular_velocity_deg_s = "60",
                                                              .false_relative_true_absolute = "false"})),
                        Named("TryTurnToDockWithSignalCheck",
                              guarded(Named("BreakAfterGotField",
                                            Fallback(Sequence(got_field, key::got_reflected_sig_flag.flag()),
                                                     Rotate{.angle_deg = "${turn_to_charger_angle}",
                                                            .angular_velocity_deg_s = "35",
                                                            .false_relative_true_absolute = "false"})))));
}

Node follow_true_source()
{
    return SequenceStar(
        IsGotReflectedSignal{"turn_angle_after_reflect"}, SaySomething{"tq ir strong reflect"},
        key::got_reflected_sig_flag.erase(), key::ignore_dock_filed_flag.flag(),
        ForceSuccess(Frameout(25, GoBackwards{})),
        key::turn_to_charger_angle.set_typed("${turn_angle_after_reflect}/2"), turn_half_back_and_look(),
        IfThenElseStar(key::got_reflected_sig_flag.present(),
                       SequenceStar(drive_till_bump("80", "50", "50"), key::ignore_dock_filed_flag.erase()),
                       ForceFailure(SequenceStar(key::ignore_dock_filed_flag.erase(),
                                                 SaySomething{"tq turn to bumped yaw"},
                                                 guarded_turn("-${turn_angle_after_reflect}", 80)))));
}

// The sectors are heard crosswise: that is a mirror, too.
Node turn_from_mirror()
{
    const auto turn_by = [](const char* first, const char* then) {
        return SequenceStar(guarded_turn(first, 60), turn_until(Sequence(hears(ml), hears(mr)), then, "60"));
    };
    return IfThenElseStar(
        both("CentralRight", "CentralLeft"),
        ForceFailure(SequenceStar(SaySomething{"tq ir strong reflect"},
                                  GenerateTurnDirWhenReflect{"turn_angle_after_reflect"},
                                  IfThenElseStar(key::turn_angle_after_reflect.above(0), turn_by("90", "30"),
                                                 turn_by("-90", "-30")))),
        AlwaysFailure{});
}

// --- the drive ----------------------------------------------------------------------------------

Node arc_heard(const Sense& sense)
{
    return hears(sense.front_receiver);
}

Node avoid_obstacle()
{
    return SubTree(
        "GoTowardChargerFirstArc",
        SequenceStar(SetMapDrawMode{.draw_mode = "BlockOnly"}, Delay{1},
                     back_off(SensorCheckBumped{""}, "20"), mark_place_of_bump(),
                     first_arc({}, {80, -50, "120", "120", "190"}, {30, -35, "60", "85", "155"}, arc_heard)));
}

Node follow_signal()
{
    return Sequence(
        no_bump(), SaySomething{"tolvar goto ing"},
        IfThenElse(ConsistentlyLostDockSignal{}, SequenceStar(break_drive()), FollowDockSignalFindCenter{}));
}

Node after_bump()
{
    return IfThenElseStar(
        Bumped{"${bump_dir}"},
        FallbackStar(follow_true_source(), ForceFailure(key::ignore_dock_filed_flag.erase()),
                     avoid_obstacle(), SubtreeCondition{"ThroughObstacleNavigation"},
                     SequenceStar(break_drive())),
        turn_from_mirror());
}

Node find_signal_again()
{
    return optionally(Inverter(hears("Any")), SaySomething{"tq : turn find failed refind"},
                      Fallback(hears(ml), hears(mr),
                               Rotate{.angle_deg = "720",
                                      .angular_velocity_deg_s = "30",
                                      .false_relative_true_absolute = "false"}));
}

Node go_toward_charger()
{
    return SubTree(
        "GoTowardCharger",
        SequenceStar(turn_to_charger("80"), optionally(too_close_when_startup(), move_away_from_dock()),
                     find_signal_again(),
                     drive_to_charger.scope(Loop(-1, FallbackStar(follow_signal(), after_bump())))));
}

Node cycle()
{
    return searching_cycle(leave_field(), heard_in_field(), go_toward_charger(), docking_loop_clean_dock());
}

}  // namespace

// The search for a dock that the robot comes up to head first and enters backwards.
TREE(SearchForCharger_CleanDock)
{
    return without_sensor(
        "DockField", sensor_off("LaserTofPointcloud"),
        Named("SearchForCharger",
              SequenceStar(begin_search(row(SaySomething{"tolvar dock direct"}, key::dock_final_back.erase(),
                                            key::search_charger_time.set(0))),
                           Repeat(-1, cycle()))));
}
