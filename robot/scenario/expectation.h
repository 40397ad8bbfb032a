#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "robot/geometry/points.h"
#include "robot/vocabulary/mode.h"

namespace vemra::robot {

/// How the robot is to be at the end of a frame; what is left open may be anything.
struct ExpectedState
{
    std::optional<Mode> mode;
    std::optional<std::string> task_state;
    std::optional<std::string> robot_status;
    std::optional<std::string> light;
    std::optional<std::string> station_light;
    std::optional<bool> docked;
    std::optional<bool> powered_off;
    std::optional<std::string> error;                       ///< a health code that stands, without its prefix
    std::vector<std::pair<std::string, std::string>> keys;  ///< of the blackboard, with their texts
    std::vector<std::string> absent;                        ///< keys that are not on the blackboard
    std::optional<double> coverage;  ///< swept at least, percent of the floor that the robot can get to
    std::optional<double> known;     ///< on its map at least, percent of the floor that its laser can see
    /// Of the floor in a box that the robot can get to so much is swept, percent.
    struct SweptBox
    {
        BoxMm box;
        double least = 0;
        double most = 100;

        bool operator==(const SweptBox&) const = default;
    };
    std::optional<SweptBox> floor;
    std::optional<PointMm> place;  ///< where the robot stands, within place_mm
    double place_mm = 0;

    bool operator==(const ExpectedState&) const = default;
};

/// What the time line is to tell.
struct ExpectedEvents
{
    std::optional<std::string> message;             ///< part of a message
    std::optional<std::string> told;                ///< part of the text of any event
    std::optional<std::uint64_t> times;             ///< how often, exactly; without it once at least
    std::optional<std::vector<std::string>> modes;  ///< all changes of mode, in order
    std::optional<std::vector<std::string>> music;  ///< all music, in order

    bool operator==(const ExpectedEvents&) const = default;
};

/// What a scenario says is to be seen from a frame on.
struct Expectation
{
    std::uint64_t from = 0;
    std::uint64_t to = 0;  ///< the last frame in which it may come true, or must not
    bool never = false;    ///< the state and the events are not to be
    ExpectedState state;   ///< all of it in one frame
    ExpectedEvents events;
    int line = 0;      ///< in the scenario file
    std::string text;  ///< as it stands there
};

}  // namespace vemra::robot
