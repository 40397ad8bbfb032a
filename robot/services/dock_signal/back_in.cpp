#include <cmath>

#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/dock_signal/dock_signal.h"

namespace vemra::robot {
namespace {

constexpr std::uint64_t kMeasureFrames = 10;
constexpr double kBehindHalfDeg = 25;
constexpr std::size_t kLeastPoints = 8;
constexpr double kLineThickMm = 40;
/// The run to the middle line goes at 50 mm/s: 1 mm a frame.
constexpr double kMmPerFrame = 1;
constexpr double kWorthMm = 15;
constexpr double kMostMm = 300;

}  // namespace

// The dock stands flat at its wall: the normal of the straight line behind the robot is where it looks. The
// line is the first principal axis of the points.
std::optional<Degrees> DockSignalService::wallBehindLooks() const
{
    const LaserScan& scan = parts_.body.recentScan();
    std::vector<PointMm> points;
    PointMm mean;
    for (std::size_t beam = 0; beam < scan.ranges_mm.size(); ++beam) {
        const double bearing = scan.bearing(beam).value;
        if (scan.ranges_mm[beam] && std::abs(bearing - 180) <= kBehindHalfDeg) {
            points.push_back(*scan.ranges_mm[beam] * direction({bearing}));
            mean = mean + points.back();
        }
    }
    if (points.size() < kLeastPoints) {
        return std::nullopt;
    }
    mean = 1.0 / static_cast<double>(points.size()) * mean;
    double xx = 0;
    double xy = 0;
    double yy = 0;
    for (const PointMm point : points) {
        const PointMm off = point - mean;
        xx += off.x * off.x;
        xy += off.x * off.y;
        yy += off.y * off.y;
    }
    const double along = 0.5 * std::atan2(2 * xy, xx - yy);
    const double across = xx * std::pow(std::sin(along), 2) - 2 * xy * std::sin(along) * std::cos(along) +
                          yy * std::pow(std::cos(along), 2);
    if (std::sqrt(across / static_cast<double>(points.size())) > kLineThickMm) {
        return std::nullopt;
    }
    // Of the two normals the one that points from the wall to the robot.
    double normal = degreesOfRadians(along).value + 90;
    const PointMm out = direction({normal});
    if (out.x * mean.x + out.y * mean.y > 0) {
        normal += 180;
    }
    return Degrees{parts_.body.odometry().yaw.value + wrapped({normal}).value};
}

// RUNNING for a turn of the laser; then all three keys, or none where the robot stands well or knows nothing.
BT::NodeStatus DockSignalService::measureDock(bool begins)
{
    if (begins) {
        measuring_since_ = parts_.state.frame;
    }
    if (parts_.state.frame - measuring_since_ < kMeasureFrames) {
        return BT::NodeStatus::RUNNING;
    }
    const auto looks = wallBehindLooks();
    const auto emitter = hearing_.emitter();
    if (!looks || !emitter) {
        return BT::NodeStatus::FAILURE;
    }
    const PointMm from_dock = parts_.body.odometry().at - *emitter;
    const PointMm out = direction(*looks);
    const double to_left = out.x * from_dock.y - out.y * from_dock.x;
    if (std::abs(to_left) >= kWorthMm && std::abs(to_left) <= kMostMm) {
        // To the line, and back to looking away from the dock afterwards.
        const double on_map = pose_.pose().yaw.value - parts_.body.odometry().yaw.value + looks->value;
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
        parts_.report("motion", "the dock is found: the robot turns its back to it", {});
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
