#pragma once

/// Walls once more, after the lines: first along the ends of chains and the bound of the map, then around
/// each block.

#include "trees/coverage/line_start.h"

namespace vemra::trees {

/// Where the two forms differ.
struct WallPass
{
    Node find_outer;                 ///< the next wall of the outer stage
    Node find_inner;                 ///< the next block of the inner stage
    ExtendBlockPoint extend;         ///< to a point that touches the block
    MarkFollowWallMap mark_touched;  ///< beside the drive that touches
    Node wall_piece;                 ///< follows the wall that was touched
};

/// Both stages under their budget of frames.
Node wall_pass(const WallPass& pass);

/// A piece of wall, with what is told about it before and done after.
Node follow_wall_with_mark_map(const Node& piece);

/// Open the outer stage's log about the side of the wall: "1", at the search, or "2", at the piece.
Node say_side_of_wall(const char* where);

}  // namespace vemra::trees
