#include "robot/services/navigation/goals/trajectory.h"

#include <memory>

#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/maps/grid_maps.h"

namespace vemra::robot {
namespace {

// The robot has "really passed" a goal when its track came so near.
constexpr double kNearGoalMm = 600;

BT::NodeStatus write(BT::TreeNode& node, const char* port, const std::optional<CellIndex>& cell)
{
    const std::string key = textOf(node, port);
    if (!cell || key.empty()) {
        return BT::NodeStatus::FAILURE;
    }
    node.blackboard()->set(key, *cell);
    return BT::NodeStatus::SUCCESS;
}

}  // namespace

Track::Usable TrajectoryService::usable(const BT::TreeNode& node) const
{
    const bool by_laser_alone = isText(node, "search_for", "slamclear");
    const bool with_neighbours = node.getParam<bool>("with_nb8").value_or(false);
    const OccupancyMap& laser = map_.occupancy();
    const auto plan = std::make_shared<const PlanningMap>(
        by_laser_alone ? makePlanningMap(laser.states(laser.window()), {}) : planningMapOf(map_, switches_));
    return [plan, with_neighbours](CellIndex cell) {
        return with_neighbours ? isOpenAround(*plan, cell) : plan->at(cell) == Ground::Open;
    };
}

void TrajectoryService::install(leaf::LeafHost& host)
{
    host.action("FindNearestInTrajectory", [this](BT::TreeNode& node) {
        const auto from = pointOf(node, "start_from");
        return write(node, "out_point_grid", from ? map_.track().nearest(*from, usable(node)) : std::nullopt);
    });
    host.action("FindLastInTrajectory", [this](BT::TreeNode& node) {
        const auto from = pointOf(node, "start_from");
        const Track::Usable wanted = usable(node);
        if (!from) {
            return write(node, "out_point_grid", map_.track().last(wanted));
        }
        auto cell = map_.track().lastWithin(*from, kNearGoalMm, wanted);
        if (!cell) {
            cell = map_.track().nearest(*from, wanted);
        }
        return write(node, "out_point_grid", cell);
    });
    host.action("GetRobotTrajectorySize", [this](BT::TreeNode& node) {
        const std::string key = textOf(node, "out_size");
        if (key.empty()) {
            return BT::NodeStatus::FAILURE;
        }
        node.blackboard()->set(key, map_.track().size());
        return BT::NodeStatus::SUCCESS;
    });
}

void TrajectoryService::update()
{
    if (map_.track().empty()) {
        parts_.blackboard.erase("robot_trajectory");
    } else {
        parts_.blackboard.set("robot_trajectory", map_.track().size());
    }
}

}  // namespace vemra::robot
