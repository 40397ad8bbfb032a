// What the language refuses, one at a time: the build names the one (CMakeLists.txt).
#include "description/keys.h"

TREE(Snippet)
{
#if defined(well_formed)
    return DoWhile(
        key::full_round_turn_times.plus(1), key::current_yaw_deg.plus(30, key::target_angle_temp),
        IfThenElse(BlackboardContains{"kicked"}, Named("back", Frameout("${check_cnt}", GoBackwards{})),
                   Sequence(key::kicked.take(), key::follow_wall_dir.holds("true"),
                            SubTree("Turn", Inverter(Rotate{.angle_deg = "-${turn_angle}"})))));
#elif defined(misspelt_leaf)
    return Sequence(BlackboardContain{"finish_escape"}, GoBackwards{});
#elif defined(misspelt_port)
    return Rotate{.angle_degrees = 90};
#elif defined(misspelt_key)
    return key::task_sate.is("init");
#elif defined(verb_of_another_type)
    return key::task_state.above(3);
#elif defined(truth_as_port)
    return BoolMatch{.bool_a = true, .bool_b = "true"};
#elif defined(fraction_as_port)
    return Rotate{.angle_deg = 22.5};
#elif defined(choice_without_else)
    return IfThenElse(BlackboardContains{"kicked"}, GoBackwards{});
#elif defined(decorator_with_two_children)
    return Inverter(BlackboardContains{"kicked"}, BlackboardContains{"trapped"});
#elif defined(sequence_without_children)
    return ForceSuccess(Sequence());
#endif
}
