#include "robot/drawing/field_floor.h"

namespace vemra::robot {

FieldFloor fieldFloor(const DockField& field, const Home& visible)
{
    FieldFloor floor;
    const PointMm low = visible.origin();
    const PointMm high = visible.farCorner();
    for (double y = low.y + kFieldPatchMm / 2; y < high.y; y += kFieldPatchMm) {
        for (double x = low.x + kFieldPatchMm / 2; x < high.x; x += kFieldPatchMm) {
            const PointMm at{x, y};
            if (visible.at(at) != CellState::Free) {
                continue;
            }
            const auto rays = field.raysAt(at, visible);
            if (!rays.empty()) {
                floor[static_cast<std::size_t>(rays.front().signal)].push_back(at);
            }
        }
    }
    return floor;
}

}  // namespace vemra::robot
