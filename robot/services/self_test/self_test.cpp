#include "robot/services/self_test/self_test.h"

#include <utility>

#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {
namespace {

constexpr std::uint64_t kTestFrames = 25;

}  // namespace

const SelfTestService::Part SelfTestService::kParts[] = {
    {"Is_calibration_test", "RobotSelfTest_Calibration", ""},
    {"Is_bump_test", "RobotSelfTest_Bump", "BUMPER"},
    {"Is_cliff_test", "RobotSelfTest_Cliff", "CLIFF"},
    {"Is_frontir_test", "RobotSelfTest_FrontIR", ""},
    {"Is_psd_test", "RobotSelfTest_PSD", "FOLLOWSIDE"},
    {"Is_tof_test", "RobotSelfTest_TOF", "TOF_OFFLINE"},
    {"Is_lds_test", "RobotSelfTest_LDS", "I_LDS_ERROR"},
    {"Is_move_test", "RobotSelfTest_Move", "LEFT_WHEEL_MOTOR"},
    {"Is_turn_test", "RobotSelfTest_Turn", "RIGHT_WHEEL_MOTOR"},
    {"Is_mag_test", "RobotSelfTest_Mag", "STRONG_MAGNET"},
    {"Is_dustbox_test", "RobotSelfTest_DustBox", "BOX"},
    {"Is_waterbox_test", "RobotSelfTest_WaterBox", "TANKBOX"},
    {"Is_fan_test", "RobotSelfTest_Fan", "I_FAN_SPEED"},
    {"Is_sidebrush_test", "RobotSelfTest_SideBrush", "SIDEBRUSH"},
    {"Is_brush_test", "RobotSelfTest_Brush", "BRUSH"},
    {"Is_mop_test", "RobotSelfTest_MOP", ""},
    {nullptr, "RobotSelfTest_mr133", ""},
};

bool SelfTestService::take(const Happening& what)
{
    const auto* step = std::get_if<SelfTestStep>(&what);
    if (step == nullptr)
        return false;
    stopped_ = *step == SelfTestStep::Stop;
    if (!stopped_) {
        led_by_app_ = *step == SelfTestStep::App;
        begun_ = false;
        parts_.state.modes.request(Mode::SelfTest);
    }
    return true;
}

BT::NodeStatus SelfTestService::test(const Part& part, const BT::TreeNode& node)
{
    if (node.status() != BT::NodeStatus::RUNNING)
        test_began_ = parts_.state.frame;
    if (parts_.state.frame - test_began_ < kTestFrames)
        return BT::NodeStatus::RUNNING;
    const bool good = part.code.empty() || !parts_.state.errors.contains(part.code);
    if (good)
        passed_.insert(part.test);
    parts_.report(event::Note{std::string(part.test) + (good ? " passed" : " failed"),
                              "self_test",
                              {{"leaf", std::string(part.test)}, {"passed", good}}});
    return passed(good);
}

void SelfTestService::install(leaf::LeafHost& host)
{
    for (const Part& part : kParts) {
        host.builder(part.test,
                     RunningAction::builder([this, &part](BT::TreeNode& node) { return test(part, node); }));
        if (part.asked != nullptr)
            host.condition(part.asked,
                           [this, &part](BT::TreeNode&) { return passed(passed_.contains(part.test)); });
    }
    installSteps(host);
}

void SelfTestService::installSteps(leaf::LeafHost& host)
{
    host.condition("IsOnceTest", [this](BT::TreeNode&) { return passed(!std::exchange(begun_, true)); });
    host.condition("IsAPPTest", [this](BT::TreeNode&) { return passed(led_by_app_); });
    host.condition("IsStopTest", [this](BT::TreeNode&) { return passed(stopped_); });
    host.action("RobotSelfTestInit", [this](BT::TreeNode&) {
        passed_.clear();
        return BT::NodeStatus::SUCCESS;
    });
    const auto over = [this](BT::TreeNode&) {
        parts_.report(event::Note{
            "self-test over", "self_test", {{"parts_passed", static_cast<std::int64_t>(passed_.size())}}});
        begun_ = false;
        return BT::NodeStatus::SUCCESS;
    };
    host.action("SelfTestTestOver", over);
    host.action("NotifyTrd", over);
}

}  // namespace vemra::robot
