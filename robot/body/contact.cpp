#include "robot/body/contact.h"

#include <algorithm>
#include <cmath>

namespace vemra::robot {
namespace {

constexpr double kSlackMm = 1e-3;

}  // namespace

std::optional<Obstruction> nearestObstruction(const Home& solid, PointMm centre, double within_mm)
{
    const CellIndex low = solid.cellOf(centre - PointMm{within_mm, within_mm});
    const CellIndex high = solid.cellOf(centre + PointMm{within_mm, within_mm});
    double best = within_mm * within_mm;
    std::optional<PointMm> nearest;
    CellIndex in;
    for (int row = low.row; row <= high.row; ++row) {
        for (int column = low.column; column <= high.column; ++column) {
            const CellIndex cell{column, row};
            if (solid.at(cell) == CellState::Free) {
                continue;
            }
            const PointMm middle = solid.centreOf(cell);
            const double half = Home::kCellMm / 2;
            const PointMm at{std::clamp(centre.x, middle.x - half, middle.x + half),
                             std::clamp(centre.y, middle.y - half, middle.y + half)};
            const PointMm offset = at - centre;
            const double square = offset.x * offset.x + offset.y * offset.y;
            if (square <= best) {
                best = square;
                nearest = square > 0 ? at : middle;
                in = cell;
            }
        }
    }
    if (!nearest) {
        return std::nullopt;
    }
    const PointMm offset = *nearest - centre;
    const double length = std::hypot(offset.x, offset.y);
    return Obstruction{std::sqrt(best), length > 0 ? 1 / length * offset : PointMm{1, 0}, in};
}

Move slide(const Home& solid, PointMm from, PointMm step, double radius_mm)
{
    const auto before = nearestObstruction(solid, from, radius_mm);
    const double keep = before ? before->away_mm : radius_mm;
    Move move{from + step, {}};
    for (int round = 0; round < Move::kMost; ++round) {
        const auto meets = nearestObstruction(solid, move.to, keep - kSlackMm);
        if (!meets) {
            return move;
        }
        move.to = move.to - (keep - meets->away_mm) * meets->towards;
        move.against[static_cast<std::size_t>(move.count++)] = meets->towards;
    }
    // A corner too tight to slide in.
    move.to = from;
    return move;
}

}  // namespace vemra::robot
