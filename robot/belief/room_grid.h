#pragma once

#include <cstdint>
#include <vector>

#include "robot/belief/grid.h"

namespace vemra::robot {

/// For each cell the number of the room that it belongs to; kNoRoom beyond.
using RoomGrid = Grid<std::uint8_t>;
inline constexpr std::uint8_t kNoRoom = 0;
/// Rooms of a divided floor are numbered from 1; the trees give numbers from here on meanings of their own.
inline constexpr std::uint8_t kFirstReservedRoom = 125;

/// What keeps the robot's middle within a room, or out of the other rooms.
struct RoomFence
{
    Grid<unsigned char> closed{0};  ///< 1: not to be entered
    std::vector<PointMm> edge;      ///< along the border, so far behind it that a body's side may cross it
};

}  // namespace vemra::robot
