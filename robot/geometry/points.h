#pragma once

#include <cmath>
#include <numbers>

namespace vemra::robot {

// The map frame: x to the right, y up, millimetres; headings grow to the left, 0 along x.

struct Degrees
{
    double value = 0;
    bool operator==(const Degrees&) const = default;
};

struct PointMm
{
    double x = 0;
    double y = 0;
    bool operator==(const PointMm&) const = default;
};

struct PoseMm
{
    PointMm at;
    Degrees yaw;
    bool operator==(const PoseMm&) const = default;
};

/// An upright rectangle.
struct BoxMm
{
    PointMm low;
    PointMm high;
    bool operator==(const BoxMm&) const = default;
};

inline bool contains(const BoxMm& box, PointMm p)
{
    return p.x >= box.low.x && p.x <= box.high.x && p.y >= box.low.y && p.y <= box.high.y;
}

inline PointMm operator+(PointMm a, PointMm b)
{
    return {a.x + b.x, a.y + b.y};
}

inline PointMm operator-(PointMm a, PointMm b)
{
    return {a.x - b.x, a.y - b.y};
}

inline PointMm operator*(double factor, PointMm p)
{
    return {factor * p.x, factor * p.y};
}

inline double distance(PointMm a, PointMm b)
{
    return std::hypot(a.x - b.x, a.y - b.y);
}

/// The same heading in the range (-180, 180].
inline Degrees wrapped(Degrees heading)
{
    const double turn = std::remainder(heading.value, 360.0);
    return {turn <= -180.0 ? turn + 360.0 : turn};
}

inline double radians(Degrees heading)
{
    return heading.value * std::numbers::pi / 180.0;
}

inline Degrees degreesOfRadians(double angle)
{
    return {angle * 180.0 / std::numbers::pi};
}

/// The step of length 1 along a heading. The four main directions come out exact, so that a ray along a
/// line of cells stays on it.
inline PointMm direction(Degrees heading)
{
    const auto exact = [](double v) { return std::abs(v) < 1e-12 ? 0.0 : v; };
    return {exact(std::cos(radians(heading))), exact(std::sin(radians(heading)))};
}

}  // namespace vemra::robot
