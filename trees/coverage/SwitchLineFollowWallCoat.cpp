#include "trees/coverage/switch_line.h"

// A wall piece that must end on the next line.
TREE(SwitchLineFollowWallCoat)
{
    return SequenceStar(set_up_wall_piece("false"), key::bump_dir_save.copy_to(key::bump_dir),
                        DoWhile(traced_as("SwitchLineFollowWall"),
                                ForceSuccess(SubtreeCondition{"SwitchLineFollowWall.xml"})),
                        near_line("0"));
}
