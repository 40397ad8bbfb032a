#include "trees/idioms.h"

// Turns the robot into the direction of the line it is about to clean. A bump makes the lines that were
// planned worthless: the robot backs off and forgets them.
TREE(FixOrientation)
{
    return Named("FixOrientation",
                 Sequence(SubtreeCondition{"Escape.xml"},
                          FallbackStar(Inverter(CheckClifBump{.out_bump_dir = "bump_dir"}),
                                       ForceFailure(SubtreeCondition{"Back2cm.xml"}),
                                       ForceFailure(key::next_line_to_clean_stack.erase())),
                          stop_for_cliff_sensors(),
                          FixOrientationNode{.target_point = "${fix_orientation_target_point}"}));
}
