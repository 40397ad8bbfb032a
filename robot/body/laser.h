#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "robot/base/chance.h"
#include "robot/world/home.h"

namespace vemra::robot {

struct LaserConfig
{
    int beams = 360;
    double range_mm = 8000;
    double noise_mm = 6;  ///< standard deviation of one range
};

/// One turn of the laser distance sensor in the middle of the robot. Beam i looks bearing(i) degrees to the
/// left of straight ahead.
struct LaserScan
{
    std::vector<std::optional<double>> ranges_mm;  ///< from the robot's centre; no value: nothing in range
    std::uint64_t step = 0;                        ///< step of the body at which it was taken

    [[nodiscard]] Degrees bearing(std::size_t beam) const
    {
        return {static_cast<double>(beam) * 360.0 / static_cast<double>(ranges_mm.size())};
    }
    /// The nearest range among the beams within half_width of a bearing.
    [[nodiscard]] std::optional<double> nearest(Degrees bearing, Degrees half_width) const;
};

LaserScan takeScan(const Home& visible, const PoseMm& at, const LaserConfig& config, Chance& chance);

}  // namespace vemra::robot
