#pragma once

#include <memory>
#include <optional>

#include "robot/belief/room_grid.h"
#include "robot/geometry/points.h"

namespace vemra::robot {

/// A map of the home as it is kept from one task to the next.
struct KeptMap
{
    Grid<CellState> floor{CellState::Unknown};
    std::shared_ptr<const RoomGrid> rooms;
    std::optional<PoseMm> docked;  ///< where the robot stood on its dock
};

/// What the robot keeps of its home, and how SLAM stands to it.
struct MapStore
{
    bool present = false;  ///< a map is stored; it may be one of which the simulation knows no more
    std::optional<KeptMap> map;
    bool slam_holds = false;  ///< SLAM has a map in its hands with which a task can go on
    bool in_use = false;      ///< places are told in the frame of the stored map
};

}  // namespace vemra::robot
