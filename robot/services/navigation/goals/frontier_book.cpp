#include "robot/services/navigation/goals/frontier_book.h"

#include <algorithm>
#include <cstdlib>

namespace vemra::robot {
namespace {

constexpr int kMostTimes = 2;
constexpr int kNearCells = 3;

bool isNear(CellIndex a, CellIndex b)
{
    return std::max(std::abs(a.column - b.column), std::abs(a.row - b.row)) <= kNearCells;
}

}  // namespace

void FrontierBook::turnTo(std::uint64_t map)
{
    if (map != map_) {
        given_.clear();
        map_ = map;
    }
}

bool FrontierBook::isOpen(CellIndex place) const
{
    return std::none_of(given_.begin(), given_.end(), [place](const Given& given) {
        return given.times >= kMostTimes && isNear(given.place, place);
    });
}

void FrontierBook::give(CellIndex place)
{
    const auto before = std::find_if(given_.begin(), given_.end(),
                                     [place](const Given& given) { return isNear(given.place, place); });
    if (before == given_.end()) {
        given_.push_back({place, 1});
    } else {
        ++before->times;
    }
}

}  // namespace vemra::robot
