#include "robot/services/navigation/explore/random_points.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>

#include "robot/planning/planner.h"
#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/maps/grid_maps.h"

namespace vemra::robot {
namespace {

constexpr std::size_t kMostPoints = 20;
constexpr double kApartMm = 1500;
constexpr char kList[] = "generate_points";

std::string textOf(const std::vector<PointMm>& points)
{
    std::string text;
    for (const PointMm point : points) {
        text += fmt::format("{}{:.0f};{:.0f}", text.empty() ? "" : " ", point.x, point.y);
    }
    return text;
}

}  // namespace

BT::NodeStatus RandomPoints::generate()
{
    const PlanningMap plan = planningMapOf(map_, switches_);
    const CellIndex from = cellAt(map_.pose().at);
    std::vector<CellIndex> floor;
    findNearest(costsFor(plan, from, {.unknown = false}), from, [&](CellIndex cell) {
        if (plan.at(cell) == Ground::Open) {
            floor.push_back(cell);
        }
        return false;
    });
    left_.clear();
    // Fisher and Yates, as far as it is needed.
    for (std::size_t i = 0; i < floor.size() && left_.size() < kMostPoints; ++i) {
        std::swap(floor[i], floor[i + chance_.bits() % (floor.size() - i)]);
        const PointMm point = centreOf(floor[i]);
        const bool apart = std::all_of(left_.begin(), left_.end(),
                                       [point](PointMm other) { return distance(point, other) >= kApartMm; });
        if (apart) {
            left_.push_back(point);
        }
    }
    parts_.blackboard.set(kList, textOf(left_));
    return passed(!left_.empty());
}

// The nearest of those that are left.
BT::NodeStatus RandomPoints::takeNext()
{
    if (left_.empty()) {
        return BT::NodeStatus::FAILURE;
    }
    const PointMm at = map_.pose().at;
    const auto next = std::min_element(
        left_.begin(), left_.end(), [at](PointMm a, PointMm b) { return distance(a, at) < distance(b, at); });
    parts_.blackboard.set("navi_target_point", *next);
    left_.erase(next);
    parts_.blackboard.set(kList, textOf(left_));
    return BT::NodeStatus::SUCCESS;
}

void RandomPoints::install(leaf::LeafHost& host)
{
    for (const char* leaf : {"GenerateRandomPoint", "GenerateRandomPointPro"}) {
        host.action(leaf, [this](BT::TreeNode&) { return generate(); });
    }
    for (const char* leaf : {"SearchCharger", "SearchChargerPro"}) {
        host.action(leaf, [this](BT::TreeNode&) { return takeNext(); });
    }
}

}  // namespace vemra::robot
