#include "robot/planning/contour.h"

#include <array>
#include <optional>

namespace vemra::robot {
namespace {

// Counter-clockwise, an eighth of a turn each.
constexpr int kDirections = 8;
constexpr std::array<CellIndex, kDirections> kSteps = {
    {{1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}, {-1, -1}, {0, -1}, {1, -1}}};

int indexOf(CellIndex direction)
{
    for (int i = 0; i < kDirections; ++i) {
        if (kSteps.at(static_cast<std::size_t>(i)) == direction) {
            return i;
        }
    }
    return 0;
}

CellIndex stepped(CellIndex cell, int direction)
{
    const CellIndex step = kSteps.at(static_cast<std::size_t>(direction));
    return {cell.column + step.column, cell.row + step.row};
}

}  // namespace

std::vector<CellIndex> contourWithEdgeOnLeft(const PlanningMap& plan, CellIndex from, CellIndex towards,
                                             const std::function<bool(CellIndex)>& goes_on)
{
    std::vector<CellIndex> contour{from};
    // The edge lies a quarter turn to the left of where it heads.
    int heading = (indexOf(towards) + kDirections - 2) % kDirections;
    std::optional<int> first;
    // Each cell is passed once from each side at most.
    const std::size_t most = kDirections * plan.window().cells();
    while (contour.size() < most) {
        const CellIndex at = contour.back();
        int turned = 0;
        for (; turned < kDirections; ++turned) {
            // From behind on the left, to the right.
            const int direction = (heading + 3 + kDirections - turned) % kDirections;
            if (plan.at(stepped(at, direction)) == Ground::Open) {
                heading = direction;
                break;
            }
        }
        if (turned == kDirections) {
            break;
        }
        // Round: where the ground is one cell wide the beginning is passed on the way back, too.
        if (contour.size() > 1 && at == from && heading == first) {
            contour.pop_back();
            break;
        }
        first = first.value_or(heading);
        const CellIndex next = stepped(at, heading);
        contour.push_back(next);
        if (!goes_on(next)) {
            break;
        }
    }
    return contour;
}

}  // namespace vemra::robot
