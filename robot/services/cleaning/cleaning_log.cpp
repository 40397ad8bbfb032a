#include "robot/services/cleaning/cleaning_log.h"

#include <cmath>
#include <utility>

#include "robot/base/clock.h"
#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {

// Several keep the track at the same time; the way of a frame counts once.
void CleaningLogService::trace(const BT::TreeNode& node)
{
    const BT::Blackboard& keys = parts_.blackboard;
    if (traced_in_ == parts_.state.frame ||
        (keys.contains("not_trace_token") && !isText(node, "force_enable", "true")))
        return;
    traced_in_ = parts_.state.frame;
    const WheelSpeeds wheels = parts_.body.wheelSpeeds();
    const double way_mm = std::abs(wheels.left + wheels.right) / 2 * kFrameMs / 1e3;
    if (way_mm == 0)
        return;
    reason_.clear();
    keys.get("trace_token", reason_);
    traced_mm_[reason_] += way_mm;
}

void CleaningLogService::generate(const std::string& mode)
{
    BT::Blackboard& keys = parts_.blackboard;
    // Asked for by who closes a task that is not worth a record.
    const bool unwanted = keys.erase("CleanCompleteWithoutCleaningLog");
    std::string stage;
    keys.get("task_state", stage);
    int seconds = 0;
    keys.get("clean_time_for_app", seconds);
    std::map<std::string, double> ways = std::exchange(traced_mm_, {});
    if (unwanted || keys.contains("MockCleaningLog"))
        return;
    const bool done = stage == "completing";
    const double area_m2 = map_.cleaned().areaM2();
    parts_.report(event::CleaningLog{mode, seconds, area_m2, done, std::move(ways)});
}

void CleaningLogService::install(leaf::LeafHost& host)
{
    host.action("GenerateCleaningLog", [this](BT::TreeNode& node) {
        // The search for its place is no clean.
        const std::string mode = textOf(node, "clean_mode");
        if (!mode.empty())
            generate(mode);
        return BT::NodeStatus::SUCCESS;
    });
    host.builder("TraceLogger", RunningAction::builder([this](BT::TreeNode& node) {
                     trace(node);
                     return BT::NodeStatus::RUNNING;
                 }));
}

}  // namespace vemra::robot
