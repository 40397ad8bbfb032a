#include "robot/services/power/power.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "robot/base/clock.h"
#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {
namespace {

constexpr double kChargePerHour = 60;
constexpr double kDrainPerHour = 12;
constexpr std::uint64_t kConfirmedAfterFrames = 5;
constexpr int kResumePercent = 80;  // to which a task waits for the charge
constexpr double kFramesPerHour = 3600.0 * 1000 / kFrameMs;

}  // namespace

PowerService::PowerService(const RobotParts& parts, const ScenarioStart& start)
    : parts_(parts),
      charge_per_hour_(start.charge_rate.value_or(kChargePerHour)),
      drain_per_hour_(start.drain_rate.value_or(kDrainPerHour)),
      resume_after_recharge_(start.breakpoint_resume.value_or(true)),
      confirmed_after_(start.parameters_confirmed_after.value_or(kConfirmedAfterFrames))
{
    parts_.state.battery_percent = start.battery;
}

bool PowerService::take(const Happening& what)
{
    const auto* set = std::get_if<SetBattery>(&what);
    if (set == nullptr)
        return false;
    parts_.state.battery_percent = set->percent;
    return true;
}

void PowerService::update()
{
    const double rate = parts_.state.contacts.touching() ? charge_per_hour_ : -drain_per_hour_;
    parts_.state.battery_percent = std::clamp(percent() + rate / kFramesPerHour, 0.0, 100.0);
    tell();
}

// Each ten percent is worth a line.
void PowerService::tell()
{
    const int whole = static_cast<int>(std::lround(percent()));
    if (told_tenth_ == whole / 10)
        return;
    told_tenth_ = whole / 10;
    parts_.report("body", "battery " + std::to_string(whole) + " %", {{"battery", whole}});
}

void PowerService::install(leaf::LeafHost& host)
{
    host.condition("RobotPowerGetLowerThan", [this](BT::TreeNode& node) {
        const auto limit = node.getParam<double>("capability");
        return passed(limit && percent() < *limit);
    });
    host.condition("RobotPowerGetHigherThan", [this](BT::TreeNode& node) {
        const auto limit = node.getParam<double>("capability");
        return passed(limit && percent() >= *limit);
    });
    host.condition("DoesRobotBreakPointEnable",
                   [this](BT::TreeNode&) { return passed(resume_after_recharge_); });
    host.action("BreakPointElecCalculate", [this](BT::TreeNode&) {
        parts_.blackboard.set("Elec_BreakPoint", kResumePercent);
        return BT::NodeStatus::SUCCESS;
    });
    for (ParameterSet& set : sets_) {
        host.condition(set.check, [this, &set](BT::TreeNode&) {
            return passed(set.sent_at && parts_.state.frame >= *set.sent_at + confirmed_after_);
        });
        host.action(set.send, [this, &set](BT::TreeNode&) {
            if (!set.sent_at)
                set.sent_at = parts_.state.frame;
            return BT::NodeStatus::SUCCESS;
        });
    }
}

}  // namespace vemra::robot
