#include "robot/services/panel/settings.h"

#include <string>

#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {

void SettingsService::write(const SetKeys& set)
{
    for (const auto& [key, text] : set.values)
        parts_.blackboard.set(key, text);
}

bool SettingsService::take(const Happening& what)
{
    if (const auto* set = std::get_if<SetKeys>(&what)) {
        write(*set);
        return true;
    }
    const auto* erase = std::get_if<EraseKeys>(&what);
    if (erase == nullptr)
        return false;
    for (const std::string& key : erase->keys)
        parts_.blackboard.erase(key);
    return true;
}

void SettingsService::install(leaf::LeafHost& host)
{
    host.action("InitSysBBPara", [this](BT::TreeNode&) {
        // The box is emptied after each second cleaning; nothing is counted yet.
        parts_.blackboard.set("dust_switch", "true");
        parts_.blackboard.set("DustTimesSet", 1);
        for (const char* count : {"clean_done_time", "dust_number", "handle_dust_numbers"})
            parts_.blackboard.set(count, 0);
        write(start_);
        return BT::NodeStatus::SUCCESS;
    });
    write(start_);
}

}  // namespace vemra::robot
