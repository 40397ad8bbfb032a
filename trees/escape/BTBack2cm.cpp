#include "trees/idioms.h"

namespace {

Node touching()
{
    return SensorCheckBumped{.out_bump_dir = ""};
}

// What else the bumper meets on the way back belongs to the same collision.
Node gather_directions()
{
    return Sequence(
        SensorCheckBumped{.out_bump_dir = "merge_bump_dir"},
        BumpdirMerge{.bumpdir1 = "${bump_dir}", .bumpdir2 = "${merge_bump_dir}", .out_bumpdir = "bump_dir"});
}

// Until the bumper is free and five frames more. A new touch in these starts their count afresh.
Node back_until_free()
{
    return IfThenElse(touching(), GoBackwards{}, Frameout(5, GoBackwards{}));
}

}  // namespace

// Backs off from a collision: far enough to be free, which is some two centimetres and is not measured. The
// obstacle goes onto the map, the ground driven over does not. With nothing pressed the robot only stops.
TREE(BTBack2cm)
{
    return SequenceStar(
        Stop{}, SetMapDrawMode{.draw_mode = "BlockOnly"}, Delay{1},
        FallbackStar(Inverter(touching()),
                     Named("Back2cm",
                           Sequence(ForceSuccess(DoWhile(gather_directions(), back_until_free())), Stop{}))));
}
