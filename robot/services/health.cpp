#include "robot/services/health.h"

#include <array>
#include <utility>

#include "robot/services/leaf_functions.h"

namespace vemra::robot {

namespace {

constexpr std::string_view kPrefix = "OLO_HEALTH_STATUS_TYPE_";

struct NamedTest
{
    const char* leaf;
    const char* code;
};

/// The tests that carry their code in their name.
constexpr std::array<NamedTest, 11> kTests{{{"IsError_Drop", "DROP"},
                                            {"IsError_Cliff", "CLIFF"},
                                            {"IsError_Box", "BOX"},
                                            {"IsError_Bumper", "BUMPER"},
                                            {"IsError_Trap", "TRAP"},
                                            {"IsError_Brush", "BRUSH"},
                                            {"IsError_SideBrush", "SIDEBRUSH"},
                                            {"IsError_TankBox", "TANKBOX"},
                                            {"IsError_ChargeFault", "CHARGE_FAULT_BOARD"},
                                            {"IsError_Heart", "HEART"},
                                            {"IsError_BatteryVeryLow", "BATTERY_VERY_LOW"}}};

}  // namespace

std::string_view bareCode(std::string_view code)
{
    if (code.starts_with(kPrefix))
        code.remove_prefix(kPrefix.size());
    return code;
}

HealthService::HealthService(Report report) : report_(std::move(report)) {}

bool HealthService::hasError(std::string_view code) const
{
    return errors_.contains(code);
}

bool HealthService::hasWarning(std::string_view code) const
{
    return warnings_.contains(code);
}

void HealthService::raiseError(const std::string& code)
{
    if (errors_.insert(code).second)
        report_("error", code + " raised", {{"code", code}, {"raised", true}});
}

void HealthService::clearError(const std::string& code)
{
    if (errors_.erase(code) > 0)
        report_("error", code + " cleared", {{"code", code}, {"raised", false}});
}

void HealthService::raiseWarning(const std::string& code)
{
    if (warnings_.insert(code).second)
        report_("error", "warning " + code + " raised", {{"code", code}, {"warning", true}, {"raised", true}});
}

void HealthService::clearWarning(const std::string& code)
{
    if (warnings_.erase(code) > 0)
        report_("error", "warning " + code + " cleared", {{"code", code}, {"warning", true}, {"raised", false}});
}

void HealthService::install(leaf::LeafHost& host)
{
    host.condition("IsRobotHealthy", [this](BT::TreeNode&) { return passed(healthy()); });
    host.condition("DoesHappenThisErr", [this](BT::TreeNode& node) {
        return passed(hasError(bareCode(textOf(node, "ErrCode"))));
    });
    host.condition("DoesHappenThisWarning", [this](BT::TreeNode& node) {
        return passed(hasWarning(bareCode(textOf(node, "ErrCode"))));
    });
    for (const NamedTest& test : kTests)
        host.condition(test.leaf, [this, code = test.code](BT::TreeNode&) { return passed(hasError(code)); });
}

}  // namespace vemra::robot
