#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "robot/belief/room_grid.h"
#include "robot/world/home.h"

namespace vemra::robot {

/// Divides a floor into rooms, cut where it is narrow: the free floor is flooded from where it is widest,
/// narrower places one after the other, and floods meet in doors (watershed of the distance transform;
/// Vincent and Soille 1991; on homes, Bormann et al. 2016). What meets along more than 1.1 m is one room, and
/// so is what is smaller than 2 m2 with its neighbour. Things that are not joined to a wall and not larger
/// than 0.1 m2 (legs of furniture) divide nothing. Rooms are numbered row by row, the lowest first.
RoomGrid divideIntoRooms(const Grid<CellState>& floor);

struct RoomShape
{
    std::uint8_t number = kNoRoom;
    std::size_t cells = 0;
    PointMm middle;  ///< mean of its cells
    BoxMm box;       ///< around its cells
};

/// The rooms of a grid by their numbers.
std::vector<RoomShape> roomsOf(const RoomGrid& rooms);

/// Around the room of a number. `within`: all else is closed, floor of no room too; else the other rooms are.
/// The middle may cross the border by 100 mm, so that no floor is left along it.
RoomFence fenceOf(const RoomGrid& rooms, std::uint8_t number, bool within);

/// A grid of rectangular rooms, as somebody draws them: a later one takes from an earlier.
RoomGrid drawnRooms(const std::vector<std::pair<std::uint8_t, BoxMm>>& boxes);

}  // namespace vemra::robot
