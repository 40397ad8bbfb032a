#include "robot/world/home.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <stdexcept>
#include <utility>

namespace vemra::robot {
namespace {

int floorCell(double offset_mm)
{
    // Far outside is outside, however far: keeps the cast in range.
    return static_cast<int>(std::clamp(std::floor(offset_mm / Home::kCellMm), -1e9, 1e9));
}

}  // namespace

Home::Home(int columns, int rows, PointMm origin, std::vector<CellState> cells)
    : columns_(columns), rows_(rows), origin_(origin), cells_(std::move(cells))
{
    if (columns <= 0 || rows <= 0 ||
        cells_.size() != static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows)) {
        throw std::invalid_argument("a home needs columns * rows cells, at least one");
    }
}

bool Home::contains(CellIndex cell) const
{
    return cell.column >= 0 && cell.column < columns_ && cell.row >= 0 && cell.row < rows_;
}

CellIndex Home::cellOf(PointMm point) const
{
    return {floorCell(point.x - origin_.x), floorCell(point.y - origin_.y)};
}

PointMm Home::centreOf(CellIndex cell) const
{
    return {origin_.x + (cell.column + 0.5) * kCellMm, origin_.y + (cell.row + 0.5) * kCellMm};
}

CellState Home::at(CellIndex cell) const
{
    if (!contains(cell)) {
        return CellState::Unknown;
    }
    return cells_[static_cast<std::size_t>(cell.row) * static_cast<std::size_t>(columns_) +
                  static_cast<std::size_t>(cell.column)];
}

void Home::set(CellIndex cell, CellState state)
{
    if (contains(cell)) {
        cells_[static_cast<std::size_t>(cell.row) * static_cast<std::size_t>(columns_) +
               static_cast<std::size_t>(cell.column)] = state;
    }
}

bool Home::isDiscFree(PointMm centre, double radius_mm) const
{
    if (!contains(cellOf(centre))) {
        return false;
    }
    // A micrometre of slack: a disc laid exactly against a wall touches it and no more.
    const double reach = std::max(radius_mm - 1e-3, 0.0);
    const CellIndex low = cellOf(centre - PointMm{reach, reach});
    const CellIndex high = cellOf(centre + PointMm{reach, reach});
    for (int row = low.row; row <= high.row; ++row) {
        for (int column = low.column; column <= high.column; ++column) {
            if (at(CellIndex{column, row}) == CellState::Free) {
                continue;
            }
            const PointMm middle = centreOf({column, row});
            const double dx = std::max(std::abs(centre.x - middle.x) - kCellMm / 2, 0.0);
            const double dy = std::max(std::abs(centre.y - middle.y) - kCellMm / 2, 0.0);
            if (dx * dx + dy * dy <= reach * reach) {
                return false;
            }
        }
    }
    return true;
}

std::optional<double> Home::castRay(PointMm from, Degrees heading, double max_mm) const
{
    // Beyond this everything is outside, whatever the heading.
    const double limit =
        std::min(max_mm, distance(from, origin_) + distance(origin_, farCorner()) + 2 * kCellMm);
    const PointMm step = direction(heading);
    CellIndex cell = cellOf(from);

    // For each axis: the length along the ray to the next border between cells, and from border to border.
    struct Axis
    {
        int sign;
        double next;
        double stride;
    };
    const auto axis = [](double offset, int index, double slope) -> Axis {
        if (slope == 0) {
            return {0, std::numeric_limits<double>::infinity(), 0};
        }
        const double border = (index + (slope > 0 ? 1 : 0)) * kCellMm;
        return {slope > 0 ? 1 : -1, (border - offset) / slope, kCellMm / std::abs(slope)};
    };
    Axis x = axis(from.x - origin_.x, cell.column, step.x);
    Axis y = axis(from.y - origin_.y, cell.row, step.y);

    // The loop of the laser: the place in the array is carried along, and one comparison an axis tells a cell
    // inside the grid from one outside.
    const CellState* const cells = cells_.data();
    std::ptrdiff_t index = static_cast<std::ptrdiff_t>(cell.row) * columns_ + cell.column;
    const std::ptrdiff_t row_step = static_cast<std::ptrdiff_t>(y.sign) * columns_;
    double length = 0;
    while (length <= limit) {
        if (static_cast<unsigned>(cell.column) < static_cast<unsigned>(columns_) &&
            static_cast<unsigned>(cell.row) < static_cast<unsigned>(rows_) &&
            cells[index] == CellState::Occupied) {
            return length;
        }
        if (x.next <= y.next) {
            length = x.next;
            x.next += x.stride;
            cell.column += x.sign;
            index += x.sign;
        } else {
            length = y.next;
            y.next += y.stride;
            cell.row += y.sign;
            index += row_step;
        }
    }
    return std::nullopt;
}

double Home::freeAreaM2() const
{
    const auto free = std::count(cells_.begin(), cells_.end(), CellState::Free);
    return static_cast<double>(free) * kCellMm * kCellMm / 1e6;
}

}  // namespace vemra::robot
