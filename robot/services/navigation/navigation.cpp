#include "robot/services/navigation/navigation.h"

#include <string>

#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/navigation/goals/navigation_points.h"

namespace vemra::robot {

NavigationService::NavigationService(const RobotParts& parts, RobotMap& map, const SensorSwitches& switches)
    : parts_(parts),
      chance_(parts.chance.branch()),
      map_(map),
      view_{map_, switches},
      grid_maps_(parts, map_, switches),
      borders_(parts, map_, switches),
      steps_(parts, map_),
      trajectory_(parts, map_, switches),
      bridges_(parts, map_, switches),
      search_(parts, map_, switches, bridges_.book()),
      explore_(parts, map_, switches),
      random_points_(parts, map_, switches)
{}

void NavigationService::update()
{
    grid_maps_.update();
    borders_.update();
    trajectory_.update();
}

void NavigationService::install(leaf::LeafHost& host)
{
    grid_maps_.install(host);
    borders_.install(host);
    steps_.install(host);
    trajectory_.install(host);
    bridges_.install(host);
    search_.install(host);
    explore_.install(host);
    random_points_.install(host);
    installPointLeaves(host);
    installRandomPoint(host);
    Body& body = parts_.body;
    host.builder("DwaLocalPlanner", MotionAction::builder<PathDriveAction>(body, view_));
    host.builder("BridgeNavi", MotionAction::builder<PathDriveAction>(body, view_));
    host.builder("NaviOnePoint", MotionAction::builder<PointDriveAction>(body, view_));
}

void NavigationService::installRandomPoint(leaf::LeafHost& host)
{
    host.action("RandomPointNearAnother", [this](BT::TreeNode& node) {
        constexpr int kTries = 40;
        const auto source = pointOf(node, "source_point");
        const auto least = node.getParam<double>("min_dist");
        const auto most = node.getParam<double>("max_dist");
        const std::string key = textOf(node, "out_point");
        if (!source || !least || !most || key.empty()) {
            return BT::NodeStatus::FAILURE;
        }
        const PlanningMap plan = planningMapOf(map_, view_.switches);
        for (int i = 0; i < kTries; ++i) {
            const double away = *least + chance_.uniform() * (*most - *least);
            const PointMm point = *source + away * direction({chance_.uniform() * 360});
            if (plan.at(cellAt(point)) == Ground::Open) {
                node.blackboard()->set(key, point);
                return BT::NodeStatus::SUCCESS;
            }
        }
        return BT::NodeStatus::FAILURE;
    });
}

}  // namespace vemra::robot
