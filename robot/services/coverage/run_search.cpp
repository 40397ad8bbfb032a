#include "robot/services/coverage/run_search.h"

#include <algorithm>

namespace vemra::robot {
namespace {

constexpr std::size_t kWorthATrialCells = 30;

bool isRoomToGetAbout(const PlanningMap& plan, CellIndex behind)
{
    std::vector<CellIndex> reached{behind};
    const auto isReached = [&](CellIndex cell) {
        return std::find(reached.begin(), reached.end(), cell) != reached.end();
    };
    for (std::size_t i = 0; i < reached.size() && reached.size() < kWorthATrialCells; ++i) {
        const CellIndex from = reached[i];
        for (const CellIndex step : {CellIndex{1, 0}, CellIndex{-1, 0}, CellIndex{0, 1}, CellIndex{0, -1}}) {
            const CellIndex next{from.column + step.column, from.row + step.row};
            if (plan.at(next) == Ground::Open && !isReached(next)) {
                reached.push_back(next);
            }
        }
    }
    return reached.size() >= kWorthATrialCells;
}

}  // namespace

bool leadsOverBridge(const SearchGround& ground, const GridPath& way)
{
    return std::any_of(way.cells.begin(), way.cells.end(), [&](CellIndex cell) {
        return ground.plan.at(cell) == Ground::Tight && !(cell == ground.from);
    });
}

bool isWorthIt(const SearchGround& ground, const GridPath& way)
{
    return !leadsOverBridge(ground, way) || isRoomToGetAbout(ground.plan, way.cells.back());
}

std::optional<GridPath> wayToNearestRun(const SearchGround& ground, std::vector<CleaningRun> runs,
                                        const std::function<bool(const CleaningRun&, bool)>& takes)
{
    while (const auto run = nearestRun(runs, ground.costs, ground.from)) {
        auto way = findPath(ground.costs, ground.from, run->first);
        if (way && isWorthIt(ground, *way) && takes(*run, leadsOverBridge(ground, *way))) {
            return way;
        }
        std::erase_if(runs, [&](const CleaningRun& other) {
            return other.first == run->first || other.last == run->first;
        });
    }
    return std::nullopt;
}

}  // namespace vemra::robot
