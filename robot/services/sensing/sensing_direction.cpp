#include "robot/services/sensing/sensing_direction.h"

#include <cmath>

namespace vemra::robot {
namespace {

// Touched by the bumper, something else at the front, virtual or behind, nothing.
int weight(std::string_view direction)
{
    if (!isBump(direction)) {
        return 0;
    }
    if (direction == kVirtualBump || direction == kRearBump) {
        return 1;
    }
    return direction.find('_') == std::string_view::npos ? 3 : 2;
}

}  // namespace

bool touchesVirtually(const PoseMm& robot, PointMm place)
{
    constexpr double kAheadHalfDeg = 90;
    const PointMm offset = place - robot.at;
    const double bearing = degreesOfRadians(std::atan2(offset.y, offset.x)).value - robot.yaw.value;
    return distance(place, robot.at) <= kVirtualReachMm &&
           std::abs(wrapped({bearing}).value) <= kAheadHalfDeg;
}

std::string directionOf(const Sides& sides, std::string_view suffix)
{
    if (!sides.any()) {
        return std::string(kNoBump);
    }
    const bool middle = sides.middle || sides.left == sides.right;
    return (middle ? "middle" : sides.left ? "left" : "right") + std::string(suffix);
}

bool isBump(std::string_view direction)
{
    return !direction.empty() && direction != kNoBump;
}

std::string mergedDirection(std::string_view a, std::string_view b)
{
    if (weight(a) != weight(b)) {
        return std::string(weight(a) > weight(b) ? a : b);
    }
    if (a == b || weight(a) < 2) {
        return isBump(a) ? std::string(a) : std::string(kNoBump);
    }
    // Two different sides.
    const auto suffix = a.find('_');
    return "middle" + (suffix == std::string_view::npos ? std::string() : std::string(a.substr(suffix)));
}

}  // namespace vemra::robot
