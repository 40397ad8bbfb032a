#include "description/keys.h"

TREE(Snippet)
{
    return DoWhile(
        key::full_round_turn_times.plus(1), key::current_yaw_deg.plus(30, key::target_angle_temp),
        IfThenElse(BlackboardContains{"kicked"}, Named("back", Frameout("${check_cnt}", GoBackwards{})),
                   Sequence(key::kicked.take(), key::follow_wall_dir.holds("true"),
                            SubTree("Turn", Inverter(Rotate{.angle_deg = "-${turn_angle}"})))));
}
