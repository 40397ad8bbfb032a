#include "robot/host/end_reason.h"

#include <fmt/format.h>

#include <string_view>

namespace vemra::robot {
namespace {

/// The keys in a port's text that are not on the blackboard.
std::string missingKeys(const BT::TreeNode& node)
{
    std::string missing;
    for (const auto& [port, text] : node.initializationParameters()) {
        const std::string_view rest = text;
        for (std::size_t at = rest.find("${"); at != std::string_view::npos; at = rest.find("${", at + 2)) {
            const std::size_t end = rest.find('}', at);
            const std::string key(rest.substr(at + 2, end == std::string_view::npos ? end : end - at - 2));
            if (!node.blackboard()->contains(key))
                missing += fmt::format("{}{}", missing.empty() ? "" : ", ", key);
        }
        if (port == "key" && text.find("${") == std::string::npos && !node.blackboard()->contains(text))
            missing += fmt::format("{}{}", missing.empty() ? "" : ", ", text);
    }
    return missing.empty() ? missing : fmt::format(": not on the blackboard: {}", missing);
}

}  // namespace

void EndReason::onStatusChange(const BT::TreeNode& node, BT::NodeStatus /*before*/, BT::NodeStatus now)
{
    const bool leaf = node.type() == BT::NodeType::ACTION || node.type() == BT::NodeType::CONDITION;
    if (!leaf || node.registrationName() == "SubtreeCondition" ||
        (now != BT::NodeStatus::SUCCESS && now != BT::NodeStatus::FAILURE))
        return;
    std::string& reason = now == BT::NodeStatus::SUCCESS ? success_ : failure_;
    reason = fmt::format("{} ({}, node {}){}", node.registrationName(), node.place().tree, node.place().index,
                         missingKeys(node));
}

}  // namespace vemra::robot
