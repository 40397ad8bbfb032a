#include <algorithm>
#include <cmath>
#include <optional>

#include "robot/geometry/fitted_line.h"
#include "robot/world/walls.h"

namespace vemra::robot {
namespace {

constexpr double kStepMm = Home::kCellMm / 2;
// The line of a wall is laid through what its surface is within this.
constexpr double kFitWithinMm = 400;
constexpr int kFitCells = 8;
constexpr int kBodyCells = 5;
constexpr std::size_t kLeastEdges = 8;
// The steps of a straight wall are no deeper.
constexpr double kDeepestStepMm = 80;
constexpr double kWallBehindMm = 100;
// Walls along rows and columns are found otherwise.
constexpr double kAlongGridDeg = 2;
constexpr int kEveryCells = 3;
constexpr PointMm kBeside[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};

double dot(PointMm a, PointMm b)
{
    return a.x * b.x + a.y * b.y;
}

// A straight line: a point on it, its direction, and the direction into the room.
struct Surface
{
    PointMm at;
    PointMm along;
    PointMm into;
};

class SlantSearch
{
public:
    SlantSearch(const Home& home, const WallNeeds& needs) : home_(home), needs_(needs) {}

    [[nodiscard]] std::optional<WallStretch> stretchAt(CellIndex cell) const
    {
        const auto surface = surfaceAt(cell);
        if (!surface) {
            return std::nullopt;
        }
        const double angle = degreesOfRadians(std::atan2(surface->into.y, surface->into.x)).value;
        if (std::abs(angle - 90 * std::round(angle / 90)) < kAlongGridDeg) {
            return std::nullopt;
        }
        const double ahead = extent(*surface, 1);
        const double back = extent(*surface, -1);
        if (ahead + back < needs_.length_mm) {
            return std::nullopt;
        }
        // A tenth of a degree is as well as cells tell it.
        return WallStretch{surface->at + 0.5 * (ahead - back) * surface->along,
                           wrapped({std::round(10 * angle) / 10}), ahead + back};
    }

private:
    // From the wall's body, of which half lies around the cell, into the room; nothing beside no wall.
    [[nodiscard]] std::optional<PointMm> awayFromWall(CellIndex cell) const
    {
        PointMm sum;
        for (int row = -kBodyCells; row <= kBodyCells; ++row) {
            for (int column = -kBodyCells; column <= kBodyCells; ++column) {
                if (home_.at(CellIndex{cell.column + column, cell.row + row}) == CellState::Occupied) {
                    sum = sum - PointMm{static_cast<double>(column), static_cast<double>(row)};
                }
            }
        }
        const double length = std::hypot(sum.x, sum.y);
        return length > 0 ? std::optional((1 / length) * sum) : std::nullopt;
    }

    // The middles of the edges between free floor and the wall, on this side of it.
    [[nodiscard]] std::vector<PointMm> edgesAround(CellIndex cell, PointMm away) const
    {
        std::vector<PointMm> edges;
        const PointMm middle = home_.centreOf(cell);
        for (int row = -kFitCells; row <= kFitCells; ++row) {
            for (int column = -kFitCells; column <= kFitCells; ++column) {
                const CellIndex free{cell.column + column, cell.row + row};
                if (home_.at(free) != CellState::Free ||
                    distance(home_.centreOf(free), middle) > kFitWithinMm) {
                    continue;
                }
                for (const PointMm beside : kBeside) {
                    const PointMm edge = home_.centreOf(free) + kStepMm * beside;
                    if (dot(beside, away) < -0.05 &&
                        home_.at(edge + kStepMm * beside) == CellState::Occupied) {
                        edges.push_back(edge);
                    }
                }
            }
        }
        return edges;
    }

    // The line of least squares through the edges, shifted before the outermost of them.
    [[nodiscard]] std::optional<Surface> surfaceAt(CellIndex cell) const
    {
        const auto away = awayFromWall(cell);
        if (!away) {
            return std::nullopt;
        }
        const std::vector<PointMm> edges = edgesAround(cell, *away);
        if (edges.size() < kLeastEdges) {
            return std::nullopt;
        }
        const FittedLine line = fittedLine(edges);
        const PointMm mean = line.mean;
        const PointMm along = direction(line.along);
        Surface surface{mean, along, {-along.y, along.x}};
        if (dot(surface.into, *away) < 0) {
            surface.into = -1.0 * surface.into;
        }
        double outermost = 0;
        double innermost = 0;
        for (const PointMm edge : edges) {
            const double out = dot(edge - mean, surface.into);
            outermost = std::max(outermost, out);
            innermost = std::min(innermost, out);
        }
        if (outermost - innermost > kDeepestStepMm) {
            return std::nullopt;
        }
        surface.at = mean + (outermost + 1) * surface.into;
        return surface;
    }

    [[nodiscard]] bool isFreeWall(const Surface& surface, double along_mm) const
    {
        const PointMm foot = surface.at + along_mm * surface.along;
        bool behind = false;
        for (double deep = 0; deep <= kWallBehindMm && !behind; deep += kStepMm) {
            behind = home_.at(foot - deep * surface.into) == CellState::Occupied;
        }
        bool free = behind;
        for (double out = kStepMm; out <= needs_.depth_mm && free; out += kStepMm) {
            free = home_.at(foot + out * surface.into) == CellState::Free;
        }
        return free;
    }

    // How far the wall goes on as it is.
    [[nodiscard]] double extent(const Surface& surface, double sign) const
    {
        double reached = 0;
        while (isFreeWall(surface, sign * (reached + kStepMm))) {
            reached += kStepMm;
        }
        return reached;
    }

    const Home& home_;
    const WallNeeds& needs_;
};

}  // namespace

std::vector<WallStretch> slantedWalls(const Home& home, const WallNeeds& needs)
{
    const SlantSearch search(home, needs);
    std::vector<WallStretch> found;
    for (int row = 0; row < home.rows(); ++row) {
        for (int column = row % kEveryCells; column < home.columns(); column += kEveryCells) {
            const CellIndex cell{column, row};
            const bool at_wall =
                home.at(cell) == CellState::Free &&
                std::any_of(std::begin(kBeside), std::end(kBeside), [&](PointMm beside) {
                    return home.at(home.centreOf(cell) + Home::kCellMm * beside) == CellState::Occupied;
                });
            if (at_wall) {
                if (const auto stretch = search.stretchAt(cell)) {
                    found.push_back(*stretch);
                }
            }
        }
    }
    return found;
}

}  // namespace vemra::robot
