#include "trees/dock/without_map.h"

namespace vemra::trees {

namespace {

Node middle()
{
    return front_hears("Middle");
}

// On the right the stop test of the last turn is forced to fail, so that it runs to its end.
Node in_area_45()
{
    return Named("InArea45",
                 SequenceStar(optionally(front_hears(), turn_by("left", "80")),
                              Fallback(hears(right, "Middle"), drive_till_bump("150", "110", "80")),
                              IfThenElseStar(hears(right, "Middle"),
                                             Named("RightGotMiddle",
                                                   SequenceStar(turn_by_until(middle(), "right", "120"))),
                                             turn_by_until(ForceFailure(middle()), "right", "80")),
                              middle()));
}

Node turn_for_signal()
{
    return optionally(
        both("None", "None"),
        FallbackStar(
            Named("TryTurnLeft", SequenceStar(turn_by_until(front_hears(), "left", "20"), front_hears())),
            Named("TryTurnRight", SequenceStar(turn_by_until(front_hears(), "right", "40"), front_hears())),
            Named("FindFailedResetHeading", SequenceStar(turn_by("left", "20")))));
}

Node in_area_12()
{
    const auto choose_length =
        optionally(front_hears(),
                   IfThenElseStar(Fallback(hears(ml, "CentralLeft"), hears(mr, "CentralLeft")),
                                  key::forward_timeout.set(50), key::forward_timeout.set(100)),
                   turn_by("right", "80"));
    const auto two_turns = SequenceStar(
        Named("FirstStageTurnAvoidIrReflection", turn_by_until(middle(), "left", "40")),
        Named("FirstStageTurnAvoidOverTurn",
              Fallback(hears(ml, "Middle"), hears(mr, "Middle"), both_hear(), turn_by("left", "40"))));
    return Named("InArea12",
                 SequenceStar(key::forward_timeout.set(100), choose_length,
                              Fallback(hears(left, "Middle"), Sequence(InDockField{}, middle()),
                                       drive_till_bump("${forward_timeout}", "80", "110")),
                              IfThenElseStar(hears(left, "Middle"),
                                             Named("LeftGotMiddle",
                                                   SequenceStar(turn_by_until(middle(), "left", "120"))),
                                             two_turns),
                              turn_for_signal(), middle()));
}

Node bumped_while_surround()
{
    const auto turn_back =
        Named("TurnToChargerIfHeadLoseSig",
              IfThenElseStar(front_hears(), AlwaysSuccess{},
                             SequenceStar(IfThenElseStar(key::charger_direction.is("left"),
                                                         key::turn_target_angle_dir.set("left"),
                                                         key::turn_target_angle_dir.set("right")),
                                          key::turn_target_angle_relative.set_typed(90),
                                          Fallback(both_hear(), turn_relative()))));
    return Named(
        "BumpedWhileSurround",
        IfThenElseStar(SensorCheckBumped{"bump_dir"},
                       Named("TurnToChargerReTrackForAwhile",
                             SequenceStar(SaySomething{"tq : bumped when surround"},
                                          ForceSuccess(Frameout(20, GoBackwards{})), turn_back,
                                          Fallback(hears(ml, "Middle"), hears(mr, "Middle"),
                                                   Frameout(100, go_toward_charger_with_find_center())))),
                       AlwaysFailure{}));
}

}  // namespace

Node surround_field_find_middle()
{
    const auto by_side = FallbackStar(
        SequenceStar(key::charger_direction.is("right"), SaySomething{"tq : on right"}, in_area_45()),
        SequenceStar(key::charger_direction.is("left"), SaySomething{"tq : on left"}, in_area_12()));
    return SubTree(
        "SurroundFieldFindMiddle",
        SequenceStar(key::find_middle_flag.set("false"),
                     ForceSuccess(BB_Precondition(
                         key::find_middle_flag,
                         RetryUntilSuccesful(
                             30, FallbackStar(Sequence(middle(), InDockField{}),
                                              Sequence(both("CentralLeft", "CentralRight"), InDockField{}),
                                              by_side, bumped_while_surround()))))));
}

}  // namespace vemra::trees
