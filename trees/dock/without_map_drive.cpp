#include "trees/dock/drive_to_dock.h"
#include "trees/dock/without_map.h"

namespace vemra::trees {

namespace {

// --- along the signal ---------------------------------------------------------------------------

Node follow_signal()
{
    return Sequence(Inverter(any_bumper_bumped()),
                    IfThenElse(ConsistentlyLostDockSignal{}, SequenceStar(break_drive()),
                               Named("FollowDockSignal", Sequence(Inverter(hears(left, "Middle")),
                                                                  Inverter(hears(right, "Middle")),
                                                                  FollowDockSignalFindCenter{}))));
}

// --- a mirror -----------------------------------------------------------------------------------

// The sign of the angle is the side of the turn.
Node set_turn_dir_and_angle(const char* name)
{
    return Named(
        name, IfThenElseStar(
                  key::turn_to_charger_angle.above(0),
                  SequenceStar(key::turn_target_angle_dir.set("left"),
                               key::turn_target_angle_relative.set_typed(key::turn_to_charger_angle.value())),
                  SequenceStar(key::turn_target_angle_dir.set("right"),
                               key::turn_target_angle_relative.set_typed("-${turn_to_charger_angle}"))));
}

Node turn_back()
{
    return SequenceStar(
        SaySomething{"tq turn to bumped yaw"},
        IfThenElseStar(
            key::turn_angle_after_reflect.above(0),
            SequenceStar(key::turn_target_angle_dir.set("right"),
                         key::turn_target_angle_relative.set_typed(key::turn_angle_after_reflect.value())),
            SequenceStar(key::turn_target_angle_dir.set("left"),
                         key::turn_target_angle_relative.set_typed("-${turn_angle_after_reflect}"))),
        turn_relative());
}

Node follow_true_source()
{
    const auto got_field = Fallback(InDockField{}, hears(ml), hears(mr));
    return SequenceStar(
        IsGotReflectedSignal{"turn_angle_after_reflect"}, SaySomething{"tq ir strong reflect"},
        key::got_reflected_sig_flag.erase(), key::ignore_dock_filed_flag.flag(),
        ForceSuccess(Frameout(25, GoBackwards{})),
        key::turn_to_charger_angle.set_typed("${turn_angle_after_reflect}/2"),
        set_turn_dir_and_angle("SetTurnDirAndAngle"), Named("TryTurnToDock", guarded(turn_relative())),
        Named("TryTurnToDockWithSignalCheck",
              guarded(
                  Named("BreakAfterGotField",
                        Fallback(Sequence(got_field, key::got_reflected_sig_flag.flag()), turn_relative())))),
        IfThenElseStar(key::got_reflected_sig_flag.present(),
                       SequenceStar(drive_till_bump("80", "50", "50"), key::ignore_dock_filed_flag.erase()),
                       ForceFailure(SequenceStar(key::ignore_dock_filed_flag.erase(), turn_back()))));
}

Node turn_from_mirror()
{
    const auto turn = [](const char* degrees) {
        return SetBlackboardWithType{"turn_target_angle_relative", "float", degrees};
    };
    return Named(
        "IsGotReflectedSignal",
        IfThenElseStar(
            both("CentralRight", "CentralLeft"),
            ForceFailure(SequenceStar(
                SaySomething{"tq ir strong reflect"}, GenerateTurnDirWhenReflect{"turn_angle_after_reflect"},
                Named("SetTurnDir", IfThenElseStar(key::turn_angle_after_reflect.above(0),
                                                   key::turn_target_angle_dir.set("left"),
                                                   key::turn_target_angle_dir.set("right"))),
                turn("90"), turn_relative(), SaySomething{"tq start small turn"}, turn("30"),
                Fallback(both_hear(), turn_relative()), SaySomething{"tq end small turn"})),
            AlwaysFailure{}));
}

// --- an obstacle --------------------------------------------------------------------------------

Node arc_away(const char* left_mm_s, const char* right_mm_s, const char* frames)
{
    return drive_till_bump(frames, left_mm_s, right_mm_s);
}

Node avoid_obstacle()
{
    const auto to_left = IfThenElseStar(
        BumpdirMatch{"${bump_dir}", "left"},
        Named("ForwardLeftArcAfterTurn", SequenceStar(turn_by("right", "15"), arc_away("60", "100", "100"))),
        Named("TurnSmallAngleTowardCharger",
              SequenceStar(turn_by("left", "10"), arc_away("60", "100", "50"))));
    const auto to_right = IfThenElseStar(
        BumpdirMatch{"${bump_dir}", "right"},
        Named("ForwardRightArcAfterTurn", SequenceStar(turn_by("left", "15"), arc_away("100", "60", "100"))),
        Named("TurnSmallAngleTowardCharger",
              SequenceStar(turn_by("right", "10"), arc_away("100", "60", "50"))));
    return SubTree(
        "AvoidObstacle",
        optionally(
            back_off(SensorCheckBumped{""}, "20"), key::current_odom_yaw_deg.copy_to(key::initial_bump_yaw),
            Named("IgnoreVirtualWallBump", when(BumpdirMatch{"${bump_dir}", "virtual"}, AlwaysFailure{})),
            Named("SetFollowObstaccleDirection",
                  IfThenElseStar(key::charger_direction.present(),
                                 key::charger_direction.copy_to(key::follow_obstacle_dir),
                                 key::follow_obstacle_dir.set("right"))),
            IfThenElseStar(key::follow_obstacle_dir.is("left"), to_left, to_right)));
}

// --- the middle line at one side ----------------------------------------------------------------

Node turn_to_charger()
{
    const auto to_side =
        Named("SetRotateDiretion", IfThenElse(hears(left, "Middle"), key::turn_target_angle_dir.set("left"),
                                              key::turn_target_angle_dir.set("right")));
    const auto back = Named(
        "TurnToLastYaw", SequenceStar(IfThenElseStar(key::turn_target_angle_dir.is("left"),
                                                     key::turn_target_angle_dir.set("right"),
                                                     key::turn_target_angle_dir.set("left")),
                                      turn_relative(), drive_till_bump("50", "60", "60"), AlwaysFailure{}));
    return SequenceStar(
        Named("IsLeftOrRightGotMiddle", Fallback(hears(left, "Middle"), hears(right, "Middle"))),
        Named("TurnToCharger", SequenceStar(SaySomething{"tq : l or r got middle"}, to_side,
                                            key::turn_target_angle_relative.set_typed(90),
                                            Fallback(front_hears("Middle"), turn_relative()),
                                            IfThenElseStar(front_hears("Middle"), AlwaysSuccess{}, back))));
}

}  // namespace

Node go_toward_charger_with_find_center()
{
    const auto after_bump =
        SequenceStar(Bumped{"${bump_dir}"},
                     FallbackStar(BumpdirMatch{"${bump_dir}", "left"}, BumpdirMatch{"${bump_dir}", "middle"},
                                  BumpdirMatch{"${bump_dir}", "right"}),
                     Named("CheckWallOrAvoidObstacle", FallbackStar(follow_true_source(), avoid_obstacle())));
    return SubTree(
        "GoTowardChargerWithFindCenter",
        SequenceStar(drive_to_charger.scope(
            Loop(-1, FallbackStar(follow_signal(), after_bump, turn_to_charger(), turn_from_mirror())))));
}

}  // namespace vemra::trees
