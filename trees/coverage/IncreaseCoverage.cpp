#include "trees/coverage/increase_coverage.h"

namespace {

// The piece ends where it comes back to its own trace.
Node wall_piece()
{
    return with_sensor(
        "FollowWallVirtualWallMap",
        Sequence(ActionDecorator(SubtreeCondition{"Back2cm"}), SetMapDrawMode{.draw_mode = "Default"},
                 DoWhile(key::map_mask.kept(), traced_as("FollowWallWithMarkMap"),
                         Sequence(key::map_mask.set_typed(4),
                                  ParallelNode(3, MarkFollowWallMap{},
                                               FollowWallNotLooped{
                                                   .out_loop_num = "follow_wall_loop_num",
                                                   .base = "follow_trajectory",
                                                   .trace_start_index = "${subregion_trace_start_index}"},
                                               SequenceStar(SetMapDrawMode{.draw_mode = "Default"},
                                                            SubtreeCondition{"FollowWallProc.xml"}))))));
}

}  // namespace

// The earlier form, without chains.
TREE(IncreaseCoverage)
{
    return SequenceStar(key::current_clean_times_origin.set_typed(1), key::tof_reset_map.set(2),
                        wall_pass({.find_outer = search({.mode = "Bound"}),
                                   .find_inner = search({.mode = "Block"}),
                                   .extend = {.block_point = "${awesome_search_block}",
                                              .out_block_point = "navi_target_point",
                                              .source_point = "${current_coord}"},
                                   .mark_touched = {},
                                   .wall_piece = wall_piece()}));
}
