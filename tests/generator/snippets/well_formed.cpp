#include "description/tree.h"

TREE(Snippet)
{
    return DoWhile(
        IntAdd{.int_a = "${Cnt}", .int_b = 1, .out_sum = "Cnt"},
        IfThenElse(BlackboardContains{"kicked"}, Named("back", Frameout("${check_cnt}", GoBackwards{})),
                   SubTree("Turn", Inverter(Rotate{.angle_deg = "-${turn_angle}"}))));
}
