#include "robot/services/navigation/explore/navigation_explore.h"

#include <limits>
#include <string>

#include "robot/planning/planner.h"
#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/maps/grid_maps.h"

namespace vemra::robot {
namespace {

constexpr char kGoal[] = "navi_target_point";
// A goal at the edge of the unknown has been looked at when nothing unknown is left so near to it.
constexpr int kLookedAtCells = 4;

}  // namespace

void ExploreLeaves::install(leaf::LeafHost& host)
{
    host.condition("ExploreTargetClear", [this](BT::TreeNode&) { return passed(targetIsKnown()); });
    // The search's goal stands on open floor with the unknown in sight: there is nothing to better.
    host.action("ExploreOpt", [this](BT::TreeNode&) { return passed(parts_.blackboard.contains(kGoal)); });
    host.action("FindNearestTarget", [this](BT::TreeNode&) { return takeNearestReachable(); });
}

bool ExploreLeaves::targetIsKnown() const
{
    const auto goal = pointOf(parts_.blackboard, kGoal);
    if (!goal) {
        return false;
    }
    const CellIndex at = cellAt(*goal);
    for (int row = -kLookedAtCells; row <= kLookedAtCells; ++row) {
        for (int column = -kLookedAtCells; column <= kLookedAtCells; ++column) {
            if (map_.occupancy().at({at.column + column, at.row + row}) == CellState::Unknown) {
                return false;
            }
        }
    }
    return true;
}

BT::NodeStatus ExploreLeaves::takeNearestReachable()
{
    const auto goal = pointOf(parts_.blackboard, kGoal);
    if (!goal) {
        return BT::NodeStatus::FAILURE;
    }
    const PlanningMap plan = planningMapOf(map_, switches_);
    const CellIndex from = cellAt(map_.pose().at);
    const CostGrid costs = costsFor(plan, from, {.unknown = false});
    const auto way = findWayCloseTo(costs, from, *goal, std::numeric_limits<double>::infinity());
    if (!way) {
        return BT::NodeStatus::FAILURE;
    }
    parts_.blackboard.set(kGoal, centreOf(way->cells.back()));
    return BT::NodeStatus::SUCCESS;
}

}  // namespace vemra::robot
