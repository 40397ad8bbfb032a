#pragma once

/// The earlier planners: lines first, and walls only to get from one line to the next.

#include "trees/coverage/switch_line.h"

namespace vemra::trees {

/// Where the two differ.
struct LinesFirst
{
    Node plan_from_here;
    Node plan_from_floor;    ///< from the floor that a flood search found
    Nodes watch_to_start{};  ///< beside the move to a line
    Node on_line;            ///< what gets the robot to the start of a line on which it stands
    Node beside_line;        ///< the same within three cells, without a bump
    Node drive;              ///< to the start of a line, as a named inner tree
};

Node lines_first(const LinesFirst& planner);

/// The drive to the start of a line, and what is done where it fails.
Node navigate_and_follow_wall(const char* search_mode, const Node& otherwise);

inline Node start_within(const char* distance_mm, const char* of)
{
    return points_within(distance_mm, "${start_point}", of);
}

}  // namespace vemra::trees
