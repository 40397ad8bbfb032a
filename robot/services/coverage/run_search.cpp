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

// The narrowest place of the gaps on a way that the robot has not been through; none: there is no such gap.
std::optional<CellIndex> gapToTry(const SearchGround& ground, const GridPath& way)
{
    std::optional<CellIndex> narrowest;
    for (const CellIndex cell : way.cells) {
        if (ground.plan.at(cell) == Ground::Tight && !(cell == ground.from) &&
            !ground.known.track().passed(cell) &&
            (!narrowest || ground.plan.room.at(cell) < ground.plan.room.at(*narrowest))) {
            narrowest = cell;
        }
    }
    return narrowest;
}

constexpr char kGap[] = "gap";

}  // namespace

bool isOpenWay(const SearchGround& ground, const GridPath& way, const OfferBook& offers)
{
    const auto gap = gapToTry(ground, way);
    return !gap || (isRoomToGetAbout(ground.plan, way.cells.back()) && offers.isOpen(kGap, centreOf(*gap)));
}

bool takeWay(const SearchGround& ground, const GridPath& way, OfferBook& offers)
{
    if (!isOpenWay(ground, way, offers)) {
        return false;
    }
    const auto gap = gapToTry(ground, way);
    return !gap || offers.take(kGap, centreOf(*gap));
}

std::optional<GridPath> wayToNearestRun(const SearchGround& ground, std::vector<CleaningRun> runs,
                                        OfferBook& offers,
                                        const std::function<bool(const CleaningRun&)>& takes)
{
    while (const auto run = nearestRun(runs, ground.costs, ground.from)) {
        auto way = findPath(ground.costs, ground.from, run->first);
        if (way && isOpenWay(ground, *way, offers) && takes(*run)) {
            takeWay(ground, *way, offers);
            return way;
        }
        std::erase_if(runs, [&](const CleaningRun& other) {
            return other.first == run->first || other.last == run->first;
        });
    }
    return std::nullopt;
}

}  // namespace vemra::robot
