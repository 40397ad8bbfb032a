#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <vector>

#include "robot/world/home.h"

namespace vemra::robot {

/// The edge of a grid cell, mm. Cell (0, 0) has its lower left corner in the map's origin; coordinates may be
/// negative.
inline constexpr double kCellMm = Home::kCellMm;

inline CellIndex cellAt(PointMm point)
{
    return {static_cast<int>(std::floor(point.x / kCellMm)), static_cast<int>(std::floor(point.y / kCellMm))};
}

inline PointMm centreOf(CellIndex cell)
{
    return {(cell.column + 0.5) * kCellMm, (cell.row + 0.5) * kCellMm};
}

/// The square with the point in its middle and edges twice as long as half_mm.
inline BoxMm squareAround(PointMm centre, double half_mm)
{
    return {centre - PointMm{half_mm, half_mm}, centre + PointMm{half_mm, half_mm}};
}

/// A rectangle of cells: `low` belongs to it, `end` lies one beyond it in both directions.
struct CellWindow
{
    CellIndex low;
    CellIndex end;

    int columns() const { return end.column - low.column; }
    int rows() const { return end.row - low.row; }
    bool empty() const { return columns() <= 0 || rows() <= 0; }
    std::size_t cells() const
    {
        return empty() ? 0 : static_cast<std::size_t>(columns()) * static_cast<std::size_t>(rows());
    }
    bool contains(CellIndex cell) const
    {
        return cell.column >= low.column && cell.column < end.column && cell.row >= low.row &&
               cell.row < end.row;
    }
    /// The place of a cell of the window in an array that holds it row by row.
    std::size_t indexOf(CellIndex cell) const
    {
        return static_cast<std::size_t>(cell.row - low.row) * static_cast<std::size_t>(columns()) +
               static_cast<std::size_t>(cell.column - low.column);
    }
    CellIndex cellOf(std::size_t index) const
    {
        const auto width = static_cast<std::size_t>(columns());
        return {low.column + static_cast<int>(index % width), low.row + static_cast<int>(index / width)};
    }
    bool operator==(const CellWindow&) const = default;
};

inline CellWindow intersection(const CellWindow& a, const CellWindow& b)
{
    return {{std::max(a.low.column, b.low.column), std::max(a.low.row, b.low.row)},
            {std::min(a.end.column, b.end.column), std::min(a.end.row, b.end.row)}};
}

/// The cells that a rectangle touches.
inline CellWindow cellsOf(const BoxMm& rect)
{
    const CellIndex high = cellAt(rect.high);
    return {cellAt(rect.low), {high.column + 1, high.row + 1}};
}

/// A value for each cell of a window; `outside` everywhere else.
template <class T>
class Grid
{
public:
    explicit Grid(T outside = T{}) : outside_(outside) {}
    Grid(const CellWindow& window, T fill, T outside)
        : window_(window), cells_(window.cells(), fill), outside_(outside)
    {}

    const CellWindow& window() const { return window_; }
    bool contains(CellIndex cell) const { return window_.contains(cell); }
    const T& at(CellIndex cell) const
    {
        return window_.contains(cell) ? cells_[window_.indexOf(cell)] : outside_;
    }
    /// Writes a cell of the window; any other is left alone.
    void set(CellIndex cell, const T& value)
    {
        if (window_.contains(cell)) {
            cells_[window_.indexOf(cell)] = value;
        }
    }
    const std::vector<T>& cells() const { return cells_; }
    std::vector<T>& cells() { return cells_; }

    /// Moves to another window; cells that are new hold the value of outside.
    void moveTo(const CellWindow& window)
    {
        Grid moved(window, outside_, outside_);
        const CellWindow both = intersection(window, window_);
        for (int row = both.low.row; row < both.end.row; ++row) {
            for (int column = both.low.column; column < both.end.column; ++column) {
                moved.set({column, row}, at({column, row}));
            }
        }
        *this = std::move(moved);
    }

private:
    CellWindow window_;
    std::vector<T> cells_;
    T outside_;
};

}  // namespace vemra::robot
