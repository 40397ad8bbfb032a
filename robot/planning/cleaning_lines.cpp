#include "robot/planning/cleaning_lines.h"

#include <algorithm>
#include <utility>

namespace vemra::robot {
namespace {

// Swept floor between two unswept stretches of a row is driven over when it is no longer.
constexpr int kBridgedCells = 8;
// What a drive leaves at the ends of its line is not worth another.
constexpr int kLeastCells = 3;

int floorMod(int value, int by)
{
    return ((value % by) + by) % by;
}

}  // namespace

std::vector<CleaningRun> cleaningRuns(const PlanningMap& plan, const CellWindow& region, bool along_y,
                                      const std::function<bool(CellIndex)>& unswept)
{
    const CellWindow window = intersection(region, plan.window());
    std::vector<CleaningRun> runs;
    if (window.empty()) {
        return runs;
    }
    Grid<unsigned char> left(window, 0, 0);
    for (int row = window.low.row; row < window.end.row; ++row) {
        for (int column = window.low.column; column < window.end.column; ++column) {
            const CellIndex cell{column, row};
            left.set(cell, plan.at(cell) == Ground::Open && unswept(cell) ? 1 : 0);
        }
    }
    // `line` counts across the lines, `place` along them.
    const auto cellOf = [along_y](int line, int place) {
        return along_y ? CellIndex{line, place} : CellIndex{place, line};
    };
    const int first_line = along_y ? window.low.column : window.low.row;
    const int end_line = along_y ? window.end.column : window.end.row;
    const int first_place = along_y ? window.low.row : window.low.column;
    const int end_place = along_y ? window.end.row : window.end.column;
    const auto open = [&](int line, int place) { return plan.at(cellOf(line, place)) == Ground::Open; };
    // Is there something in this place that a line here would sweep, and none in a better row?
    const auto wanted = [&](int line, int place) {
        if (!open(line, place)) {
            return false;
        }
        const int phase = floorMod(line, kRowsPerLine);
        if (phase == 0) {
            return left.at(cellOf(line, place)) != 0 || left.at(cellOf(line - 1, place)) != 0 ||
                   left.at(cellOf(line + 1, place)) != 0;
        }
        return left.at(cellOf(line, place)) != 0 && !open(phase == 1 ? line - 1 : line + 1, place);
    };
    const auto leftAt = [&](int line, int place) {
        return int{left.at(cellOf(line - 1, place))} + int{left.at(cellOf(line, place))} +
               int{left.at(cellOf(line + 1, place))};
    };
    for (int line = first_line; line < end_line; ++line) {
        std::optional<std::pair<int, int>> run;
        int cells = 0;
        const auto finish = [&] {
            if (run && cells >= kLeastCells) {
                runs.push_back({cellOf(line, run->first), cellOf(line, run->second)});
            }
            run.reset();
            cells = 0;
        };
        for (int place = first_place; place < end_place; ++place) {
            if (!open(line, place)) {
                finish();
            } else if (wanted(line, place)) {
                if (run && place - run->second > kBridgedCells) {
                    finish();
                }
                run = run ? std::pair{run->first, place} : std::pair{place, place};
                cells += leftAt(line, place);
            }
        }
        finish();
    }
    return runs;
}

std::optional<CleaningRun> nearestRun(const std::vector<CleaningRun>& runs, const CostGrid& costs,
                                      CellIndex from)
{
    Grid<int> ends(costs.window(), 0, 0);
    for (std::size_t i = 0; i < runs.size(); ++i) {
        ends.set(runs[i].first, static_cast<int>(i) + 1);
        ends.set(runs[i].last, static_cast<int>(i) + 1);
    }
    const auto way = findNearest(costs, from, [&](CellIndex cell) { return ends.at(cell) != 0; });
    if (!way) {
        return std::nullopt;
    }
    CleaningRun run = runs[static_cast<std::size_t>(ends.at(way->cells.back())) - 1];
    if (run.first != way->cells.back()) {
        std::swap(run.first, run.last);
    }
    return run;
}

}  // namespace vemra::robot
