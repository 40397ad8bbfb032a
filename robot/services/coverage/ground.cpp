#include "robot/services/coverage/ground.h"

#include <algorithm>

#include "robot/services/maps/grid_maps.h"

namespace vemra::robot {
namespace {

// So many of the four quarters of a cell must be swept.
constexpr int kSweptQuarters = 3;
// Enclosed floor around a place: so much of it, within so many cells.
constexpr int kEnclosedWithin = 10;
constexpr int kEnclosedCells = 20;

}  // namespace

CellWindow windowOf(const PlanningMap& plan, const std::optional<BoxMm>& region)
{
    return region ? cellsOf(*region) : plan.window();
}

void CoverageGround::sync()
{
    if (resets_ != map_.resets()) {
        resets_ = map_.resets();
        offers_.reset();
        along_y_.reset();
        outside_of_.reset();
    }
}

PlanningMap CoverageGround::plan() const
{
    return planningMapOf(map_, switches_);
}

bool CoverageGround::longerAlongY(const PlanningMap& plan, const CellWindow& region)
{
    const CellWindow window = intersection(region, plan.window());
    CellWindow floor{window.end, window.low};
    for (int row = window.low.row; row < window.end.row; ++row) {
        for (int column = window.low.column; column < window.end.column; ++column) {
            if (plan.at({column, row}) == Ground::Open) {
                floor.low = {std::min(floor.low.column, column), std::min(floor.low.row, row)};
                floor.end = {std::max(floor.end.column, column + 1), std::max(floor.end.row, row + 1)};
            }
        }
    }
    return floor.rows() > floor.columns();
}

std::vector<CleaningRun> CoverageGround::runsOf(const PlanningMap& plan, const CellWindow& window,
                                                bool along_y, const std::function<bool(CellIndex)>& counts,
                                                std::optional<std::uint8_t> pass) const
{
    std::vector<CleaningRun> runs = cleaningRuns(plan, window, along_y, [&](CellIndex cell) {
        return map_.cleaned().sweptQuarters(cell, pass) < kSweptQuarters && (!counts || counts(cell));
    });
    std::erase_if(runs,
                  [this](const CleaningRun& run) { return !offers_.isOpen("line", centreOf(run.middle())); });
    return runs;
}

std::vector<CleaningRun> CoverageGround::runsLeft(const PlanningMap& plan, const std::optional<BoxMm>& region,
                                                  std::optional<bool> along_y)
{
    sync();
    const CellWindow window = windowOf(plan, region);
    if (along_y) {
        along_y_ = along_y;
    } else if (!along_y_) {
        along_y_ = longerAlongY(plan, window);
    }
    return runsOf(plan, window, *along_y_, {}, std::nullopt);
}

std::vector<CleaningRun> CoverageGround::runsNeverDriven(const PlanningMap& plan,
                                                         const std::optional<BoxMm>& region,
                                                         const std::function<bool(CellIndex)>& counts)
{
    sync();
    const CellWindow window = windowOf(plan, region);
    return runsOf(plan, window, longerAlongY(plan, window), counts, 1);
}

bool CoverageGround::isUntraced(CellIndex cell, PointMm from) const
{
    return map_.occupancy().at(cell) == CellState::Occupied && !map_.tracedWalls().isTraced(cell, from);
}

const Grid<unsigned char>& CoverageGround::outside()
{
    const std::uint64_t version = map_.tracedWalls().version();
    if (outside_of_ != version) {
        outside_ = map_.tracedWalls().outside();
        outside_of_ = version;
    }
    return outside_;
}

bool CoverageGround::isEnclosed(const PlanningMap& plan, PointMm place)
{
    sync();
    const CellIndex middle = cellAt(place);
    const Grid<unsigned char>& out = outside();
    int enclosed = 0;
    for (int row = -kEnclosedWithin; row <= kEnclosedWithin; ++row) {
        for (int column = -kEnclosedWithin; column <= kEnclosedWithin; ++column) {
            const CellIndex cell{middle.column + column, middle.row + row};
            enclosed +=
                out.at(cell) == 0 && !map_.tracedWalls().isWay(cell) && plan.at(cell) == Ground::Open ? 1 : 0;
        }
    }
    return enclosed >= kEnclosedCells;
}

}  // namespace vemra::robot
