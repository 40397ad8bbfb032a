#include "robot/services/motion/motion.h"

#include <cmath>

#include "robot/base/clock.h"
#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/motion/motion_drives.h"
#include "robot/services/motion/motion_turns.h"

namespace vemra::robot {
namespace {

constexpr double kTurn = 360;
/// Way after which an exploring robot looks around.
constexpr double kLookAroundMm = 3000;
constexpr double kAheadHalfDeg = 10;
constexpr double kFrameS = kFrameMs / 1000.0;

}  // namespace

MotionService::MotionService(const RobotParts& parts, const PoseSource& pose) : parts_(parts), pose_(pose)
{
    writePoseKeys();
}

void MotionService::writePoseKeys()
{
    BT::Blackboard& keys = parts_.blackboard;
    const PoseMm pose = pose_.pose();
    keys.set("current_pose", pose);
    keys.set("current_coord", cellAt(pose.at));
    keys.set("current_yaw_deg", pose.yaw.value);
    keys.set("current_odom", parts_.body.odometry());
    keys.set("current_odom_yaw_deg", parts_.body.odometry().yaw.value);
    keys.set("current_tick_cnt", parts_.state.frame);
}

void MotionService::update()
{
    writePoseKeys();
    const WheelSpeeds wheels = parts_.body.wheelSpeeds();
    wheel_mm_ += (std::abs(wheels.left) + std::abs(wheels.right)) / 2 * kFrameS;
}

void MotionService::install(leaf::LeafHost& host)
{
    Body& body = parts_.body;
    host.builder("Rotate", MotionAction::builder<RotateAction>(body, pose_));
    host.builder("TurnAround", MotionAction::builder<TurnAroundAction>(body));
    host.builder("OpenCloseMove", MotionAction::builder<OpenCloseMoveAction>(body));
    host.builder("GoBackwards", MotionAction::builder<GoBackwardsAction>(body));
    host.builder("DetachNode", MotionAction::builder<DetachAction>(body));
    host.builder("FixOrientationNode", MotionAction::builder<StraightDriveAction>(body, pose_));
    host.action("Stop", [&body](BT::TreeNode&) {
        body.stop();
        return BT::NodeStatus::SUCCESS;
    });
    host.action("RangeFinder", [&body](BT::TreeNode& node) {
        const std::string key = textOf(node, "distance");
        const auto ahead = body.recentScan().nearest({0}, {kAheadHalfDeg});
        if (key.empty() || !ahead) {
            return BT::NodeStatus::FAILURE;
        }
        node.blackboard()->set(key, *ahead - kRobotRadiusMm);
        return BT::NodeStatus::SUCCESS;
    });
    // Once in a while; the time that it is answered is the time it was done.
    host.condition("TimeToTurn", [this](BT::TreeNode&) {
        const bool time = wheel_mm_ - looked_around_at_mm_ >= kLookAroundMm;
        if (time) {
            looked_around_at_mm_ = wheel_mm_;
        }
        return passed(time);
    });
    installAccounts(host);
}

void MotionService::installAccounts(leaf::LeafHost& host)
{
    host.action("SetFixOrientation", [](BT::TreeNode& node) {
        BT::Any target;
        if (!node.getParam("target_point", target) || !pointOf(target)) {
            return BT::NodeStatus::FAILURE;
        }
        node.blackboard()->slot("fix_orientation_target_point").assign(target);
        return BT::NodeStatus::SUCCESS;
    });
    host.action("RoundAngleDeg", [](BT::TreeNode& node) {
        const std::string key = textOf(node, "key_to_round");
        double angle = 0;
        double target = 0;
        if (!node.blackboard()->get(key, angle) || !node.getParam("target_angle", target)) {
            return BT::NodeStatus::FAILURE;
        }
        node.blackboard()->set(key, angle + kTurn * std::round((target - angle) / kTurn));
        return BT::NodeStatus::SUCCESS;
    });
    host.action("MotionActionAccount", [this](BT::TreeNode& node) {
        const std::string account = textOf(node, "bb");
        const std::string what = textOf(node, "detail_type");
        if (account.empty() || what.empty()) {
            return BT::NodeStatus::FAILURE;
        }
        std::string before;
        if (!parts_.blackboard.get(account, before) || before != what) {
            parts_.blackboard.set(account, what);
            parts_.report(event::Motion{what, account});
        }
        return BT::NodeStatus::SUCCESS;
    });
}

}  // namespace vemra::robot
