#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "robot/geometry/points.h"

namespace vemra::robot {

enum class CellState : std::uint8_t
{
    Free,
    Occupied,
    Unknown
};

/// Column grows with x, row with y.
struct CellIndex
{
    int column = 0;
    int row = 0;
    bool operator==(const CellIndex&) const = default;
};

/// The home as it is: a grid of 50 mm cells. This is ground truth; what the robot knows of it is kept
/// elsewhere.
class Home
{
public:
    static constexpr double kCellMm = 50;

    /// origin is the lower left corner of cell (0, 0); cells go row by row from the lowest, columns * rows of
    /// them. Throws std::invalid_argument if the sizes do not fit together.
    Home(int columns, int rows, PointMm origin, std::vector<CellState> cells);

    int columns() const { return columns_; }
    int rows() const { return rows_; }
    PointMm origin() const { return origin_; }
    PointMm farCorner() const { return {origin_.x + columns_ * kCellMm, origin_.y + rows_ * kCellMm}; }

    bool contains(CellIndex cell) const;
    CellIndex cellOf(PointMm point) const;
    PointMm centreOf(CellIndex cell) const;

    /// Whatever lies outside the grid is unknown.
    CellState at(CellIndex cell) const;
    CellState at(PointMm point) const { return at(cellOf(point)); }

    /// Cells outside the grid are left alone.
    void set(CellIndex cell, CellState state);

    /// Whether a disc stands on free cells alone. Touching the edge of a wall is allowed.
    bool isDiscFree(PointMm centre, double radius_mm) const;

    /// How far it is to the first occupied cell; 0 from within one; nothing within max_mm gives no value.
    /// Unknown cells do not stop a ray.
    std::optional<double> castRay(PointMm from, Degrees heading, double max_mm) const;

    double freeAreaM2() const;

private:
    int columns_;
    int rows_;
    PointMm origin_;
    std::vector<CellState> cells_;
};

}  // namespace vemra::robot
