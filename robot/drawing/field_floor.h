#pragma once

#include <array>
#include <vector>

#include "robot/world/dock_field.h"

namespace vemra::robot {

/// Floor on which a dock can be heard: middles of squares of kFieldPatchMm, by the signal (DockSignal) that
/// reaches them straight or by a mirror.
using FieldFloor = std::array<std::vector<PointMm>, 6>;
inline constexpr double kFieldPatchMm = Home::kCellMm / 2;

/// `visible` is what casts shadows; only free floor counts.
[[nodiscard]] FieldFloor fieldFloor(const DockField& field, const Home& visible);

}  // namespace vemra::robot
