#include "robot/belief/track.h"

#include "robot/world/dock.h"

namespace vemra::robot {
namespace {

constexpr int kBodyCells = static_cast<int>(kRobotRadiusMm / kCellMm);
constexpr int kGrowByCells = 40;

}  // namespace

void Track::follow(PointMm at)
{
    const CellIndex cell = cellAt(at);
    if (!points_.empty() && points_.back().cell == cell) {
        return;
    }
    points_.push_back({cell, size()});
    cover(cell);
    if (points_.size() >= drop_at_) {
        dropEarlierVisits();
        drop_at_ = points_.size() + kDropEvery;
    }
}

// Whoever looks for a place on the track wants the latest visit of a cell, so that no answer changes.
void Track::dropEarlierVisits()
{
    Grid<unsigned char> kept(passed_.window(), 0, 0);
    const auto drops =
        std::remove_if(points_.rbegin() + kRecent, points_.rend(), [&kept](const Point& point) {
            const bool again = kept.at(point.cell) != 0;
            kept.set(point.cell, 1);
            return again;
        });
    points_.erase(points_.begin(), drops.base());
}

void Track::reset()
{
    points_.clear();
    drop_at_ = kDropEvery;
    passed_ = Grid<unsigned char>{kNever};
}

void Track::cover(CellIndex cell)
{
    const CellWindow needed{{cell.column - kBodyCells, cell.row - kBodyCells},
                            {cell.column + kBodyCells + 1, cell.row + kBodyCells + 1}};
    const CellWindow& now = passed_.window();
    if (!(intersection(needed, now) == needed)) {
        const CellWindow base = now.empty() ? needed : now;
        passed_.moveTo({{std::min(base.low.column, needed.low.column - kGrowByCells),
                         std::min(base.low.row, needed.low.row - kGrowByCells)},
                        {std::max(base.end.column, needed.end.column + kGrowByCells),
                         std::max(base.end.row, needed.end.row + kGrowByCells)}});
    }
    for (int row = -kBodyCells; row <= kBodyCells; ++row) {
        for (int column = -kBodyCells; column <= kBodyCells; ++column) {
            const CellIndex under{cell.column + column, cell.row + row};
            if (column * column + row * row <= kBodyCells * kBodyCells && passed_.at(under) == kNever) {
                passed_.set(under, kUnder);
            }
        }
    }
    passed_.set(cell, kCentre);
}

std::optional<CellIndex> Track::nearest(PointMm place, const Usable& usable) const
{
    std::optional<CellIndex> best;
    double best_mm = 0;
    for (auto point = points_.rbegin(); point != points_.rend(); ++point) {
        const double away = distance(centreOf(point->cell), place);
        if ((!best || away < best_mm) && usable(point->cell)) {
            best = point->cell;
            best_mm = away;
        }
    }
    return best;
}

std::optional<CellIndex> Track::last(const Usable& usable) const
{
    const auto found = std::find_if(points_.rbegin(), points_.rend(),
                                    [&usable](const Point& point) { return usable(point.cell); });
    return found == points_.rend() ? std::nullopt : std::optional(found->cell);
}

std::optional<CellIndex> Track::lastWithin(PointMm place, double radius_mm, const Usable& usable) const
{
    return last([&](CellIndex cell) { return distance(centreOf(cell), place) <= radius_mm && usable(cell); });
}

}  // namespace vemra::robot
