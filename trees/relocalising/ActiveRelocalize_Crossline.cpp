#include "trees/relocalising/reloc.h"

// Finds the place on a stored map by a walk along a cross.
TREE(ActiveRelocalize_Crossline)
{
    return Sequence(ForceSuccess(SubtreeCondition{"EscapeCoat"}),
                    SequenceStar(key::relocalize_failed.set("false"), account_motion("Reloc"),
                                 key::reset_mop_line.set("true"),
                                 look_while_walking(row(walls_off(), dock_as_obstacle()),
                                                    SequenceStar(walk_cross(), walk_has_failed())),
                                 end_walk()));
}
