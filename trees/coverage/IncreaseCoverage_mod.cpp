#include "trees/coverage/increase_coverage.h"

namespace {

// A trace that runs onto a chain ends the piece.
Node trace_wall()
{
    return Sequence(SetBlackboardWithType{"map_mask", "int", "4"},
                    MarkChainCheckOverlap{.chain_id = "${current_chain_id}",
                                          .follow_wall_right = "${follow_wall_dir}",
                                          .map_mask = "${map_mask}"},
                    FallbackStar(SubtreeCondition{"FollowWallProc"},
                                 ForceFailure(SequenceStar(NotTrapped{}, close_chain()))));
}

Node wall_piece()
{
    return DoWhile(
        sense("FollowWallVirtualWallMap", "false"),
        Sequence(
            ActionDecorator(SubtreeCondition{"Back2cm"}), SetMapDrawMode{.draw_mode = "Default"},
            DoWhile(MarkFollowWallMap{"${map_mask}"}, traced_as("FollowWallWithMarkMap"), trace_wall())));
}

Node find_outer()
{
    return FallbackStar(
        SequenceStar(search({.mode = "Chain", .region = "${current_subregion}"}), say_side_of_wall("1")),
        search({.mode = "Bound"}));
}

}  // namespace

// Walls once more, after the lines, under a budget of frames.
TREE(IncreaseCoverage_mod)
{
    return DoWhile(
        StackBlackboard{"map_mask"}, StackBlackboard{"chain_layer_id"},
        SequenceStar(
            SetBlackboardWithType{"chain_layer_id", "int", "1"},
            SetBlackboardWithType{"current_clean_times_origin", "int", "1"},
            SetBlackboard{"tof_reset_map", "2"},
            wall_pass({.find_outer = find_outer(),
                       .find_inner = SequenceStar(search({.mode = "Block"}),
                                                  IsPointOutOfAllChainRegion{"${navi_target_point}"}),
                       .extend = {.block_point = "${awesome_search_block}",
                                  .out_block_point = "navi_target_point",
                                  .source_point = "${current_coord}",
                                  .map_mask = "${map_mask}",
                                  .region = "${current_subregion}"},
                       .mark_touched = {""},
                       .wall_piece = wall_piece()})));
}
