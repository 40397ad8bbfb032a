#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "robot/planning/grid_search.h"
#include "robot/planning/planning_map.h"

namespace vemra::robot {

/// A stretch of a row of cells that is worth driving along: both ends on the middles of open cells.
struct CleaningRun
{
    CellIndex first;
    CellIndex last;

    /// From one cell to the next; nothing for a run of one cell.
    [[nodiscard]] CellIndex step() const
    {
        return {(last.column > first.column) - (last.column < first.column),
                (last.row > first.row) - (last.row < first.row)};
    }
    [[nodiscard]] CellIndex middle() const
    {
        return {(first.column + last.column) / 2, (first.row + last.row) / 2};
    }
};

/// Three rows of cells are swept by one line: 150 mm, so that the 200 mm of the brush overlap.
inline constexpr int kRowsPerLine = 3;

/// The runs that are left of a floor. Lines lie in every third row (column, if they are to run along y) of
/// the map, so that those of one search fit those of the next; where no such row can be driven, unswept floor
/// gets a line of its own (exact cellular decomposition into rows; Choset 2000). `unswept` is asked for open
/// cells of the region alone. Less than 0.01 m2 is left.
std::vector<CleaningRun> cleaningRuns(const PlanningMap& plan, const CellWindow& region, bool along_y,
                                      const std::function<bool(CellIndex)>& unswept);

/// The run that has an end nearest to a place by way, turned so that it begins there. Nothing when none can
/// be reached.
std::optional<CleaningRun> nearestRun(const std::vector<CleaningRun>& runs, const CostGrid& costs,
                                      CellIndex from);

}  // namespace vemra::robot
