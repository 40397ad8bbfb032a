#include "trees/dock/without_map.h"

namespace {

Node look_around()
{
    return ForceSuccess(Fallback(hears(ml, "Middle"), hears(mr, "Middle"),
                                 SequenceStar(key::turn_target_angle_dir.set("right"), turn_relative(),
                                              key::turn_target_angle_dir.set("left"), turn_relative())));
}

Node track()
{
    return Fallback(ForceFailure(update_charger_direction()), Sequence(InDockField{}, front_hears()),
                    go_toward_charger_with_find_center());
}

// Within the field, but off the line.
Node surround_charger()
{
    return Named("InDockFieldButLoseMiddle",
                 when(Sequence(Inverter(front_hears("Middle")), InDockField{}),
                      Named("SurroundCharger",
                            SequenceStar(find_best_direction(), SaySomething{"tq : need surround charger"},
                                         update_charger_direction(), surround_field_find_middle()))));
}

Node pass()
{
    return SequenceStar(optionally(key::full_round_turn_times.above(3), break_docking()),
                        RetryUntilSuccesful(1, turn_find_signal()), SaySomething{"tq : start track 1"},
                        Stop{}, key::full_round_turn_count.set(0), SaySomething{"tq : start track 2"},
                        track(), Stop{}, surround_charger(), SaySomething{"tq : start docking"},
                        final_approach_without_map());
}

}  // namespace

// The search for the dock without a map, by relative turns and what is heard at the moment.
TREE(SearchForChargerWithoutMap)
{
    return SequenceStar(
        key::final_dock_times.set(0), key::docking_try_times.set(0),
        without_sensor(
            "DockField",
            Repeat(-1, Named("SearchForCharger",
                             SequenceStar(key::docking_big_loop_break.set("false"),
                                          key::full_round_turn_times.set(0),
                                          key::turn_target_angle_relative.set_typed(45), look_around(),
                                          BB_Precondition(key::docking_big_loop_break, Loop(-1, pass())))))));
}
