#include <benchmark/benchmark.h>

#include "robot/planning/planner.h"
#include "robot/world/map_file.h"

namespace {

using namespace vemra::robot;

// The sample flat, known as it is, with the robot in the living room.
struct Flat
{
    Grid<CellState> cells = read();
    CellIndex from = cellAt({2700, 2600});
    PlanningMap map = makePlanningMap(cells, {});
    CostGrid costs = costsFor(map, from, {});

    static Grid<CellState> read()
    {
        const Home home = readHome(VEMRA_SOURCE_DIR "/homes/flat/flat.yaml").home;
        const CellIndex low = cellAt(home.origin());
        Grid<CellState> cells({low, {low.column + home.columns(), low.row + home.rows()}}, CellState::Unknown,
                              CellState::Unknown);
        for (std::size_t i = 0; i < cells.cells().size(); ++i) {
            const CellIndex cell = cells.window().cellOf(i);
            cells.cells()[i] = home.at(CellIndex{cell.column - low.column, cell.row - low.row});
        }
        return cells;
    }
};

// Obstacles grown by the robot's radius, over the whole map.
void planningMap(benchmark::State& state)
{
    const Flat flat;
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(makePlanningMap(flat.cells, {}));
    }
}
BENCHMARK(planningMap);

// All that a search does: map, costs, the way to the bathroom, its straight lines.
void searchToTheBathroom(benchmark::State& state)
{
    const Flat flat;
    while (state.KeepRunning()) {
        const PlanningMap map = makePlanningMap(flat.cells, {});
        const CostGrid costs = costsFor(map, flat.from, {});
        const auto way = findWay(map, costs, flat.from, {7900, 5500}, 300);
        benchmark::DoNotOptimize(piecesOf(map, costs, *way));
    }
}
BENCHMARK(searchToTheBathroom);

// A goal without a way: every cell that can be reached is looked at.
void searchInVain(benchmark::State& state)
{
    const Flat flat;
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(findWay(flat.map, flat.costs, flat.from, {-400, -400}, 300));
    }
}
BENCHMARK(searchInVain);

// A floor of 2,000 m2 with pillars, and a shut room in its far corner.
Grid<CellState> hall()
{
    constexpr int kColumns = 1000;
    constexpr int kRows = 800;
    constexpr CellIndex kRoom{900, 700};
    Grid<CellState> cells({{0, 0}, {kColumns, kRows}}, CellState::Free, CellState::Unknown);
    for (int row = 0; row < kRows; ++row) {
        for (int column = 0; column < kColumns; ++column) {
            const bool rim = column == 0 || row == 0 || column == kColumns - 1 || row == kRows - 1;
            const bool pillar = column % 100 < 4 && row % 100 < 4;
            const bool shut =
                (column == kRoom.column && row >= kRoom.row) || (row == kRoom.row && column >= kRoom.column);
            if (rim || pillar || shut)
                cells.set({column, row}, CellState::Occupied);
        }
    }
    return cells;
}

// The same on the big floor, obstacles and costs included: what a robot pays once for a goal that it cannot
// get to, and again only when something has changed.
void searchInVainInAHall(benchmark::State& state)
{
    const Grid<CellState> cells = hall();
    const CellIndex from = cellAt({2500, 2500});
    while (state.KeepRunning()) {
        const PlanningMap map = makePlanningMap(cells, {});
        const CostGrid costs = costsFor(map, from, {});
        benchmark::DoNotOptimize(findWay(map, costs, from, {47500, 37500}, 300));
    }
}
BENCHMARK(searchInVainInAHall);

}  // namespace

BENCHMARK_MAIN();
