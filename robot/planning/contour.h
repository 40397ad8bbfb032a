#pragma once

#include <functional>
#include <vector>

#include "robot/planning/planning_map.h"

namespace vemra::robot {

/// Open cells along the edge of the open ground, one beside the other, as a robot would pass them that keeps
/// what is not open on its left (border following on an eight-connected grid; Moore neighbours). Begins at an
/// open cell with `towards`, a neighbour's direction in which the ground is not open; ends where `goes_on` is
/// false, which is the last cell but for the first, or when it has come round: where the ground is one
/// cell wide, cells are passed twice.
std::vector<CellIndex> contourWithEdgeOnLeft(const PlanningMap& plan, CellIndex from, CellIndex towards,
                                             const std::function<bool(CellIndex)>& goes_on);

}  // namespace vemra::robot
