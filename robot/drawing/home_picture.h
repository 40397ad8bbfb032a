#pragma once

#include <optional>
#include <string>
#include <vector>

#include "robot/drawing/field_floor.h"
#include "robot/drawing/picture.h"
#include "robot/world/dock.h"
#include "robot/world/home.h"
#include "robot/world/virtual_walls.h"

namespace vemra::robot {

/// Where a run began, and whether it came out well.
struct StartMark
{
    PoseMm pose;
    bool good = true;
};

/// What the picture of a home shows beside the home.
struct HomeMarks
{
    std::string title;
    std::optional<Dock> dock;
    std::optional<PoseMm> robot;
    VirtualWalls walls = {};  ///< as the robot keeps them
    /// Where the robot really went on its own wheels: a stretch each time from where it was put down.
    std::vector<std::vector<PointMm>> track;
    /// Middles of squares of floor that was to be swept and was not, and their edge.
    std::vector<PointMm> missed = {};
    double missed_mm = 10;
    FieldFloor field = {};  ///< where the dock is heard
    std::vector<StartMark> starts = {};
};

/// The home from above, y up, with a bar of one metre. Keeps home by reference: it must outlive the picture.
Picture homePicture(const Home& home, HomeMarks marks);

}  // namespace vemra::robot
