#pragma once

#include <optional>
#include <string>
#include <vector>

#include "robot/drawing/picture.h"
#include "robot/world/dock.h"
#include "robot/world/home.h"

namespace vemra::robot {

/// What the picture of a home shows beside the home.
struct HomeMarks
{
    std::string title;
    std::optional<Dock> dock;
    std::optional<PoseMm> robot;
    std::vector<PointMm> track;  ///< where the robot really went
};

/// The home from above, y up, with a bar of one metre. Keeps home by reference: it must outlive the picture.
Picture homePicture(const Home& home, HomeMarks marks);

}  // namespace vemra::robot
