#include "robot/services/cleaning/cleaning_system.h"

#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {
namespace {

// The power of a brush that stands ready and does not turn.
constexpr int kReady = 1;

}  // namespace

void CleaningSystemService::install(leaf::LeafHost& host)
{
    host.action("SetCleanSystem", [this](BT::TreeNode& node) {
        std::map<std::string, int> powers;
        for (const char* part : {"Brush", "Fan", "Pump", "SideBrush"}) {
            if (!node.getParam(part, powers[part]))
                return BT::NodeStatus::FAILURE;
        }
        if (powers == powers_)
            return BT::NodeStatus::SUCCESS;
        powers_ = powers;
        parts_.state.brushes_on = powers_["Brush"] > kReady;
        parts_.state.fan_on = powers_["Fan"] > kReady;
        nlohmann::ordered_json fields{{"what", "clean_system"}};
        std::string text = "cleaning system:";
        for (const auto& [part, power] : powers_) {
            fields[part] = power;
            text += " " + part + " " + std::to_string(power);
        }
        parts_.report("custom", text, std::move(fields));
        return BT::NodeStatus::SUCCESS;
    });
    host.action("RobotMopGearSet", [](BT::TreeNode& node) {
        int gear = 0;
        return passed(node.getParam("value", gear));
    });
    host.action("RobotIRSwitch", [this](BT::TreeNode& node) {
        bool cliff = false;
        bool front = false;
        if (!node.getParam("Cliff_ON", cliff) || !node.getParam("Front_ON", front))
            return BT::NodeStatus::FAILURE;
        if (infrared_ == std::pair(cliff, front))
            return BT::NodeStatus::SUCCESS;
        infrared_ = {cliff, front};
        const auto word = [](bool on) { return on ? "on" : "off"; };
        parts_.report("custom", std::string("infrared: cliff ") + word(cliff) + ", front " + word(front),
                      {{"what", "infrared"}, {"cliff", cliff}, {"front", front}});
        return BT::NodeStatus::SUCCESS;
    });
    // What a task changed of it is set anew by the next one.
    host.action("RestoreCleanMode", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
    host.action("LDS_Switch",
                [this](BT::TreeNode& node) { return passed(node.getParam("state", parts_.state.laser_on)); });
}

}  // namespace vemra::robot
