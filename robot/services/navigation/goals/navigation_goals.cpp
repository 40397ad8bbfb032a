#include "robot/services/navigation/goals/navigation_goals.h"

#include <limits>

#include "robot/services/blackboard/blackboard_types.h"

namespace vemra::robot {
namespace {

constexpr int kFrontierCells = 3;
constexpr double kNearChargerMm = 1000;

bool inRegion(const SearchGround& ground, CellIndex cell)
{
    return !ground.region || contains(*ground.region, centreOf(cell));
}

}  // namespace

std::optional<GridPath> nearestUncovered(const SearchGround& ground)
{
    return findNearest(ground.costs, ground.from, [&](CellIndex cell) {
        return inRegion(ground, cell) && ground.plan.at(cell) == Ground::Open &&
               !ground.known.track().covered(cell);
    });
}

std::optional<GridPath> nearestFrontier(const SearchGround& ground, FrontierBook& book)
{
    book.turnTo(ground.known.resets());
    auto way = findNearest(ground.costs, ground.from, [&](CellIndex cell) {
        if (!inRegion(ground, cell) || ground.plan.at(cell) != Ground::Open) {
            return false;
        }
        int unknown = 0;
        for (int row = -1; row <= 1; ++row) {
            for (int column = -1; column <= 1; ++column) {
                const Ground beside = ground.plan.at({cell.column + column, cell.row + row});
                unknown += beside == Ground::Unknown ? 1 : 0;
            }
        }
        return unknown >= kFrontierCells && book.isOpen(cell);
    });
    if (way) {
        book.give(way->cells.back());
    }
    return way;
}

std::optional<GridPath> chargerOrFarthest(const SearchGround& ground)
{
    for (const char* key : {"charger_position", "only_charger_in_map", "global_charger_pose"}) {
        if (const auto charger = pointOf(ground.keys, key)) {
            if (auto way = findWay(ground.plan, ground.costs, ground.from, *charger, kNearChargerMm)) {
                return way;
            }
        }
    }
    // Every tenth point of the track stands for the others.
    const auto& track = ground.known.track().points();
    const auto fromTrack = [&](CellIndex cell) {
        double nearest = std::numeric_limits<double>::infinity();
        for (std::size_t i = 0; i < track.size(); i += 10) {
            nearest = std::min(nearest, distance(centreOf(track[i].cell), centreOf(cell)));
        }
        return nearest;
    };
    std::optional<CellIndex> farthest;
    double farthest_mm = 0;
    findNearest(ground.costs, ground.from, [&](CellIndex cell) {
        // One cell of a block of eight by eight is enough to look at.
        if (cell.column % 8 == 0 && cell.row % 8 == 0 && inRegion(ground, cell) &&
            ground.plan.at(cell) == Ground::Open) {
            if (const double away = fromTrack(cell); away > farthest_mm) {
                farthest = cell;
                farthest_mm = away;
            }
        }
        return false;
    });
    return farthest ? findPath(ground.costs, ground.from, *farthest) : std::nullopt;
}

}  // namespace vemra::robot
