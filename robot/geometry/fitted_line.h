#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "robot/geometry/points.h"

namespace vemra::robot {

/// A line through points: through their mean, along which they spread most.
struct FittedLine
{
    PointMm mean;
    Degrees along;
    double off_mm = 0;  ///< how far the points lie off it, root mean square
};

/// The line of least squares across itself through at least one point (principal axis; Pearson 1901).
inline FittedLine fittedLine(const std::vector<PointMm>& points)
{
    const auto count = static_cast<double>(points.size());
    FittedLine line;
    for (const PointMm point : points) {
        line.mean = line.mean + (1 / count) * point;
    }
    double xx = 0;
    double xy = 0;
    double yy = 0;
    for (const PointMm point : points) {
        const PointMm off = point - line.mean;
        xx += off.x * off.x;
        xy += off.x * off.y;
        yy += off.y * off.y;
    }
    const double angle = 0.5 * std::atan2(2 * xy, xx - yy);
    const double sine = std::sin(angle);
    const double cosine = std::cos(angle);
    const double across = xx * sine * sine - 2 * xy * sine * cosine + yy * cosine * cosine;
    line.along = degreesOfRadians(angle);
    line.off_mm = std::sqrt(std::max(0.0, across) / count);
    return line;
}

}  // namespace vemra::robot
