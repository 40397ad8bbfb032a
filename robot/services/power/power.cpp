#include "robot/services/power/power.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "robot/base/clock.h"
#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {
namespace {

constexpr double kChargePerHour = 60;
// Percent an hour: two and a half hours of cleaning on one charge.
constexpr double kDrainAwake = 3;
constexpr double kDrainLaser = 3;
constexpr double kDrainBrushes = 8;
constexpr double kDrainFan = 14;
constexpr double kDrainAtFullSpeed = 12;
constexpr double kFullSpeedMmS = 300;
constexpr double kFull = 100;
constexpr std::uint64_t kConfirmedAfterFrames = 5;
/// Contacts that break before are no charge.
constexpr std::uint64_t kChargesAfterFrames = 50;
constexpr double kFramesPerHour = 3600.0 * 1000 / kFrameMs;

}  // namespace

PowerService::PowerService(const RobotParts& parts, const ScenarioStart& start)
    : parts_(parts),
      charge_per_hour_(start.charge_rate.value_or(kChargePerHour)),
      drain_per_hour_(start.drain_rate),
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
    const double rate = parts_.state.contacts.touching() ? charge_per_hour_ : -drainPerHour();
    parts_.state.battery_percent = std::clamp(percent() + rate / kFramesPerHour, 0.0, 100.0);
    tell();
    tellCharge();
    if (percent() <= 0 && !parts_.state.powered_off) {
        parts_.body.stop();
        parts_.state.powered_off = true;
        parts_.report(event::BatteryEmpty{});
    }
}

double PowerService::drainPerHour() const
{
    if (drain_per_hour_)
        return *drain_per_hour_;
    const RobotState& state = parts_.state;
    const WheelSpeeds wheels = parts_.body.wheelSpeeds();
    const double speed = (std::abs(wheels.left) + std::abs(wheels.right)) / 2;
    return kDrainAwake + (state.laser_on ? kDrainLaser : 0) + (state.brushes_on ? kDrainBrushes : 0) +
           (state.fan_on ? kDrainFan : 0) + kDrainAtFullSpeed * speed / kFullSpeedMmS;
}

// A robot that comes up on its dock has not come home.
void PowerService::tellCharge()
{
    const DockContacts& contacts = parts_.state.contacts;
    const bool came = contacts.justTouched() || came_frames_ > 0;
    came_frames_ = came && contacts.touching() ? came_frames_ + 1 : 0;
    if (came_frames_ == kChargesAfterFrames && percent() < kFull) {
        ++charges_;
        const int whole = static_cast<int>(std::lround(percent()));
        parts_.report(event::ChargeBegins{charges_, whole});
    }
}

// Each ten percent is worth a line.
void PowerService::tell()
{
    const int whole = static_cast<int>(std::lround(percent()));
    if (told_tenth_ == whole / 10)
        return;
    told_tenth_ = whole / 10;
    parts_.report(event::BatteryLevel{whole});
}

void PowerService::install(leaf::LeafHost& host)
{
    host.condition("RobotPowerGetLowerThan", [this](BT::TreeNode& node) {
        const auto limit = node.getParam<double>("capability");
        return passed(limit && percent() < *limit);
    });
    host.condition("RobotPowerGetHigherThan", [this](BT::TreeNode& node) {
        const auto limit = node.getParam<double>("capability");
        // At exactly 16 percent a clean is broken off; a full battery is full.
        return passed(limit && (*limit < kFull ? percent() > *limit : percent() >= kFull));
    });
    host.condition("DoesRobotBreakPointEnable",
                   [this](BT::TreeNode&) { return passed(resume_after_recharge_); });
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
