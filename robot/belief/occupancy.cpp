#include "robot/belief/occupancy.h"

#include <limits>

namespace vemra::robot {
namespace {

constexpr int kHit = 4;
constexpr int kMiss = -1;
constexpr int kLeast = -12;
constexpr int kMost = 16;
constexpr int kOccupiedFrom = 3;
constexpr int kFreeUpTo = -1;
// A beam ends on a surface, and noise puts half of the ends before it: the thing lies a little behind.
constexpr double kBehindSurfaceMm = 15;
constexpr int kGrowByCells = 20;

// Visits the cells from one point to another, the last one left out (Amanatides and Woo 1987).
template <class Visit>
void visitCells(PointMm from, PointMm to, const Visit& visit)
{
    CellIndex cell = cellAt(from);
    const CellIndex last = cellAt(to);
    const PointMm way = to - from;
    struct Axis
    {
        int sign;
        double next;
        double stride;
    };
    const auto axis = [](double at, int index, double length) -> Axis {
        if (length == 0) {
            return {0, std::numeric_limits<double>::infinity(), 0};
        }
        const double border = (index + (length > 0 ? 1 : 0)) * kCellMm;
        return {length > 0 ? 1 : -1, (border - at) / length, kCellMm / std::abs(length)};
    };
    Axis x = axis(from.x, cell.column, way.x);
    Axis y = axis(from.y, cell.row, way.y);
    int left = std::abs(last.column - cell.column) + std::abs(last.row - cell.row);
    for (; left > 0; --left) {
        visit(cell);
        if (x.next <= y.next) {
            x.next += x.stride;
            cell.column += x.sign;
        } else {
            y.next += y.stride;
            cell.row += y.sign;
        }
    }
}

}  // namespace

CellState OccupancyMap::stateOf(std::int8_t evidence)
{
    return evidence >= kOccupiedFrom ? CellState::Occupied
           : evidence <= kFreeUpTo   ? CellState::Free
                                     : CellState::Unknown;
}

void OccupancyMap::put(CellIndex cell, std::int8_t evidence)
{
    if (stateOf(evidence_.at(cell)) != stateOf(evidence)) {
        ++version_;
    }
    evidence_.set(cell, evidence);
}

void OccupancyMap::include(const CellWindow& window)
{
    const CellWindow& now = evidence_.window();
    if (now.empty()) {
        ++version_;
        evidence_.moveTo(window);
        seen_in_.moveTo(window);
        return;
    }
    CellWindow grown = now;
    const auto lower = [](int& low, int end, int wanted) {
        if (wanted < low) {
            low = std::max(wanted - kGrowByCells, end - kMostCells);
        }
    };
    const auto raise = [](int low, int& end, int wanted) {
        if (wanted > end) {
            end = std::min(wanted + kGrowByCells, low + kMostCells);
        }
    };
    lower(grown.low.column, grown.end.column, window.low.column);
    lower(grown.low.row, grown.end.row, window.low.row);
    raise(grown.low.column, grown.end.column, window.end.column);
    raise(grown.low.row, grown.end.row, window.end.row);
    if (!(grown == now)) {
        ++version_;
        evidence_.moveTo(grown);
        seen_in_.moveTo(grown);
    }
}

void OccupancyMap::add(CellIndex cell, int amount)
{
    if (evidence_.contains(cell) && seen_in_.at(cell) != scan_) {
        seen_in_.set(cell, scan_);
        put(cell, static_cast<std::int8_t>(std::clamp(evidence_.at(cell) + amount, kLeast, kMost)));
    }
}

void OccupancyMap::enter(PointMm from, std::span<const Beam> beams, double max_mm)
{
    BoxMm bounds{from, from};
    std::vector<PointMm> ends;
    ends.reserve(beams.size());
    for (const Beam& beam : beams) {
        const double reach = beam.range_mm ? *beam.range_mm + kBehindSurfaceMm : max_mm;
        const PointMm end = from + reach * direction(beam.heading);
        bounds.low = {std::min(bounds.low.x, end.x), std::min(bounds.low.y, end.y)};
        bounds.high = {std::max(bounds.high.x, end.x), std::max(bounds.high.y, end.y)};
        ends.push_back(end);
    }
    include(cellsOf(bounds));
    ++scan_;
    // The ends come first: a beam that grazes a wall does not take it away.
    for (std::size_t i = 0; i < beams.size(); ++i) {
        if (beams[i].range_mm) {
            add(cellAt(ends[i]), kHit);
        }
    }
    for (std::size_t i = 0; i < beams.size(); ++i) {
        visitCells(from, ends[i], [this](CellIndex cell) { add(cell, kMiss); });
    }
}

void OccupancyMap::clearDisc(PointMm centre, double radius_mm)
{
    const CellWindow window = cellsOf(squareAround(centre, radius_mm));
    include(window);
    for (int row = window.low.row; row < window.end.row; ++row) {
        for (int column = window.low.column; column < window.end.column; ++column) {
            const CellIndex cell{column, row};
            if (distance(centreOf(cell), centre) <= radius_mm && evidence_.contains(cell)) {
                put(cell, static_cast<std::int8_t>(std::min<int>(evidence_.at(cell), kFreeUpTo)));
            }
        }
    }
}

void OccupancyMap::reset()
{
    evidence_ = Grid<std::int8_t>{0};
    seen_in_ = Grid<std::uint32_t>{0};
    scan_ = 0;
    ++version_;
}

void OccupancyMap::load(const Grid<CellState>& cells)
{
    reset();
    include(cells.window());
    for (std::size_t i = 0; i < cells.cells().size(); ++i) {
        const CellState state = cells.cells()[i];
        const int evidence = state == CellState::Occupied ? kMost / 2
                             : state == CellState::Free   ? kLeast / 2
                                                          : 0;
        evidence_.set(cells.window().cellOf(i), static_cast<std::int8_t>(evidence));
    }
}

Grid<CellState> OccupancyMap::states(const CellWindow& window) const
{
    Grid<CellState> out(window, CellState::Unknown, CellState::Unknown);
    const CellWindow both = intersection(window, evidence_.window());
    for (int row = both.low.row; row < both.end.row; ++row) {
        for (int column = both.low.column; column < both.end.column; ++column) {
            out.set({column, row}, at({column, row}));
        }
    }
    return out;
}

std::size_t OccupancyMap::freeCells() const
{
    return static_cast<std::size_t>(
        std::count_if(evidence_.cells().begin(), evidence_.cells().end(),
                      [](std::int8_t evidence) { return stateOf(evidence) == CellState::Free; }));
}

}  // namespace vemra::robot
