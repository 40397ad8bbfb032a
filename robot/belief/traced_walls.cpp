#include "robot/belief/traced_walls.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <numbers>

#include "robot/world/dock.h"

namespace vemra::robot {
namespace {

constexpr int kGrowBy = 40;
constexpr double kPlaceEveryMm = 25;
// On a wall that was traced: so near to a place of it, on the same side, and not what was just drawn.
constexpr double kSameWayMm = 120;
constexpr double kSameHeadingDeg = 60;
constexpr double kOwnAfterMm = 600;
// For so long; a corner that two walls share is shorter.
constexpr double kSurelyMm = 150;
// What stands so far from the middle of the robot, on the side of the wall, counts as followed.
constexpr double kWallReachMm = 330;
// A jump of the pose is no way.
constexpr double kJumpMm = 300;

std::uint64_t keyOf(CellIndex cell)
{
    return (static_cast<std::uint64_t>(static_cast<std::uint32_t>(cell.row)) << 32U) |
           static_cast<std::uint32_t>(cell.column);
}

constexpr int kSideCount = 8;

// On which side of a cell a place is.
int sideTowards(CellIndex cell, PointMm place)
{
    const PointMm to = place - centreOf(cell);
    return static_cast<int>(std::lround(std::atan2(to.y, to.x) / (2 * std::numbers::pi) * kSideCount));
}

unsigned sideFlag(int side)
{
    return 1U << static_cast<unsigned>((side + 2 * kSideCount) % kSideCount);
}

}  // namespace

bool TracedWalls::isTraced(CellIndex cell, PointMm from) const
{
    return (flags_.at(cell) & sideFlag(sideTowards(cell, from))) != 0;
}

int TracedWalls::begin(bool wall_right)
{
    chains_.push_back({{}, wall_right, true});
    again_mm_ = 0;
    ++version_;
    return static_cast<int>(chains_.size());
}

void TracedWalls::close(int chain)
{
    if (chain >= 1 && static_cast<std::size_t>(chain) <= chains_.size()) {
        chains_[static_cast<std::size_t>(chain) - 1].open = false;
        ++version_;
    }
}

void TracedWalls::reset()
{
    chains_.clear();
    by_cell_.clear();
    flags_ = Grid<std::uint16_t>{0};
    again_mm_ = 0;
    ++version_;
}

void TracedWalls::flag(CellIndex cell, unsigned flags)
{
    if (!flags_.contains(cell)) {
        const CellWindow& now = flags_.window();
        const CellIndex low = now.empty() ? cell : now.low;
        const CellIndex end = now.empty() ? CellIndex{cell.column + 1, cell.row + 1} : now.end;
        flags_.moveTo({{std::min(low.column, cell.column - kGrowBy), std::min(low.row, cell.row - kGrowBy)},
                       {std::max(end.column, cell.column + kGrowBy), std::max(end.row, cell.row + kGrowBy)}});
    }
    flags_.set(cell, static_cast<std::uint16_t>(flags_.at(cell) | flags));
}

void TracedWalls::flagLine(PointMm from, PointMm to)
{
    const int steps = 1 + static_cast<int>(distance(from, to) / (kCellMm / 4));
    for (int i = 0; i <= steps; ++i) {
        flag(cellAt(from + (static_cast<double>(i) / steps) * (to - from)), kWay);
    }
}

void TracedWalls::flagWall(const PoseMm& as_right)
{
    const PointMm ahead = direction(as_right.yaw);
    const PointMm right{ahead.y, -ahead.x};
    const int reach = static_cast<int>(kWallReachMm / kCellMm) + 1;
    const CellIndex middle = cellAt(as_right.at);
    for (int row = -reach; row <= reach; ++row) {
        for (int column = -reach; column <= reach; ++column) {
            const CellIndex cell{middle.column + column, middle.row + row};
            const PointMm to = centreOf(cell) - as_right.at;
            const double aside = to.x * right.x + to.y * right.y;
            const double away = std::hypot(to.x, to.y);
            if (away <= kWallReachMm && away >= kRobotRadiusMm - kCellMm && aside > 0) {
                // Who looks from a little aside sees the same side.
                const int side = sideTowards(cell, as_right.at);
                flag(cell, sideFlag(side - 1) | sideFlag(side) | sideFlag(side + 1));
            }
        }
    }
}

const TracedWalls::Place* TracedWalls::tracedHere(int chain, const Place& now) const
{
    constexpr int kAround = static_cast<int>(kSameWayMm / kCellMm) + 1;
    const CellIndex middle = cellAt(now.at);
    for (int row = -kAround; row <= kAround; ++row) {
        for (int column = -kAround; column <= kAround; ++column) {
            const auto found = by_cell_.find(keyOf({middle.column + column, middle.row + row}));
            if (found == by_cell_.end()) {
                continue;
            }
            for (const Spot& spot : found->second) {
                const Place& then = chains_[static_cast<std::size_t>(spot.chain) - 1].places[spot.place];
                const bool other = spot.chain != chain || then.along_mm < now.along_mm - kOwnAfterMm;
                if (other && distance(then.at, now.at) <= kSameWayMm &&
                    std::abs(wrapped({then.heading.value - now.heading.value}).value) < kSameHeadingDeg) {
                    return &then;
                }
            }
        }
    }
    return nullptr;
}

bool TracedWalls::draw(int chain, const PoseMm& pose)
{
    if (chain < 1 || static_cast<std::size_t>(chain) > chains_.size()) {
        return false;
    }
    Chain& drawn = chains_[static_cast<std::size_t>(chain) - 1];
    const PoseMm as_right{pose.at, {pose.yaw.value + (drawn.wall_right ? 0 : 180)}};
    double step = 0;
    Place now{pose.at, as_right.yaw, 0};
    if (!drawn.places.empty()) {
        const Place& last = drawn.places.back();
        step = distance(last.at, pose.at);
        const double turn = std::abs(wrapped({as_right.yaw.value - last.heading.value}).value);
        if (step < kPlaceEveryMm && turn < 20) {
            return false;
        }
        now.along_mm = last.along_mm + (step > kJumpMm ? 0 : step);
        if (step <= kJumpMm) {
            flagLine(last.at, pose.at);
        }
    }
    flagWall(as_right);
    const Place* then = tracedHere(chain, now);
    again_mm_ = then == nullptr ? 0 : again_mm_ + (step > kJumpMm ? 0 : step);
    if (then != nullptr) {
        flagLine(pose.at, then->at);
    }
    by_cell_[keyOf(cellAt(pose.at))].push_back({chain, drawn.places.size()});
    drawn.places.push_back(now);
    ++version_;
    if (again_mm_ < kSurelyMm) {
        return false;
    }
    again_mm_ = 0;
    return true;
}

Grid<unsigned char> TracedWalls::outside() const
{
    const CellWindow& inner = flags_.window();
    if (inner.empty()) {
        return Grid<unsigned char>{1};
    }
    const CellWindow window{{inner.low.column - 1, inner.low.row - 1},
                            {inner.end.column + 1, inner.end.row + 1}};
    Grid<unsigned char> reached(window, 0, 1);
    std::deque<CellIndex> front{window.low};
    reached.set(window.low, 1);
    while (!front.empty()) {
        const CellIndex cell = front.front();
        front.pop_front();
        for (const CellIndex step : {CellIndex{1, 0}, CellIndex{-1, 0}, CellIndex{0, 1}, CellIndex{0, -1}}) {
            const CellIndex next{cell.column + step.column, cell.row + step.row};
            if (window.contains(next) && reached.at(next) == 0 && !isWay(next)) {
                reached.set(next, 1);
                front.push_back(next);
            }
        }
    }
    return reached;
}

}  // namespace vemra::robot
