#include "robot/world/swept_floor.h"

#include <cmath>

#include "robot/world/dock.h"
#include "robot/world/reach.h"

namespace vemra::robot {
namespace {

// A robot that has hardly moved has swept nothing new.
constexpr double kStepMm = 10;

std::size_t indexOf(const Home& home, CellIndex cell)
{
    return static_cast<std::size_t>(cell.row) * static_cast<std::size_t>(home.columns()) +
           static_cast<std::size_t>(cell.column);
}

// Calls visit for each free cell whose middle lies below the robot.
template <typename Visit>
void forCellsBelow(const Home& home, PointMm at, const Visit& visit)
{
    const PointMm reach{kRobotRadiusMm, kRobotRadiusMm};
    const CellIndex low = home.cellOf(at - reach);
    const CellIndex high = home.cellOf(at + reach);
    for (int row = low.row; row <= high.row; ++row) {
        for (int column = low.column; column <= high.column; ++column) {
            const CellIndex cell{column, row};
            if (home.at(cell) == CellState::Free && distance(home.centreOf(cell), at) <= kRobotRadiusMm) {
                visit(cell);
            }
        }
    }
}

}  // namespace

SweptFloor::SweptFloor(const Home& home)
    : home_(home), swept_(static_cast<std::size_t>(home.columns()) * static_cast<std::size_t>(home.rows()))
{}

void SweptFloor::sweep(PointMm at)
{
    if (begun_ && distance(at, last_) < kStepMm) {
        return;
    }
    begun_ = true;
    last_ = at;
    forCellsBelow(home_, at, [this](CellIndex cell) {
        const std::size_t index = indexOf(home_, cell);
        count_ += swept_[index] ? 0U : 1U;
        swept_[index] = true;
    });
}

double SweptFloor::percentOfReach(PointMm from) const
{
    const Reach reach(home_, kRobotRadiusMm);
    const int region = reach.regionOf(home_.cellOf(from));
    if (region == Reach::kNone) {
        return 0;
    }
    std::vector<bool> counted(swept_.size());
    std::uint64_t all = 0;
    std::uint64_t done = 0;
    for (int row = 0; row < home_.rows(); ++row) {
        for (int column = 0; column < home_.columns(); ++column) {
            if (reach.regionOf({column, row}) != region) {
                continue;
            }
            forCellsBelow(home_, home_.centreOf({column, row}), [&](CellIndex cell) {
                const std::size_t index = indexOf(home_, cell);
                if (counted[index]) {
                    return;
                }
                counted[index] = true;
                ++all;
                done += swept_[index] ? 1U : 0U;
            });
        }
    }
    return all == 0 ? 0 : 100.0 * static_cast<double>(done) / static_cast<double>(all);
}

}  // namespace vemra::robot
