#include <cmath>

#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/dock_signal/dock_signal.h"

namespace vemra::robot {
namespace {

constexpr std::uint64_t kBumpFrames = 10;
constexpr double kWallHalfDeg = 90;
constexpr double kWallMm = 600;

// The bearing of the nearest thing ahead: the mirror, if there is one.
std::optional<double> bearingOfNearest(const LaserScan& scan)
{
    std::optional<double> bearing;
    double nearest = kWallMm;
    for (std::size_t beam = 0; beam < scan.ranges_mm.size(); ++beam) {
        const double at = wrapped(scan.bearing(beam)).value;
        if (scan.ranges_mm[beam] && *scan.ranges_mm[beam] < nearest && std::abs(at) <= kWallHalfDeg) {
            nearest = *scan.ranges_mm[beam];
            bearing = at;
        }
    }
    return bearing;
}

}  // namespace

// The light comes from where the mirror's law puts the dock: a direction d, thrown back by a surface whose
// normal lies at n, comes from 2 n + 180 - d. The shorter turn.
double DockSignalService::turnToSource() const
{
    const double seen = hearing_.bearingDeg().value_or(0);
    const double normal = bearingOfNearest(parts_.body.recentScan()).value_or(seen);
    return wrapped({2 * normal + 180 - seen}).value;
}

void DockSignalService::installReflections(leaf::LeafHost& host)
{
    // The robot ran into something where it hears the dock ahead, and is not at the dock.
    host.condition("IsGotReflectedSignal", [this](BT::TreeNode& node) {
        const std::string key = textOf(node, "target_angle");
        const bool bumped = ever_bumped_ && parts_.state.frame - bumped_frame_ <= kBumpFrames;
        const bool heard = hearing_.frontHears() || hearing_.isImage();
        if (key.empty() || !bumped || !heard || parts_.body.nearDock()) {
            return BT::NodeStatus::FAILURE;
        }
        node.blackboard()->set(key, turnToSource());
        return BT::NodeStatus::SUCCESS;
    });
    host.action("GenerateTurnDirWhenReflect", [this](BT::TreeNode& node) {
        const std::string key = textOf(node, "target_angle");
        if (key.empty()) {
            return BT::NodeStatus::FAILURE;
        }
        node.blackboard()->set(key, turnToSource());
        return BT::NodeStatus::SUCCESS;
    });
}

}  // namespace vemra::robot
