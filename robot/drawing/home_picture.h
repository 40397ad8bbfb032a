#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "robot/drawing/field_floor.h"
#include "robot/drawing/picture.h"
#include "robot/world/dock.h"
#include "robot/world/home.h"
#include "robot/world/virtual_walls.h"

namespace vemra::robot {

/// What the robot was about on a stretch of its track.
enum class TrackPhase : std::uint8_t
{
    Drive,  ///< on the way to a goal
    Line,   ///< along a cleaning line
    Wall,   ///< along a wall
    Dock,   ///< to the dock or off it
    Look    ///< finding its place
};

/// The phase of a kind of motion as the trees account for it (`current_motion_type`).
TrackPhase phaseOfMotion(std::string_view motion);

struct TrackStretch
{
    std::vector<PointMm> points;
    TrackPhase phase = TrackPhase::Drive;
    bool put_down_here = false;  ///< somebody carried the robot to its first point
};

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
    VirtualWalls walls = {};          ///< as the robot keeps them
    std::vector<TrackStretch> track;  ///< where the robot really went
    /// Middles of squares of floor that was to be swept and was not, and their edge.
    std::vector<PointMm> missed = {};
    double missed_mm = 10;
    FieldFloor field = {};  ///< where the dock is heard
    std::vector<StartMark> starts = {};
    std::string good_start = "docked from here";  ///< what a start that came out well is called
};

/// The home from above, y up, with a bar of one metre. Keeps home by reference: it must outlive the picture.
Picture homePicture(const Home& home, HomeMarks marks);

}  // namespace vemra::robot
