#include "robot/belief/cleaned_floor.h"

#include <cmath>

#include "robot/world/sweeping.h"

namespace vemra::robot {
namespace {

constexpr int kGrowBy = 80;  // 2 m

CellIndex rasterCell(PointMm point)
{
    return {static_cast<int>(std::floor(point.x / CleanedFloor::kRasterMm)),
            static_cast<int>(std::floor(point.y / CleanedFloor::kRasterMm))};
}

}  // namespace

bool CleanedFloor::mark(PointMm point)
{
    const CellIndex cell = rasterCell(point);
    if (!swept_.contains(cell)) {
        const CellWindow& now = swept_.window();
        const CellIndex low = now.empty() ? cell : now.low;
        const CellIndex end = now.empty() ? CellIndex{cell.column + 1, cell.row + 1} : now.end;
        swept_.moveTo({{std::min(low.column, cell.column - kGrowBy), std::min(low.row, cell.row - kGrowBy)},
                       {std::max(end.column, cell.column + kGrowBy), std::max(end.row, cell.row + kGrowBy)}});
    }
    const std::uint8_t before = swept_.at(cell);
    if (before >= pass_) {
        return false;
    }
    count_ += before == 0 ? 1U : 0U;
    swept_.set(cell, pass_);
    return true;
}

bool CleanedFloor::follow(const PoseMm& pose, bool brushes_on)
{
    const PoseMm from = last_.value_or(pose);
    if (last_ && *last_ == pose) {
        return false;
    }
    last_ = pose;
    bool fresh = false;
    if (brushes_on) {
        forPosesBetween(from, pose, kRasterMm / 2, [&](const PoseMm& between) {
            forSweptPoints(between, kRasterMm / 2, [&](PointMm point) { fresh |= mark(point); });
        });
    }
    return fresh;
}

void CleanedFloor::reset()
{
    swept_ = Grid<std::uint8_t>{0};
    count_ = 0;
    pass_ = 1;
    last_.reset();
}

int CleanedFloor::sweptQuarters(CellIndex cell, std::optional<std::uint8_t> pass) const
{
    const std::uint8_t least = pass.value_or(pass_);
    int quarters = 0;
    for (const int row : {0, 1}) {
        for (const int column : {0, 1}) {
            quarters += swept_.at({2 * cell.column + column, 2 * cell.row + row}) >= least ? 1 : 0;
        }
    }
    return quarters;
}

}  // namespace vemra::robot
