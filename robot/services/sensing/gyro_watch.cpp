#include "robot/services/sensing/gyro_watch.h"

#include <fmt/format.h>

#include <cmath>

#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {
namespace {

constexpr double kStraightDegS = 0.5;
constexpr double kMostDriftDegS = 0.4;
/// More than that is no drift: the readings are faulty.
constexpr double kFaultyDegS = 5;
constexpr double kNewShare = 0.02;
constexpr std::uint64_t kMeasureFrames = 100;
constexpr std::uint64_t kZeroFrames = 200;

}  // namespace

bool GyroWatch::take(const Happening& what)
{
    const auto* drift = std::get_if<GyroDrift>(&what);
    if (drift != nullptr) {
        parts_.body.setGyroDrift(drift->deg_s);
    }
    return drift != nullptr;
}

void GyroWatch::update()
{
    const WheelSpeeds wheels = parts_.body.wheelSpeeds();
    const double turn = degreesOfRadians((wheels.right - wheels.left) / parts_.body.trackMm()).value;
    const bool moved = parts_.body.feltMovedWithin(1);
    if (std::abs(turn) > kStraightDegS || moved) {
        straight_frames_ = 0;
        still_frames_ = 0;
        return;
    }
    still_frames_ = wheels == WheelSpeeds{} ? still_frames_ + 1 : 0;
    const double off = parts_.body.turnRate() - turn;
    drift_deg_s_ = ++straight_frames_ == 1 ? off : drift_deg_s_ + kNewShare * (off - drift_deg_s_);
    if (straight_frames_ >= kMeasureFrames && std::abs(drift_deg_s_) > kMostDriftDegS && !wanted_) {
        wanted_ = true;
        done_ = false;
        still_frames_ = 0;  // whoever makes the robot stand is to be asked first
    }
    if (wanted_ && still_frames_ >= kZeroFrames) {
        zero();
    }
}

void GyroWatch::zero()
{
    parts_.report(event::Note{fmt::format("gyro zeroed: it drifted by {:.1f} degrees/s", drift_deg_s_),
                              "gyro",
                              {{"drift_deg_s", std::round(drift_deg_s_ * 10) / 10}}});
    parts_.body.zeroGyro();
    drift_deg_s_ = 0;
    straight_frames_ = 0;
    wanted_ = false;
    done_ = true;
}

void GyroWatch::install(leaf::LeafHost& host)
{
    host.condition("Does_NeedToCalibrate_IMU_Diff", [this](BT::TreeNode&) {
        return passed(wanted_ && std::abs(drift_deg_s_) <= kFaultyDegS);
    });
    host.condition("Does_NeedToCalibrate_IMU_Err",
                   [this](BT::TreeNode&) { return passed(wanted_ && std::abs(drift_deg_s_) > kFaultyDegS); });
    host.condition("Does_FinishCalibrate_IMU", [this](BT::TreeNode&) { return passed(done_); });
    host.action("InitGyroDrift", [this](BT::TreeNode&) {
        straight_frames_ = 0;
        wanted_ = false;
        return BT::NodeStatus::SUCCESS;
    });
}

}  // namespace vemra::robot
