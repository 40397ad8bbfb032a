#include "robot/services/dock/dock_place.h"

#include <array>
#include <string>

#include "robot/geometry/frames.h"
#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/maps/grid_maps.h"

namespace vemra::robot {
namespace {

// From the docked robot's middle, which is a radius off the face; the nearest of the others where something
// stands there.
constexpr std::array kAwayMm = {525.0, 575.0, 475.0, 650.0, 425.0, 750.0};

}  // namespace

void DockPlace::update()
{
    if (localisation_.restarts() != frames_of_map_) {
        frames_of_map_ = localisation_.restarts();
        docked_ = store_.in_use && store_.map ? store_.map->docked : std::nullopt;
    }
    if (parts_.state.contacts.touching()) {
        docked_ = map_.pose();
    }
}

std::optional<PointMm> DockPlace::placeBefore() const
{
    if (!docked_ || !parts_.blackboard.contains("reuse_map_id")) {
        return std::nullopt;
    }
    const PlanningMap plan = planningMapOf(map_, switches_);
    for (const double away : kAwayMm) {
        const PointMm place = docked_->at - away * direction(docked_->yaw);
        const Ground ground = plan.at(cellAt(place));
        // A new map knows nothing of it yet.
        if (ground == Ground::Open || ground == Ground::Unknown) {
            return place;
        }
    }
    return std::nullopt;
}

// The way of the odometry from after the drive off the dock back to before it, laid onto the present pose.
BT::NodeStatus DockPlace::reckon(BT::TreeNode& node) const
{
    const std::string key = textOf(node, "out_charger_position");
    const auto before = poseOf(parts_.blackboard, "odom_pos_before");
    const auto after = poseOf(parts_.blackboard, "odom_pos_after");
    if (key.empty() || !before || !after) {
        return BT::NodeStatus::FAILURE;
    }
    node.blackboard()->set(key, placed(map_.pose(), seenFrom(*after, *before)));
    return BT::NodeStatus::SUCCESS;
}

void DockPlace::install(leaf::LeafHost& host)
{
    host.action("GetChargerFromReuseInfo", [this](BT::TreeNode& node) {
        const std::string key = textOf(node, "out_point_mm");
        const auto place = placeBefore();
        if (key.empty() || !place) {
            return BT::NodeStatus::FAILURE;
        }
        node.blackboard()->set(key, *place);
        return BT::NodeStatus::SUCCESS;
    });
    host.action("CalcChargerPosition", [this](BT::TreeNode& node) { return reckon(node); });
}

}  // namespace vemra::robot
