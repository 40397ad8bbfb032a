#include "robot/services/sensing/attitude.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "robot/geometry/points.h"
#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {
namespace {

constexpr const char* kBeforeBacking = "IMU_POSE_Oncharger";
constexpr const char* kAfterBacking = "IMU_POSE_Oncharger_BackEnd";
constexpr const char* kAfterTurn = "IMU_POSE_TurnEnd";
/// A floor that is no more out of level over a turn is not worth a line.
constexpr double kLevelDeg = 2;

}  // namespace

void AttitudeService::Span::widen(double value)
{
    least = std::min(least, value);
    most = std::max(most, value);
}

// What the robot stands on lifts its front.
AttitudeService::Attitude AttitudeService::now() const
{
    return {0, parts_.body.tiltDeg(), parts_.body.odometry().yaw.value};
}

void AttitudeService::keep(const std::string& moment)
{
    const Attitude attitude = now();
    kept_[moment] = attitude;
    parts_.blackboard.set(moment, std::vector<double>{attitude.roll, attitude.pitch, attitude.yaw});
    const double span = std::max(roll_.width(), pitch_.width());
    if (moment == kAfterTurn && span > kLevelDeg)
        parts_.report(event::Note{fmt::format("out of level by {:.0f} degrees over the first turn", span),
                                  "level",
                                  {{"degrees", span}}});
}

void AttitudeService::tellDrift()
{
    const auto before = kept_.find(kBeforeBacking);
    const auto after = kept_.find(kAfterBacking);
    if (before == kept_.end() || after == kept_.end())
        return;
    const double drift = wrapped({after->second.yaw - before->second.yaw}).value;
    parts_.report(event::Note{
        fmt::format("heading drifted by {:.1f} degrees off the dock", drift), "drift", {{"degrees", drift}}});
}

void AttitudeService::update()
{
    if (parts_.blackboard.erase("IMUInitDriftEvent"))
        tellDrift();
}

void AttitudeService::install(leaf::LeafHost& host)
{
    host.action("GetIMUPose", [this](BT::TreeNode& node) {
        const std::string moment = textOf(node, "storage");
        if (moment.empty())
            return BT::NodeStatus::FAILURE;
        keep(moment);
        return BT::NodeStatus::SUCCESS;
    });
    host.action("InitRollPitchCheck", [this](BT::TreeNode&) {
        const Attitude attitude = now();
        roll_ = {attitude.roll, attitude.roll};
        pitch_ = {attitude.pitch, attitude.pitch};
        return BT::NodeStatus::SUCCESS;
    });
    host.action("RollPitchMinMaxUpdate", [this](BT::TreeNode&) {
        const Attitude attitude = now();
        roll_.widen(attitude.roll);
        pitch_.widen(attitude.pitch);
        return BT::NodeStatus::SUCCESS;
    });
    host.condition("DoesInitialIMUPoseDriftEnable",
                   [this](BT::TreeNode&) { return passed(parts_.blackboard.contains("imu_drift_check")); });
    // This gyro is calibrated by the time the robot leaves the works, and its side distance sensors give a
    // reading in each frame.
    for (const char* leaf : {"InitIMUCaliTIme", "PSD_interpolation"})
        host.action(leaf, [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
}

}  // namespace vemra::robot
