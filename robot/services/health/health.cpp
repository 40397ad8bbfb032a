#include "robot/services/health/health.h"

#include <array>
#include <utility>

#include "robot/services/core/leaf_functions.h"

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

void HealthService::put(Codes& codes, const std::string& code, bool raised, bool warning)
{
    if (raised ? !codes.insert(code).second : codes.erase(code) == 0)
        return;
    parts_.report(event::HealthCode{code, raised, warning});
}

bool HealthService::take(const Happening& what)
{
    if (const auto* fault = std::get_if<Fault>(&what)) {
        if (fault->kind == FaultKind::Error)
            put(parts_.state.errors, fault->code, fault->raised, false);
        else if (fault->kind == FaultKind::Warning)
            put(warnings_, fault->code, fault->raised, true);
        else
            return false;
        return true;
    }
    if (const auto* change = std::get_if<FittingChange>(&what); change && change->fitting == Fitting::DustBox)
        put(parts_.state.errors, "BOX", !change->installed, false);
    return false;  // others want to know of the box too
}

void HealthService::install(leaf::LeafHost& host)
{
    host.condition("IsRobotHealthy", [this](BT::TreeNode&) { return passed(parts_.state.errors.empty()); });
    host.condition("DoesHappenThisErr", [this](BT::TreeNode& node) {
        return passed(parts_.state.errors.contains(bareCode(PortText(node, "ErrCode").view())));
    });
    host.condition("DoesHappenThisWarning", [this](BT::TreeNode& node) {
        return passed(warnings_.contains(bareCode(PortText(node, "ErrCode").view())));
    });
    // The contacts touch, and no current flows.
    host.condition("DoesGetRobotChargeWarnning", [this](BT::TreeNode&) {
        return passed(warnings_.contains("CHARGE_FAULT") || parts_.state.errors.contains("CHARGE_FAULT"));
    });
    for (const NamedTest& test : kTests)
        host.condition(test.leaf, [this, code = test.code](BT::TreeNode&) {
            return passed(parts_.state.errors.contains(code));
        });
}

}  // namespace vemra::robot
