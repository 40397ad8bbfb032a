#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "robot/belief/robot_map.h"
#include "robot/belief/sensor_switches.h"
#include "robot/planning/cleaning_lines.h"
#include "robot/services/coverage/offers.h"

namespace vemra::robot {

/// What the leaves that cover the floor share: the map, the book of offers, the direction of the lines, and
/// the looks at the map that more than one of them takes.
class CoverageGround
{
public:
    CoverageGround(RobotMap& map, const SensorSwitches& switches) : map_(map), switches_(switches) {}

    /// Forgets what belonged to a map that is gone.
    void sync();

    [[nodiscard]] RobotMap& map() { return map_; }
    [[nodiscard]] const RobotMap& map() const { return map_; }
    [[nodiscard]] OfferBook& offers() { return offers_; }
    [[nodiscard]] PlanningMap plan() const;

    /// The runs of cleaning lines that are left in a region and may still be offered. Direction: as asked,
    /// else as for the search before, else along the longer side of the floor.
    [[nodiscard]] std::vector<CleaningRun> runsLeft(const PlanningMap& plan,
                                                    const std::optional<BoxMm>& region,
                                                    std::optional<bool> along_y);
    /// The runs of floor that no pass of this task has swept, as the first pass would drive them: along the
    /// longer side. `counts`: which cells are looked at.
    [[nodiscard]] std::vector<CleaningRun> runsNeverDriven(const PlanningMap& plan,
                                                           const std::optional<BoxMm>& region,
                                                           const std::function<bool(CellIndex)>& counts);
    /// The longer side of the open floor of a region lies along y.
    [[nodiscard]] static bool longerAlongY(const PlanningMap& plan, const CellWindow& region);

    /// Something stands here whose wall nobody followed on the side of a place.
    [[nodiscard]] bool isUntraced(CellIndex cell, PointMm from) const;
    /// The place lies on floor that cannot be left without crossing a chain.
    [[nodiscard]] bool isEnclosed(const PlanningMap& plan, PointMm place);

    /// What lies within a chain, for as long as no wall is traced; 1: outside.
    [[nodiscard]] const Grid<unsigned char>& outside();

private:
    [[nodiscard]] std::vector<CleaningRun> runsOf(const PlanningMap& plan, const CellWindow& window,
                                                  bool along_y, const std::function<bool(CellIndex)>& counts,
                                                  std::optional<std::uint8_t> pass) const;

    RobotMap& map_;
    const SensorSwitches& switches_;
    OfferBook offers_;
    std::optional<bool> along_y_;
    std::uint64_t resets_ = 0;
    Grid<unsigned char> outside_{1};
    std::optional<std::uint64_t> outside_of_;  ///< version of the traced walls
};

/// The cells of a region, or the whole window of a plan.
[[nodiscard]] CellWindow windowOf(const PlanningMap& plan, const std::optional<BoxMm>& region);

}  // namespace vemra::robot
