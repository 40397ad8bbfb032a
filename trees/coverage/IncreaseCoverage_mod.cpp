#include "trees/coverage/increase_coverage.h"

namespace {

// A trace that runs onto a chain ends the piece.
Node trace_wall()
{
    return Sequence(key::map_mask.set_typed(4),
                    MarkChainCheckOverlap{.chain_id = "${current_chain_id}",
                                          .follow_wall_right = "${follow_wall_dir}",
                                          .map_mask = "${map_mask}"},
                    FallbackStar(SubtreeCondition{"FollowWallProc"},
                                 ForceFailure(SequenceStar(NotTrapped{}, close_chain()))));
}

Node wall_piece()
{
    return with_sensor(
        "FollowWallVirtualWallMap",
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
        key::map_mask.kept(), key::chain_layer_id.kept(),
        SequenceStar(
            key::chain_layer_id.set_typed(1), key::current_clean_times_origin.set_typed(1),
            key::tof_reset_map.set(2),
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
