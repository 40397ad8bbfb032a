#include "robot/services/dock_signal/wall_normal.h"

#include <cmath>
#include <vector>

#include "robot/geometry/fitted_line.h"

namespace vemra::robot {
namespace {

constexpr double kHalfDeg = 25;
constexpr std::size_t kLeastPoints = 8;
constexpr double kLineThickMm = 40;

}  // namespace

std::optional<Degrees> wallNormal(const LaserScan& scan, Degrees bearing)
{
    std::vector<PointMm> points;
    for (std::size_t beam = 0; beam < scan.ranges_mm.size(); ++beam) {
        const Degrees at = scan.bearing(beam);
        if (scan.ranges_mm[beam] && std::abs(wrapped({at.value - bearing.value}).value) <= kHalfDeg) {
            points.push_back(*scan.ranges_mm[beam] * direction(at));
        }
    }
    if (points.size() < kLeastPoints) {
        return std::nullopt;
    }
    const FittedLine line = fittedLine(points);
    if (line.off_mm > kLineThickMm) {
        return std::nullopt;
    }
    const double normal = line.along.value + 90;
    const PointMm out = direction({normal});
    const bool away = out.x * line.mean.x + out.y * line.mean.y > 0;
    return wrapped({away ? normal + 180 : normal});
}

}  // namespace vemra::robot
