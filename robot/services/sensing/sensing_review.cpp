#include "robot/services/sensing/sensing_review.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {
namespace {

constexpr double kWireReachMm = 100;
/// What the laser sees this much farther off is another thing.
constexpr double kApartMm = 120;
constexpr double kHalfWidthDeg = 20;
/// Middle of a side arc of the bumper.
constexpr double kSideDeg = 50;
constexpr double kSamePlaceMm = 300;
constexpr std::size_t kPlacesKept = 100;
/// A step that is farther from the robot's middle is no longer looked at.
constexpr double kStepNearMm = kRobotRadiusMm + 150;
constexpr const char* kSuspectStep = "suspect_step";

}  // namespace

void ReviewService::install(leaf::LeafHost& host)
{
    host.condition("SuspectWireDetect", [this](BT::TreeNode&) {
        const auto thing = lowThingAhead();
        return passed(thing && lookAt(*thing));
    });
    host.condition("BlindZoneDetected", [this](BT::TreeNode&) {
        const auto thing = std::exchange(ran_into_, std::nullopt);
        return passed(thing && lookAt(*thing));
    });
    host.condition("IsStepNearBy", [this](BT::TreeNode& node) { return stepNearBy(node); });
}

void ReviewService::update()
{
    noteLowThing();
    noteStep();
}

void ReviewService::noteLowThing()
{
    const Sides& bumper = parts_.body.bumper();
    if (bumper.any() && !bumped_before_) {
        const Degrees side{bumper.middle || bumper.left == bumper.right ? 0
                           : bumper.left                                ? kSideDeg
                                                                        : -kSideDeg};
        if (laserSeesNothing(side, kRobotRadiusMm + kApartMm)) {
            ran_into_ = besideBody(side, 0);
        }
    }
    bumped_before_ = bumper.any();
}

void ReviewService::noteStep()
{
    if (step_ && distance(*step_, pose_.pose().at) > kStepNearMm) {
        step_.reset();
        parts_.blackboard.erase(kSuspectStep);
    }
    const Sides& felt = parts_.body.stepAhead();
    if (step_ || !felt.any()) {
        return;
    }
    const Degrees side{felt.middle || felt.left == felt.right ? 0 : felt.left ? kSideDeg : -kSideDeg};
    const PointMm place = besideBody(side, 0);
    if (lookAt(place)) {
        step_ = place;
        parts_.blackboard.set(kSuspectStep, ++steps_suspected_);
    }
}

BT::NodeStatus ReviewService::stepNearBy(BT::TreeNode& node)
{
    const std::string angle = textOf(node, "o_angle_deg");
    const std::string middle = textOf(node, "o_mid_pt");
    if (!step_ || angle.empty() || middle.empty() || node.getParam<int>("i_step") != steps_suspected_) {
        return BT::NodeStatus::FAILURE;
    }
    const PoseMm pose = pose_.pose();
    const PointMm offset = *step_ - pose.at;
    const Degrees bearing = degreesOfRadians(std::atan2(offset.y, offset.x));
    node.blackboard()->set(angle, wrapped({bearing.value - pose.yaw.value}).value);
    node.blackboard()->set(middle, *step_);
    step_.reset();
    parts_.blackboard.erase(kSuspectStep);
    return BT::NodeStatus::SUCCESS;
}

std::optional<PointMm> ReviewService::lowThingAhead() const
{
    const auto near = parts_.body.nearAhead();
    if (!near || *near > kWireReachMm || !laserSeesNothing({0}, kRobotRadiusMm + *near + kApartMm)) {
        return std::nullopt;
    }
    return besideBody({0}, *near);
}

bool ReviewService::laserSeesNothing(Degrees bearing, double within_mm) const
{
    const auto seen = parts_.body.recentScan().nearest(bearing, {kHalfWidthDeg});
    return !seen || *seen > within_mm;
}

PointMm ReviewService::besideBody(Degrees bearing, double away_mm) const
{
    const PoseMm pose = pose_.pose();
    return pose.at + (kRobotRadiusMm + away_mm) * direction({pose.yaw.value + bearing.value});
}

bool ReviewService::lookAt(PointMm place)
{
    const bool known = std::any_of(looked_at_.begin(), looked_at_.end(),
                                   [place](PointMm other) { return distance(place, other) <= kSamePlaceMm; });
    if (known) {
        return false;
    }
    looked_at_.push_back(place);
    if (looked_at_.size() > kPlacesKept) {
        looked_at_.pop_front();
    }
    return true;
}

}  // namespace vemra::robot
