#include "robot/services/power.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "robot/services/leaf_functions.h"

namespace vemra::robot {

PowerService::PowerService(BT::Blackboard& blackboard, Report report, const Config& config)
    : blackboard_(blackboard),
      report_(std::move(report)),
      config_(config),
      percent_(std::clamp(config.percent, 0.0, 100.0)),
      told_percent_(static_cast<int>(percent_))
{}

void PowerService::setPercent(double percent)
{
    percent_ = std::clamp(percent, 0.0, 100.0);
}

void PowerService::update(double seconds, bool on_contacts)
{
    ++frame_;
    const double rate = on_contacts ? config_.charge_per_hour : -config_.drain_per_hour;
    setPercent(percent_ + rate * seconds / 3600);
    // Each ten percent, and the first below them, is worth a line.
    const int whole = static_cast<int>(std::floor(percent_));
    if (whole / 10 == told_percent_ / 10)
        return;
    told_percent_ = whole;
    report_("body", "battery " + std::to_string(whole) + " %", {{"battery", whole}});
}

void PowerService::install(leaf::LeafHost& host)
{
    const auto limit = [](const BT::TreeNode& node, double& out) { return node.getParam("capability", out); };
    host.condition("RobotPowerGetLowerThan", [this, limit](BT::TreeNode& node) {
        double percent = 0;
        return passed(limit(node, percent) && percent_ < percent);
    });
    host.condition("RobotPowerGetHigherThan", [this, limit](BT::TreeNode& node) {
        double percent = 0;
        return passed(limit(node, percent) && percent_ >= percent);
    });
    host.condition("DoesRobotBreakPointEnable",
                   [this](BT::TreeNode&) { return passed(config_.resume_after_recharge); });
    host.action("BreakPointElecCalculate", [this](BT::TreeNode&) {
        blackboard_.set("Elec_BreakPoint", static_cast<int>(config_.resume_percent));
        return BT::NodeStatus::SUCCESS;
    });
    for (ParameterSet& set : sets_)
    {
        host.condition(set.check, [this, &set](BT::TreeNode&) {
            return passed(set.sent_at && frame_ >= *set.sent_at + config_.confirm_after_frames);
        });
        host.action(set.send, [this, &set](BT::TreeNode&) {
            if (!set.sent_at)
                set.sent_at = frame_;
            return BT::NodeStatus::SUCCESS;
        });
    }
}

}  // namespace vemra::robot
