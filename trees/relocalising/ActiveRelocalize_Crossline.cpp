#include "trees/relocalising/reloc.h"

namespace {

Nodes leg(const char* offset_mm)
{
    return row(SetMapDrawMode{.draw_mode = "None"}, walk_leg(offset_mm));
}

Nodes back()
{
    return row(SetMapDrawMode{.draw_mode = "None"}, walk_to_center());
}

Node walk_cross()
{
    return SequenceStar(Delay{100}, note_place("crossline_center", "crossline_original_yaw"), leg("1000;0"),
                        leg("-1000;0"), back(), key::current_coord.copy_to(key::crossline_center),
                        leg("0;1000"), leg("0;-1000"), back(), turn_to("1", "${crossline_original_yaw}"),
                        Stop{}, walk_has_failed());
}

}  // namespace

// Finds the place on a stored map by a walk along a cross.
TREE(ActiveRelocalize_Crossline)
{
    return Sequence(
        ForceSuccess(SubtreeCondition{"EscapeCoat"}),
        SequenceStar(key::relocalize_failed.set("false"), account_motion("Reloc"),
                     key::reset_mop_line.set("true"),
                     look_while_walking(row(walls_off(), dock_as_obstacle()), walk_cross()), end_walk()));
}
