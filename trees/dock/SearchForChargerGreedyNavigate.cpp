#include "trees/dock/greedy.h"

// Gets past the obstacle of the last bump within the rectangle laid around it.
TREE(SearchForChargerGreedyNavigate)
{
    return SequenceStar(
        MoveThroughWalls{.out_point = "navi_target_point", .pose = "${initial_bump_pose}"},
        MakeMap{.roi = "${navigate_limit}"},
        IfThenElseStar(key::follow_wall_dir.present(), key::follow_wall_dir.copy_to(key::follow_wall_dir_bak),
                       key::follow_wall_dir_bak.erase()),
        walk_within_limit({.cycles = "3", .arrival_mm = "200", .draws_blocks_last = false}),
        optionally(key::follow_wall_dir_bak.present(),
                   key::follow_wall_dir_bak.copy_to(key::follow_wall_dir)),
        goal_within("200"));
}
