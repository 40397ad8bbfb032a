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
    return Named(name,
                 IfThenElseStar(IsAGreaterThanBFloat{"${turn_to_charger_angle}", "0"},
                                SequenceStar(SetBlackboard{"turn_target_angle_dir", "left"},
                                             SetBlackboardWithType{"turn_target_angle_relative", "float",
                                                                   "${turn_to_charger_angle}"}),
                                SequenceStar(SetBlackboard{"turn_target_angle_dir", "right"},
                                             SetBlackboardWithType{"turn_target_angle_relative", "float",
                                                                   "-${turn_to_charger_angle}"})));
}

Node turn_back()
{
    return SequenceStar(
        SaySomething{"tq turn to bumped yaw"},
        IfThenElseStar(IsAGreaterThanBFloat{"${turn_angle_after_reflect}", "0"},
                       SequenceStar(SetBlackboard{"turn_target_angle_dir", "right"},
                                    SetBlackboardWithType{"turn_target_angle_relative", "float",
                                                          "${turn_angle_after_reflect}"}),
                       SequenceStar(SetBlackboard{"turn_target_angle_dir", "left"},
                                    SetBlackboardWithType{"turn_target_angle_relative", "float",
                                                          "-${turn_angle_after_reflect}"})),
        turn_relative());
}

Node follow_true_source()
{
    const auto got_field = Fallback(InDockField{}, hears(ml), hears(mr));
    return SequenceStar(
        IsGotReflectedSignal{"turn_angle_after_reflect"}, erase("got_reflected_sig_flag"),
        set_flag("ignore_dock_filed_flag"), ForceSuccess(Frameout(25, GoBackwards{})),
        SetBlackboardWithType{"turn_to_charger_angle", "float", "${turn_angle_after_reflect}/2"},
        set_turn_dir_and_angle("SetTurnDirAndAngle"),
        Named("TryTurnToDockWithSignalCheck",
              Sequence(
                  SubtreeCondition{"Escape"},
                  Named("BreakAfterGotField",
                        Fallback(Sequence(got_field, set_flag("got_reflected_sig_flag")), turn_relative())))),
        IfThenElseStar(present("got_reflected_sig_flag"),
                       SequenceStar(drive_till_bump("80", "50", "50"), erase("ignore_dock_filed_flag")),
                       ForceFailure(SequenceStar(erase("ignore_dock_filed_flag"), turn_back()))));
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
                Named("SetTurnDir", IfThenElseStar(IsAGreaterThanBFloat{"${turn_angle_after_reflect}", "0"},
                                                   SetBlackboard{"turn_target_angle_dir", "left"},
                                                   SetBlackboard{"turn_target_angle_dir", "right"})),
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
            back_off(SensorCheckBumped{""}, "20"), BlackboardCopy{"current_odom_yaw_deg", "initial_bump_yaw"},
            Named("IgnoreVirtualWallBump",
                  IfThenElseStar(BumpdirMatch{"${bump_dir}", "virtual"}, AlwaysFailure{}, AlwaysSuccess{})),
            Named("SetFollowObstaccleDirection",
                  IfThenElseStar(present("charger_direction"),
                                 BlackboardCopy{"charger_direction", "follow_obstacle_dir"},
                                 SetBlackboard{"follow_obstacle_dir", "right"})),
            IfThenElseStar(key_is("follow_obstacle_dir", "left"), to_left, to_right)));
}

// --- the middle line at one side ----------------------------------------------------------------

Node turn_to_charger()
{
    const auto to_side = Named(
        "SetRotateDiretion", IfThenElse(hears(left, "Middle"), SetBlackboard{"turn_target_angle_dir", "left"},
                                        SetBlackboard{"turn_target_angle_dir", "right"}));
    const auto back = Named(
        "TurnToLastYaw", SequenceStar(IfThenElseStar(key_is("turn_target_angle_dir", "left"),
                                                     SetBlackboard{"turn_target_angle_dir", "right"},
                                                     SetBlackboard{"turn_target_angle_dir", "left"}),
                                      turn_relative(), drive_till_bump("50", "60", "60"), AlwaysFailure{}));
    return SequenceStar(
        Named("IsLeftOrRightGotMiddle", Fallback(hears(left, "Middle"), hears(right, "Middle"))),
        Named("TurnToCharger",
              SequenceStar(SaySomething{"tq : l or r got middle"}, to_side,
                           SetBlackboardWithType{"turn_target_angle_relative", "float", "90"},
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
    return SubTree("GoTowardChargerWithFindCenter",
                   SequenceStar(until_left("go_toward_charger_loop_break",
                                           Loop(-1, FallbackStar(follow_signal(), after_bump,
                                                                 turn_to_charger(), turn_from_mirror())))));
}

}  // namespace vemra::trees
