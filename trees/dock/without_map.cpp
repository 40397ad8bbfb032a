#include "trees/dock/without_map.h"

namespace vemra::trees {

namespace {

Node odom_yaw_above(const char* limit)
{
    return key::current_odom_yaw_deg.above(limit);
}

Node odom_yaw_below(const char* limit)
{
    return key::current_odom_yaw_deg.below(limit);
}

}  // namespace

// --- turns --------------------------------------------------------------------------------------

Node turn_relative()
{
    const auto to_left = key::turn_target_angle_dir.is("left");
    return SubTree(
        "TurnToTargetAngle",
        RetryUntilSuccesful(
            1,
            SequenceStar(SaySomething{"${turn_target_angle_relative}"},
                         IfThenElseStar(to_left,
                                        key::current_odom_yaw_deg.plus(
                                            key::turn_target_angle_relative.value(), key::target_angle_temp),
                                        key::current_odom_yaw_deg.plus("-${turn_target_angle_relative}",
                                                                       key::target_angle_temp)),
                         SaySomething{"${target_angle_temp}"},
                         guarded(IfThenElse(
                             to_left, Fallback(odom_yaw_above("${target_angle_temp}"), wheels("-80", "80")),
                             Fallback(odom_yaw_below("${target_angle_temp}"), wheels("80", "-80")))))));
}

Node turn_by(const char* side, const char* degrees)
{
    return SequenceStar(key::turn_target_angle_dir.set(side),
                        key::turn_target_angle_relative.set_typed(degrees), turn_relative());
}

// --- the hunt for a signal ----------------------------------------------------------------------

namespace {

Node end_hunt_when_heard()
{
    return SequenceStar(front_hears(), BreakKey{key::rotate_find_charger}.leave());
}

Node count_round()
{
    const auto passed =
        IfThenElseStar(key::turn_dir_find_signal.is("left"), odom_yaw_above("${initial_rotate_yaw_deg}+360"),
                       odom_yaw_below("${initial_rotate_yaw_deg}-360"));
    return SequenceStar(passed, key::current_odom_yaw_deg.copy_to(key::initial_rotate_yaw_deg),
                        key::full_round_turn_times.plus(1), key::full_round_turn_count.plus(1));
}

Node give_up_after_two_rounds()
{
    return SequenceStar(key::full_round_turn_count.above(1), SaySomething{"tq: bigger than"},
                        key::rotate_find_charger.set("true"));
}

}  // namespace

Node turn_find_signal()
{
    const auto turn_on_the_spot =
        IfThenElse(key::turn_dir_find_signal.is("left"), wheels("-80", "80"), wheels("80", "-80"));
    return SubTree(
        "TurnFindSignalMlAndMrAllGot",
        FallbackStar(
            both_hear(),
            SequenceStar(
                key::current_odom_yaw_deg.copy_to(key::initial_rotate_yaw_deg),
                IfThenElseStar(Fallback(hears(left), hears(ml)), key::turn_dir_find_signal.set("left"),
                               key::turn_dir_find_signal.set("right")),
                key::rotate_find_charger.set("false"), key::full_round_turn_count.set(0),
                ForceSuccess(BB_Precondition(key::rotate_find_charger,
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
    return SubTree(
        "UpdateChargerDirection",
        optionally(front_hears(), choose({{heard_on(left_side), key::charger_direction.set("left")},
                                          {heard_on(right_side), key::charger_direction.set("right")}})));
}

Node any_bumper_bumped()
{
    return SubTree("IsAnyBumperBumped", Sequence(SensorCheckBumped{"bump_dir"},
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
                  key::current_odom_yaw_deg.copy_to(key::best_yaw_towards_charger),
                  BlackboardCopy{"current_odom_yaw_deg", to_right},
                  BlackboardCopy{"current_odom_yaw_deg", to_left},
                  DoWhile(note_best_heading(to_right), turn_by("right", "45")), Stop{},
                  DoWhile(note_best_heading(to_left), turn_by("left", "90")), Stop{},
                  SaySomething{"tq : find end"},
                  key::best_yaw_towards_charger_right_find.plus(
                      key::best_yaw_towards_charger_left_find.value(), key::final_best_yaw),
                  key::final_best_yaw.set_typed("${final_best_yaw}/2"),
                  key::current_odom_yaw_deg.plus("-${final_best_yaw}", key::turn_target_angle_relative),
                  key::turn_target_angle_dir.set("right"), turn_relative(), Stop{},
                  ForceSuccess(Frameout(50, guarded(wheels("70", "70")))))));
}

// --- the final approach -------------------------------------------------------------------------

Node final_approach_without_map()
{
    const auto follow = Sequence(no_bump(), Inverter(ConsistentlyLostDockSignal{}),
                                 IfThenElseStar(Frameout(3000, FollowDockSignalFinal{}), AlwaysSuccess{},
                                                ForceFailure(key::final_dock_failure.flag())));
    const auto bumped_or_out_of_time =
        FallbackStar(Bumped{"${bump_dir}"}, SequenceStar(key::final_dock_failure.take(), break_docking()));
    const auto back_and_count =
        ForceFailure(SequenceStar(optionally(key::final_dock_times.above(4), break_docking()),
                                  drive_for("150", "-70", "-70"), key::final_dock_times.plus(1)));
    return FallbackStar(
        docking({.scanner_off = true, .cliff_off = true, .follow = follow}),
        IfThenElseStar(bumped_or_out_of_time, back_and_count, ForceFailure(key::final_dock_times.set(0))));
}

}  // namespace vemra::trees
