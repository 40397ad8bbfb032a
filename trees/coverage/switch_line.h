#pragma once

/// From one line to the next along a wall.

#include "trees/coverage/line_start.h"

namespace vemra::trees {

/// The side of the wall, and the rectangle that the piece may not leave.
inline Nodes set_up_wall_piece(const char* middle_of_line)
{
    return row(CalcSwitchLineFollowWallDirection{.is_rotate = "${gong_vertically}",
                                                 .middle_of_line = middle_of_line},
               CalcSwitchLineFollowWallAbortCondition{.is_rotate = "${gong_vertically}"});
}

}  // namespace vemra::trees
