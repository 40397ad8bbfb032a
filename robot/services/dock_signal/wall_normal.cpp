#include "robot/services/dock_signal/wall_normal.h"

#include <cmath>
#include <vector>

namespace vemra::robot {
namespace {

constexpr double kHalfDeg = 25;
constexpr std::size_t kLeastPoints = 8;
constexpr double kLineThickMm = 40;

}  // namespace

std::optional<Degrees> wallNormal(const LaserScan& scan, Degrees bearing)
{
    std::vector<PointMm> points;
    PointMm mean;
    for (std::size_t beam = 0; beam < scan.ranges_mm.size(); ++beam) {
        const Degrees at = scan.bearing(beam);
        if (scan.ranges_mm[beam] && std::abs(wrapped({at.value - bearing.value}).value) <= kHalfDeg) {
            points.push_back(*scan.ranges_mm[beam] * direction(at));
            mean = mean + points.back();
        }
    }
    if (points.size() < kLeastPoints) {
        return std::nullopt;
    }
    const auto count = static_cast<double>(points.size());
    mean = 1.0 / count * mean;
    double xx = 0;
    double xy = 0;
    double yy = 0;
    for (const PointMm point : points) {
        const PointMm off = point - mean;
        xx += off.x * off.x;
        xy += off.x * off.y;
        yy += off.y * off.y;
    }
    const double along = 0.5 * std::atan2(2 * xy, xx - yy);
    const double sine = std::sin(along);
    const double cosine = std::cos(along);
    const double across = xx * sine * sine - 2 * xy * sine * cosine + yy * cosine * cosine;
    if (std::sqrt(across / count) > kLineThickMm) {
        return std::nullopt;
    }
    const double normal = degreesOfRadians(along).value + 90;
    const PointMm out = direction({normal});
    const bool away = out.x * mean.x + out.y * mean.y > 0;
    return wrapped({away ? normal + 180 : normal});
}

}  // namespace vemra::robot
