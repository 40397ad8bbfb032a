#include "robot/services/blackboard/timers.h"

#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {

void TimerService::install(leaf::LeafHost& host)
{
    const auto set_back = [this](std::int64_t& timer) {
        return [this, &timer](BT::TreeNode&) {
            timer = now();
            return BT::NodeStatus::SUCCESS;
        };
    };
    const auto longer = [this](const std::int64_t& timer, const char* port, std::int64_t unit_ms) {
        return [this, &timer, port, unit_ms](BT::TreeNode& node) {
            std::int64_t limit = 0;
            return passed(node.getParam(port, limit) && now() - timer >= limit * unit_ms);
        };
    };
    host.action("RobotTimer_ms_Init", set_back(ms_timer_));
    host.action("RobotTimer_s_Init", set_back(s_timer_));
    host.condition("RobotTimerLongerThan_ms", longer(ms_timer_, "long_ms", 1));
    host.condition("RobotTimerLongerThan_s", longer(s_timer_, "long_s", 1000));
    host.action("GetMcuTime", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
    host.action("GetTimeUsInt64", [this](BT::TreeNode& node) {
        const std::string key = textOf(node, "key");
        if (key.empty())
            return BT::NodeStatus::FAILURE;
        node.blackboard()->set(key, now() * 1000);
        return BT::NodeStatus::SUCCESS;
    });
}

}  // namespace vemra::robot
