#pragma once

#include <string>
#include <string_view>

#include "robot/body/body.h"
#include "robot/geometry/points.h"
#include "robot/world/dock.h"

namespace vemra::robot {

// Where a contact was, as the trees write it: "left", "middle", "right", each with "_cliff" or "_dock" where
// it was no bumper, "virtual", "BackWardsBump", and "None".

inline constexpr std::string_view kNoBump = "None";
inline constexpr std::string_view kVirtualBump = "virtual";
inline constexpr std::string_view kRearBump = "BackWardsBump";

/// How far from the robot's middle a place counts as touched that has nothing to press the bumper: a little
/// before the casing is on it.
inline constexpr double kVirtualReachMm = kRobotRadiusMm + 15;

/// Whether a robot there touches such a place: within reach, and not behind it.
[[nodiscard]] bool touchesVirtually(const PoseMm& robot, PointMm place);

/// "left", "middle" or "right", with the suffix; both sides together are the middle. "None" without any.
[[nodiscard]] std::string directionOf(const Sides& sides, std::string_view suffix = {});

/// Whether a direction tells of a contact.
[[nodiscard]] bool isBump(std::string_view direction);

/// One direction of two: what was touched counts more than what is virtual, left and right are the middle.
[[nodiscard]] std::string mergedDirection(std::string_view a, std::string_view b);

}  // namespace vemra::robot
