#pragma once

#include <optional>
#include <vector>

#include "robot/belief/robot_map.h"
#include "robot/belief/sensor_switches.h"
#include "robot/planning/place_match.h"

namespace vemra::robot {

/// What a robot that is lost has seen, and what it makes of it. The map and the body must outlive it.
class PlaceSearch
{
public:
    PlaceSearch(Body& body, const RobotMap& map, const SensorSwitches& switches)
        : body_(body), map_(map), switches_(switches)
    {}

    void begin();
    /// A look around, held against what is known of the home; true: now the place is known.
    bool look(const OccupancyMap& known);
    /// Where the robot is now, if it is known: the place that was recognised and the way since.
    [[nodiscard]] std::optional<PoseMm> pose() const;
    /// The next place to look from: up to 4 m away on the floor around, 1 m from where it looked before. Each
    /// is given once. No value when there is none, or five were given.
    [[nodiscard]] std::optional<PointMm> nextPoint();
    [[nodiscard]] bool pointsLeft() const { return points_.size() <= kMostPoints; }

private:
    static constexpr std::size_t kMostPoints = 5;

    Body& body_;
    const RobotMap& map_;
    const SensorSwitches& switches_;
    std::vector<View> views_;
    std::vector<PointMm> points_;  ///< given, and where it began
    std::optional<PlaceGuess> sure_;
    PoseMm sure_odometry_;
};

}  // namespace vemra::robot
