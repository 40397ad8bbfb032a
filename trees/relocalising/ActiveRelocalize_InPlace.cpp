#include "trees/relocalising/reloc.h"

namespace {

Node settle()
{
    return SequenceStar(Stop{}, account_motion("Stop"), key::tof_reset_map.set(1));
}

}  // namespace

// The same from where the robot stands.
TREE(ActiveRelocalize_InPlace)
{
    return SequenceStar(Delay{150}, key::reset_mop_line.set("true"), account_motion("Reloc"),
                        SetMapDrawMode{.draw_mode = "None"},
                        IfThenElseStar(DoWhile(walls_off(), SequenceStar(Delay{100}), SlamActiveRelocalize{}),
                                       settle(), ForceFailure(settle())));
}
