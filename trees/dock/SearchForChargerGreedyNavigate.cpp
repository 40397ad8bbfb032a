#include "trees/dock/greedy.h"

// Gets past the obstacle of the last bump within the rectangle laid around it.
TREE(SearchForChargerGreedyNavigate)
{
    return SequenceStar(
        MoveThroughWalls{.out_point = "navi_target_point", .pose = "${initial_bump_pose}"},
        MakeMap{.roi = "${navigate_limit}"},
        IfThenElseStar(present("follow_wall_dir"), BlackboardCopy{"follow_wall_dir", "follow_wall_dir_bak"},
                       erase("follow_wall_dir_bak")),
        walk_within_limit({.cycles = "3", .arrival_mm = "200", .draws_blocks_last = false}),
        optionally(present("follow_wall_dir_bak"), BlackboardCopy{"follow_wall_dir_bak", "follow_wall_dir"}),
        goal_within("200"));
}
