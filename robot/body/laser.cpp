#include "robot/body/laser.h"

#include <algorithm>
#include <cmath>

namespace vemra::robot {

std::optional<double> LaserScan::nearest(Degrees bearing_wanted, Degrees half_width) const
{
    std::optional<double> best;
    for (std::size_t i = 0; i < ranges_mm.size(); ++i) {
        const auto& range = ranges_mm[i];
        if (range && (!best || *range < *best) &&
            std::abs(wrapped({bearing(i).value - bearing_wanted.value}).value) <= half_width.value) {
            best = range;
        }
    }
    return best;
}

LaserScan takeScan(const Home& visible, const PoseMm& at, const LaserConfig& config, Chance& chance)
{
    LaserScan scan;
    scan.ranges_mm.resize(static_cast<std::size_t>(config.beams));
    for (std::size_t i = 0; i < scan.ranges_mm.size(); ++i) {
        const Degrees heading{at.yaw.value + scan.bearing(i).value};
        if (const auto range = visible.castRay(at.at, heading, config.range_mm)) {
            scan.ranges_mm[i] = std::max(0.0, *range + config.noise_mm * chance.gaussian());
        }
    }
    return scan;
}

}  // namespace vemra::robot
