#include "robot/services/self_test/factory_run.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {
namespace {

/// So far the wheels' way may be off the way on the map, as a share of it, once that is long enough to tell.
constexpr double kMostOff = 0.1;
constexpr double kLongEnoughMm = 2000;
/// So far the gyro may turn away from the map over the whole run.
constexpr double kMostTurnedApartDeg = 15;

}  // namespace

bool FactoryRun::take(const Happening& what)
{
    // Health is another's; what came and went during the run is remembered here.
    if (const auto* fault = std::get_if<Fault>(&what);
        fault != nullptr && (fault->kind == FaultKind::Error || fault->kind == FaultKind::Warning)) {
        if (fault->raised) {
            faults_.insert(fault->code);
            seen_.insert(fault->code);
        } else {
            faults_.erase(fault->code);
        }
    }
    return false;
}

void FactoryRun::begin()
{
    seen_ = faults_;
    last_pose_.reset();
    way_mm_ = 0;
    way_by_wheels_ = 0;
    turned_apart_deg_ = 0;
    reliable_ = true;
}

void FactoryRun::compare()
{
    const PoseMm pose = localisation_.pose();
    const PoseMm& odometry = parts_.body.odometry();
    if (last_pose_) {
        way_mm_ += distance(last_pose_->at, pose.at);
        way_by_wheels_ += distance(last_odometry_.at, odometry.at);
        turned_apart_deg_ +=
            (odometry.yaw.value - last_odometry_.yaw.value) - (pose.yaw.value - last_pose_->yaw.value);
    }
    last_pose_ = pose;
    last_odometry_ = odometry;
}

std::string_view FactoryRun::failed() const
{
    if (seen_.contains("I_LDS_ERROR")) {
        return "laser";
    }
    if (seen_.contains("TOF_OFFLINE")) {
        return "tof";
    }
    return reliable_ ? "" : "slam";
}

BT::NodeStatus FactoryRun::judge()
{
    const std::string_view failure = failed();
    parts_.report(event::Note{
        failure.empty() ? std::string("factory run passed") : fmt::format("factory run failed: {}", failure),
        "factory_run",
        {{"failed", std::string(failure)},
         {"way_mm", std::int64_t{std::lround(way_mm_)}},
         {"way_by_wheels_mm", std::int64_t{std::lround(way_by_wheels_)}}}});
    if (failure.empty()) {
        parts_.blackboard.erase("TestResId");
    } else {
        parts_.blackboard.set("TestResId", std::string(failure));
    }
    return passed(failure.empty());
}

void FactoryRun::install(leaf::LeafHost& host)
{
    const auto note = [this](const char* what) {
        return [this, what](BT::TreeNode&) {
            parts_.report(event::Note{what, "factory_run"});
            return BT::NodeStatus::SUCCESS;
        };
    };
    host.action("SendStartTestToVslam", [this, told = note("factory run begins")](BT::TreeNode& node) {
        begin();
        return told(node);
    });
    host.action("SendFinishTestToVslam", note("factory run: on the dock"));
    // The motors of the simulated brushes need no calibration: a robot whose brush is at fault fails its
    // health check, and gets no further.
    host.action("CheckBrushCalibrat", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
    host.action("GetPoseOdomDiff", [this](BT::TreeNode&) {
        compare();
        return BT::NodeStatus::SUCCESS;
    });
    host.action("AutorunTestCalibrateReliable", [this](BT::TreeNode&) {
        const bool off = way_mm_ >= kLongEnoughMm && std::abs(way_by_wheels_ - way_mm_) > kMostOff * way_mm_;
        reliable_ = reliable_ && localisation_.localised() && !off &&
                    std::abs(turned_apart_deg_) <= kMostTurnedApartDeg;
        return passed(reliable_);
    });
    host.action("AutorunTestResReturn", [this](BT::TreeNode&) { return judge(); });
}

}  // namespace vemra::robot
