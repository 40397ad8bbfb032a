#include "trees/dock/without_map.h"

namespace vemra::trees {

namespace {

Node odom_yaw_above(const char* limit)
{
    return IsAGreaterThanBFloat{"${current_odom_yaw_deg}", limit};
}

Node odom_yaw_below(const char* limit)
{
    return IsAGreaterThanBFloat{limit, "${current_odom_yaw_deg}"};
}

}  // namespace

// --- turns --------------------------------------------------------------------------------------

Node turn_relative()
{
    const auto to_left = key_is("turn_target_angle_dir", "left");
    return SubTree(
        "TurnToTargetAngle",
        RetryUntilSuccesful(
            1,
            SequenceStar(
                SaySomething{"${turn_target_angle_relative}"},
                IfThenElseStar(
                    to_left,
                    FloatAdd{"${current_odom_yaw_deg}", "${turn_target_angle_relative}", "target_angle_temp"},
                    FloatAdd{"${current_odom_yaw_deg}", "-${turn_target_angle_relative}",
                             "target_angle_temp"}),
                SaySomething{"${target_angle_temp}"},
                Sequence(
                    SubtreeCondition{"Escape"},
                    IfThenElse(to_left, Fallback(odom_yaw_above("${target_angle_temp}"), wheels("-80", "80")),
                               Fallback(odom_yaw_below("${target_angle_temp}"), wheels("80", "-80")))))));
}

Node turn_by(const char* side, const char* degrees)
{
    return SequenceStar(SetBlackboard{"turn_target_angle_dir", side},
                        SetBlackboardWithType{"turn_target_angle_relative", "float", degrees},
                        turn_relative());
}

// --- the hunt for a signal ----------------------------------------------------------------------

namespace {

Node end_hunt_when_heard()
{
    return SequenceStar(front_hears(), leave("rotate_find_charger"));
}

Node count_round()
{
    const auto passed = IfThenElseStar(key_is("turn_dir_find_signal", "left"),
                                       odom_yaw_above("${initial_rotate_yaw_deg}+360"),
                                       odom_yaw_below("${initial_rotate_yaw_deg}-360"));
    return SequenceStar(passed, BlackboardCopy{"current_odom_yaw_deg", "initial_rotate_yaw_deg"},
                        IntAdd{"${full_round_turn_times}", "1", "full_round_turn_times"},
                        IntAdd{"${full_round_turn_count}", "1", "full_round_turn_count"});
}

Node give_up_after_two_rounds()
{
    return SequenceStar(IsAGreaterThanBInt{"${full_round_turn_count}", "1"}, SaySomething{"tq: bigger than"},
                        SetBlackboard{"rotate_find_charger", "true"});
}

}  // namespace

Node turn_find_signal()
{
    const auto turn_on_the_spot =
        IfThenElse(key_is("turn_dir_find_signal", "left"), wheels("-80", "80"), wheels("80", "-80"));
    return SubTree(
        "TurnFindSignalMlAndMrAllGot",
        FallbackStar(
            both_hear(),
            SequenceStar(
                BlackboardCopy{"current_odom_yaw_deg", "initial_rotate_yaw_deg"},
                IfThenElseStar(Fallback(hears(left), hears(ml)),
                               SetBlackboard{"turn_dir_find_signal", "left"},
                               SetBlackboard{"turn_dir_find_signal", "right"}),
                SetBlackboard{"rotate_find_charger", "false"}, SetBlackboard{"full_round_turn_count", "0"},
                ForceSuccess(BB_Precondition("rotate_find_charger",
                                             DoWhile(end_hunt_when_heard(), count_round(), turn_on_the_spot,
                                                     give_up_after_two_rounds(), ForceRunning{}))),
                front_hears())));
}

Node update_charger_direction()
{
    const auto heard_on = [](const Side& side) {
        return Fallback(hears(ml, side.side_signal), hears(ml, side.central_signal),
                        hears(mr, side.side_signal), hears(mr, side.central_signal));
    };
    return SubTree("UpdateChargerDirection",
                   optionally(front_hears(),
                              choose({{heard_on(left_side), SetBlackboard{"charger_direction", "left"}},
                                      {heard_on(right_side), SetBlackboard{"charger_direction", "right"}}})));
}

Node any_bumper_bumped()
{
    return SubTree("IsAnyBumperBumped", SequenceStar(SensorCheckBumped{"bump_dir"},
                                                     FallbackStar(BumpdirMatch{"${bump_dir}", "left"},
                                                                  BumpdirMatch{"${bump_dir}", "middle"},
                                                                  BumpdirMatch{"${bump_dir}", "right"})));
}

// --- the best heading ---------------------------------------------------------------------------

namespace {

Node note_best_heading(const char* key)
{
    return SequenceStar(InDockField{}, hears(ml), hears(mr), BlackboardCopy{"current_odom_yaw_deg", key});
}

}  // namespace

Node find_best_direction()
{
    constexpr const char* to_right = "best_yaw_towards_charger_right_find";
    constexpr const char* to_left = "best_yaw_towards_charger_left_find";
    return SubTree(
        "FindBestDirectionTowardsToCharger",
        Named("FindBestDirection",
              SequenceStar(
                  BlackboardCopy{"current_odom_yaw_deg", "best_yaw_towards_charger"},
                  BlackboardCopy{"current_odom_yaw_deg", to_right},
                  BlackboardCopy{"current_odom_yaw_deg", to_left},
                  DoWhile(note_best_heading(to_right), turn_by("right", "45")), Stop{},
                  DoWhile(note_best_heading(to_left), turn_by("left", "90")), Stop{},
                  SaySomething{"tq : find end"},
                  FloatAdd{"${best_yaw_towards_charger_right_find}", "${best_yaw_towards_charger_left_find}",
                           "final_best_yaw"},
                  SetBlackboardWithType{"final_best_yaw", "float", "${final_best_yaw}/2"},
                  FloatAdd{"${current_odom_yaw_deg}", "-${final_best_yaw}", "turn_target_angle_relative"},
                  SetBlackboard{"turn_target_angle_dir", "right"}, turn_relative(), Stop{},
                  ForceSuccess(Frameout(50, Sequence(SubtreeCondition{"Escape"}, wheels("70", "70")))))));
}

// --- the final approach -------------------------------------------------------------------------

Node final_approach_without_map()
{
    const auto follow = Sequence(no_bump(), Inverter(ConsistentlyLostDockSignal{}),
                                 IfThenElseStar(Frameout(3000, FollowDockSignalFinal{}), AlwaysSuccess{},
                                                ForceFailure(set_flag("final_dock_failure"))));
    const auto bumped_or_out_of_time = FallbackStar(
        Bumped{"${bump_dir}"},
        SequenceStar(present("final_dock_failure"), erase("final_dock_failure"), break_docking()));
    const auto back_and_count = ForceFailure(
        SequenceStar(optionally(IsAGreaterThanBInt{"${final_dock_times}", "4"}, break_docking()),
                     drive_for("150", "-70", "-70"), IntAdd{"${final_dock_times}", "1", "final_dock_times"}));
    return FallbackStar(docking({.scanner_off = true, .cliff_off = true, .follow = follow}),
                        IfThenElseStar(bumped_or_out_of_time, back_and_count,
                                       ForceFailure(SetBlackboard{"final_dock_times", "0"})));
}

}  // namespace vemra::trees
