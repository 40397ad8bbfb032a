#pragma once

/// What a search leaves for the leaves that drive: the trees carry it from one to the other by key. Whoever
/// puts one of these types on a blackboard includes this header, so that its text form goes with it.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "behaviortree_cpp/basic_types.h"
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

// The text forms: a line is "x;y;x;y;...", a bridge its type before its line ("TRIALNOTRACE;x;y;x;y"), a plan
// its stretches that are not taken up yet, each a line or a bridge, with " | " between them.
std::ostream& operator<<(std::ostream& out, const LinePtr& line);
std::ostream& operator<<(std::ostream& out, const BridgePtr& bridge);
std::ostream& operator<<(std::ostream& out, const PlanPtr& plan);

}  // namespace vemra::robot

namespace BT {

template <>
vemra::robot::LinePtr convertFromString<vemra::robot::LinePtr>(const StringView& text);
template <>
vemra::robot::BridgePtr convertFromString<vemra::robot::BridgePtr>(const StringView& text);
template <>
vemra::robot::PlanPtr convertFromString<vemra::robot::PlanPtr>(const StringView& text);

}  // namespace BT
