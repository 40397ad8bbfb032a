#include "robot/services/dock_signal/dock_signal.h"

#include <algorithm>
#include <cmath>

#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/dock_signal/wall_normal.h"
#include "robot/services/sensing/sensing_direction.h"

namespace vemra::robot {
namespace {

constexpr std::uint64_t kLostFrames = 60;
constexpr std::uint64_t kLeftFieldFrames = 50;
constexpr std::uint64_t kMiddleLatelyFrames = 100;
constexpr double kRunMm = 300;  // the run that the second weighing aims
constexpr double kMostOffsetMm = 150;
constexpr double kOffsetPerSideMm = 45;
constexpr double kRememberedMm = 50;  // beside the line, where only the first weighing tells the side
constexpr double kTurnOverDeg = 15;
constexpr double kBesideDockMm = 600;
constexpr std::uint64_t kLookEvery = 5;
constexpr double kLookWithinMm = 1500;
constexpr double kMostAslantDeg = 60;
constexpr double kFarMm = 1e9;
/// Room to stop before the contacts touch, and to turn away there.
constexpr double kOntoDockMm = 60;
constexpr double kOntoDockDeg = 35;
constexpr double kMiddleOfDockDeg = 15;

}  // namespace

void DockSignalService::update()
{
    hearing_.update(parts_.body, parts_.state.contacts.touching());
    for (; told_approaches_ < approaches_.begun; ++told_approaches_)
        parts_.report(event::Approach{told_approaches_ + 1});
    heard_frames_ = hearing_.hearsAny() ? heard_frames_ + 1 : 0;
    if (parts_.state.contacts.touching()) {
        mute_at_.clear();
        told_of_dock_at_.reset();
    }
    if (parts_.body.bumper().any()) {
        bumped_frame_ = parts_.state.frame;
        ever_bumped_ = true;
    }
}

std::string DockSignalService::edgeOfDock() const
{
    const Body& body = parts_.body;
    const WheelSpeeds wheels = body.commanded();
    const double bearing = hearing_.bearingDeg().value_or(180);
    const bool felt = body.nearDock() && hearing_.hearsAny() && wheels.left + wheels.right > 0 &&
                      hearing_.awayMm().value_or(kFarMm) <= kRobotRadiusMm + kOntoDockMm &&
                      std::abs(bearing) <= kOntoDockDeg;
    if (!felt) {
        return std::string(kNoBump);
    }
    return directionOf({.left = bearing > kMiddleOfDockDeg,
                        .middle = std::abs(bearing) <= kMiddleOfDockDeg,
                        .right = bearing < -kMiddleOfDockDeg},
                       "_dock");
}

// The dock stands flat at its wall: the laser tells better than the sectors where it looks.
void DockSignalService::lookAtWall()
{
    if (parts_.state.frame % kLookEvery != 0 || !hearing_.located() || !parts_.state.laser_on ||
        *hearing_.awayMm() > kLookWithinMm) {
        return;
    }
    const Degrees bearing{*hearing_.bearingDeg()};
    const auto normal = wallNormal(parts_.body.recentScan(), bearing);
    if (normal && std::abs(wrapped({normal->value - bearing.value - 180}).value) <= kMostAslantDeg) {
        hearing_.setLooks({parts_.body.odometry().yaw.value + normal->value});
    }
}

void DockSignalService::install(leaf::LeafHost& host)
{
    installSenses(host);
    installDrives(host);
    installWeighings(host);
    installReflections(host);
    installBackIn(host);
    installExploring(host);
}

void DockSignalService::installSenses(leaf::LeafHost& host)
{
    host.condition("ChargerReceiverPickedUpSignal", [this](BT::TreeNode& node) {
        return passed(hearing_.hears(textOf(node, "receiver"), textOf(node, "signal")));
    });
    host.condition("DoesGetChargerMiddleSig",
                   [this](BT::TreeNode&) { return passed(hearing_.hears("Any", "Middle")); });
    host.condition("SignalTypeMatch", [](BT::TreeNode& node) {
        // Nothing was marked yet: that is no signal.
        return passed(textOf(node, "a_type", "None") == textOf(node, "b_type", "None"));
    });
    host.condition("InDockField", [this](BT::TreeNode&) { return passed(parts_.body.nearDock()); });
    host.condition("ConsistentlyLostDockSignal", [this](BT::TreeNode&) { return passed(stillLost()); });
    host.condition("ConsistentlyNotInDockField",
                   [this](BT::TreeNode&) { return passed(hearing_.outOfFieldFrames() >= kLeftFieldFrames); });
    host.condition("InMiddleDockOnceInAWhile", [this](BT::TreeNode&) {
        return passed(hearing_.offMiddleFrames() <= kMiddleLatelyFrames);
    });
    host.condition("DoesRobotGetChargerSig", [this](BT::TreeNode&) { return passed(hearing_.hearsAny()); });
    // So near that it would turn into its dock.
    host.condition("DoesRobotGetChargerSigCheck", [this](BT::TreeNode&) {
        return passed(hearing_.frontHears() &&
                      hearing_.awayMm().value_or(kBesideDockMm + 1) <= kBesideDockMm);
    });
    // The filter works at the beginning of each frame, whoever asks.
    host.action("DockSignalFilter", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
    host.builder("DockSignalBitFilter",
                 RunningAction::builder([](BT::TreeNode&) { return BT::NodeStatus::RUNNING; }));
    host.builder("MarkDockSignal", RunningAction::builder([this](BT::TreeNode& node) {
                     return mark(node.status() != BT::NodeStatus::RUNNING);
                 }));
}

// The turn beside it ends without notice: the keys are right on every tick.
BT::NodeStatus DockSignalService::mark(bool begins)
{
    if (begins) {
        marking_ = {};
        side_turned_ = false;
    }
    const double yaw = pose_.pose().yaw.value;
    marking_.listen(hearing_, yaw, parts_.body.nearDock());
    parts_.blackboard.set("marker_dir", marking_.directionDeg(yaw));
    parts_.blackboard.set("marker_signal_type", std::string(marking_.type()));
    parts_.blackboard.set("marker_in_dock_field", std::string(marking_.inDockField() ? "true" : "false"));
    return BT::NodeStatus::RUNNING;
}

// A drive that begins in silence has its time too, from when it has turned to where it goes.
bool DockSignalService::stillLost()
{
    const std::uint64_t now = parts_.state.frame;
    const WheelSpeeds wheels = parts_.body.commanded();
    const bool turns = wheels.left != 0 && std::abs(wheels.left + wheels.right) < 1;
    if (now > lost_asked_ + 1 || lost_asked_ == 0 || turns) {
        lost_begun_ = now;
    }
    lost_asked_ = now;
    return std::min(hearing_.silentFrames(), now - lost_begun_) >= kLostFrames;
}

void DockSignalService::installDrives(leaf::LeafHost& host)
{
    Body& body = parts_.body;
    const DockHearing& hearing = hearing_;
    const RobotState& state = parts_.state;
    host.builder("FollowDockSignal",
                 MotionAction::builder<FollowDockSignalAction>(body, hearing, state, look_));
    host.builder("FollowDockSignalFindCenter",
                 MotionAction::builder<FollowDockSignalFindCenterAction>(body, hearing, state, look_));
    host.builder("FollowDockSignalFinal", MotionAction::builder<FollowDockSignalFinalAction>(
                                              body, hearing, state, look_, approaches_));
    host.builder("SurroundCharger",
                 MotionAction::builder<SurroundChargerAction>(body, hearing, state, look_));
    for (const char* leaf : {"DockFinal7001", "FollowDockSignalBack"}) {
        host.builder(leaf, MotionAction::builder<BackOntoDockAction>(body, hearing, state, look_));
    }
    // Once after each marking turn the robot goes round a thing on the side on which the dock lies.
    host.action("FollowWallDirJug", [this](BT::TreeNode& node) {
        double marker = 0;
        if (side_turned_ || !node.blackboard()->get("marker_dir", marker)) {
            return BT::NodeStatus::SUCCESS;
        }
        const double off = wrapped({marker - pose_.pose().yaw.value}).value;
        if (std::abs(off) > kTurnOverDeg) {
            side_turned_ = true;
            node.blackboard()->set("follow_wall_dir", std::string(off > 0 ? "true" : "false"));
        }
        return BT::NodeStatus::SUCCESS;
    });
}

void DockSignalService::installWeighings(leaf::LeafHost& host)
{
    host.action("WeighDockSignalFirstStep", [this](BT::TreeNode&) {
        first_side_ = hearing_.side();
        return BT::NodeStatus::SUCCESS;
    });
    host.action("WeighDockSignalSecondStep", [this](BT::TreeNode& node) { return weighSecond(node); });
}

// The robot stands off the dock and faces it. A run away from the dock, turned to the side of the middle
// line by asin(offset / run), ends on the line.
BT::NodeStatus DockSignalService::weighSecond(BT::TreeNode& node)
{
    const std::string key = textOf(node, "out_angle_deg");
    if (key.empty()) {
        return BT::NodeStatus::FAILURE;
    }
    double offset = std::clamp(kOffsetPerSideMm * hearing_.side(), -kMostOffsetMm, kMostOffsetMm);
    if (offset == 0) {
        offset = kRememberedMm * std::clamp(first_side_, -1, 1);
    }
    const double away = pose_.pose().yaw.value + hearing_.bearingDeg().value_or(0) + 180;
    // On the right as it faces the dock, the line is to the right of the way back.
    node.blackboard()->set(key, away - degreesOfRadians(std::asin(offset / kRunMm)).value);
    return BT::NodeStatus::SUCCESS;
}

}  // namespace vemra::robot
