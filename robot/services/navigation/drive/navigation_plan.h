#pragma once

/// What a search leaves for the leaves that drive: the trees carry it from one to the other by key.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "robot/geometry/points.h"

namespace vemra::robot {

enum class BridgeType : std::uint8_t
{
    Tmp,             ///< out of a virtual wall that the robot stands in
    History,         ///< the robot has come through here before
    TrialWithTrace,  ///< its body has been over all of it, though not on this way
    TrialNoTrace,    ///< nobody knows
    Step             ///< over a step in the floor
};

/// As the trees compare it.
[[nodiscard]] const char* toText(BridgeType type);
[[nodiscard]] inline bool isTrial(BridgeType type)
{
    return type == BridgeType::TrialWithTrace || type == BridgeType::TrialNoTrace;
}

/// A stretch that the map calls blocked but that the robot has reason to try.
struct Bridge
{
    BridgeType type = BridgeType::TrialNoTrace;
    std::vector<PointMm> line;     ///< from the last open place to the next one; two points at least
    int failures = 0;              ///< crossings that went wrong, up to the search
    double follow_wall_mm = 1000;  ///< how far a crossing may follow a wall

    [[nodiscard]] PointMm from() const { return line.front(); }
    [[nodiscard]] PointMm to() const { return line.back(); }
};

using Line = std::vector<PointMm>;
/// `navigation_path`.
using LinePtr = std::shared_ptr<const Line>;
/// `navigation_bridge`.
using BridgePtr = std::shared_ptr<const Bridge>;

/// A run along a line, or a bridge, whose line it then is.
struct PlanSegment
{
    LinePtr line;
    BridgePtr bridge;  ///< none: a plain run
};

/// `navigation_path_segments`. Its copies share how far it has been taken up.
struct NavigationPlan
{
    std::vector<PlanSegment> segments;
    std::size_t next = 0;
};
using PlanPtr = std::shared_ptr<NavigationPlan>;

}  // namespace vemra::robot
