#include <cmath>

#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/dock_signal/dock_signal.h"
#include "robot/services/dock_signal/wall_normal.h"

namespace vemra::robot {
namespace {

constexpr std::uint64_t kMeasureFrames = 10;
/// The run to the middle line goes at 50 mm/s: 1 mm a frame.
constexpr double kMmPerFrame = 1;
constexpr double kWorthMm = 15;
constexpr double kMostMm = 300;

}  // namespace

// RUNNING for a turn of the laser; then all three keys, or none where the robot stands well or knows nothing.
BT::NodeStatus DockSignalService::measureDock(bool begins)
{
    if (begins) {
        measuring_since_ = parts_.state.frame;
    }
    if (parts_.state.frame - measuring_since_ < kMeasureFrames) {
        return BT::NodeStatus::RUNNING;
    }
    const auto normal = wallNormal(parts_.body.recentScan(), {180});
    const auto emitter = hearing_.emitter();
    if (!normal || !emitter) {
        return BT::NodeStatus::FAILURE;
    }
    const Degrees looks{parts_.body.odometry().yaw.value + normal->value};
    const PointMm from_dock = parts_.body.odometry().at - *emitter;
    const PointMm out = direction(looks);
    const double to_left = out.x * from_dock.y - out.y * from_dock.x;
    if (std::abs(to_left) >= kWorthMm && std::abs(to_left) <= kMostMm) {
        // To the line, and back to looking away from the dock afterwards.
        const double on_map = pose_.pose().yaw.value - parts_.body.odometry().yaw.value + looks.value;
        parts_.blackboard.set("dock_fix_mid_yaw", on_map + (to_left > 0 ? -90 : 90));
        parts_.blackboard.set("dock_fix_mid_dis",
                              static_cast<int>(std::lround(std::abs(to_left) / kMmPerFrame)));
        parts_.blackboard.set("dock_fix_dir", std::string(to_left < 0 ? "true" : "false"));
    }
    return BT::NodeStatus::SUCCESS;
}

void DockSignalService::installBackIn(leaf::LeafHost& host)
{
    host.builder("FindChargerIcp", RunningAction::builder([this](BT::TreeNode& node) {
                     return measureDock(node.status() != BT::NodeStatus::RUNNING);
                 }));
    host.action("FoundChargerCmd", [this](BT::TreeNode&) {
        parts_.report(event::Motion{"the dock is found: the robot turns its back to it", {}});
        return BT::NodeStatus::SUCCESS;
    });
    host.action("CleandockChargerYaw", [this](BT::TreeNode& node) {
        int kind = 0;
        node.blackboard()->get("charger_type", kind);
        const auto charger =
            pointOf(*node.blackboard(), kind == 1 ? "only_charger_in_map" : "charger_position");
        if (!charger) {
            return BT::NodeStatus::FAILURE;
        }
        const PoseMm now = pose_.pose();
        const PointMm way = *charger - now.at;
        const double heading = degreesOfRadians(std::atan2(way.y, way.x)).value;
        node.blackboard()->set("face_charger_yaw", now.yaw.value + wrapped({heading - now.yaw.value}).value);
        return BT::NodeStatus::SUCCESS;
    });
}

}  // namespace vemra::robot
