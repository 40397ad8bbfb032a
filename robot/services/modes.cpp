#include "robot/services/modes.h"

#include <array>
#include <utility>

#include "robot/services/leaf_functions.h"

namespace vemra::robot {

namespace {

struct ModeName
{
    Mode mode;
    const char* name;
};

constexpr std::array<ModeName, 22> kNames{{{Mode::None, ""},
                                           {Mode::AutoClean, "AutoCleanMode"},
                                           {Mode::PartClean, "PartCleanMode"},
                                           {Mode::BackHome, "BackHomeMode"},
                                           {Mode::SelectAreaClean, "SelectAreaCleanMode"},
                                           {Mode::DrawAreaClean, "DrawAreaCleanMode"},
                                           {Mode::SelectPointClean, "SelectPointCleanMode"},
                                           {Mode::FastMapBuild, "FastMapBuildMode"},
                                           {Mode::Charging, "ChargingMode"},
                                           {Mode::Standby, "StandbyMode"},
                                           {Mode::PauseAndStop, "PauseAndStopMode"},
                                           {Mode::PowerOff, "PowerOffMode"},
                                           {Mode::ErrRepot, "ErrRepotMode"},
                                           {Mode::Ota, "OtaModeMode"},
                                           {Mode::Sleep, "SleepMode"},
                                           {Mode::RemoteCtrl, "RemoteCtrlMode"},
                                           {Mode::FollowWall, "FollowWallMode"},
                                           {Mode::WifiSet, "WIFISetMode"},
                                           {Mode::Factory, "FactoryMode"},
                                           {Mode::FactoryFuncTest, "FactoryFuncTest"},
                                           {Mode::FactoryRun, "FctModeMode"},
                                           {Mode::SelfTest, "SelfTestMode"}}};

struct AimPort
{
    const char* port;
    Mode mode;
};

constexpr std::array<AimPort, 15> kAims{{{"IsAimMode_AreaSelect", Mode::SelectAreaClean},
                                         {"IsAimMode_Auto", Mode::AutoClean},
                                         {"IsAimMode_BackHome", Mode::BackHome},
                                         {"IsAimMode_Charging", Mode::Charging},
                                         {"IsAimMode_DrawArea", Mode::DrawAreaClean},
                                         {"IsAimMode_ErrReport", Mode::ErrRepot},
                                         {"IsAimMode_FastMapBuild", Mode::FastMapBuild},
                                         {"IsAimMode_FiledClean", Mode::PartClean},
                                         {"IsAimMode_OTA", Mode::Ota},
                                         {"IsAimMode_Pause", Mode::PauseAndStop},
                                         {"IsAimMode_PointSelect", Mode::SelectPointClean},
                                         {"IsAimMode_PowerOff", Mode::PowerOff},
                                         {"IsAimMode_Remote", Mode::RemoteCtrl},
                                         {"IsAimMode_Sleep", Mode::Sleep},
                                         {"IsAimMode_Standby", Mode::Standby}}};

/// The conditions of the mode chain and the mode that each stands for.
struct Entry
{
    const char* leaf;
    Mode mode;
};

constexpr std::array<Entry, 16> kEntries{{{"NeedToEnterPowerOffMode", Mode::PowerOff},
                                          {"NeedToEnterOTAMode", Mode::Ota},
                                          {"NeedToEnterSleepMode", Mode::Sleep},
                                          {"NeedToEnterStopMode", Mode::PauseAndStop},
                                          {"NeedToEnterAutoMode", Mode::AutoClean},
                                          {"NeedToEnterBackHomeMode", Mode::BackHome},
                                          {"NeedToEnterErrorReportMode", Mode::ErrRepot},
                                          {"NeedToEnterFollowWallMode", Mode::FollowWall},
                                          {"NeedToEnterWIFISetMode", Mode::WifiSet},
                                          {"NeedToEnterFactoryMode", Mode::Factory},
                                          {"NeedToEnterRemoteCtrlMode", Mode::RemoteCtrl},
                                          {"NeedToEnterFactoryRunMode", Mode::FactoryRun},
                                          {"NeedToEnterPartCleanMode", Mode::PartClean},
                                          {"NeedToEnterChargingMode", Mode::Charging},
                                          {"NeedToEnterStandbyMode", Mode::Standby},
                                          {"NeedToEnterRobotSelfTestMode", Mode::SelfTest}}};

}  // namespace

const char* toText(Mode mode)
{
    for (const ModeName& entry : kNames)
        if (entry.mode == mode)
            return entry.name;
    return "";
}

std::optional<Mode> modeFromText(std::string_view name)
{
    for (const ModeName& entry : kNames)
        if (entry.name == name)
            return entry.mode;
    return std::nullopt;
}

ModeService::ModeService(BT::Blackboard& blackboard, Report report)
    : blackboard_(blackboard), report_(std::move(report))
{}

bool ModeService::cleaning() const
{
    switch (current_)
    {
        case Mode::AutoClean:
        case Mode::PartClean:
        case Mode::SelectAreaClean:
        case Mode::DrawAreaClean:
        case Mode::SelectPointClean:
            return true;
        default:
            return false;
    }
}

void ModeService::request(Mode mode)
{
    requested_ = mode;
}

void ModeService::update()
{
    if (!requested_ || blackboard_.contains("RobotModeSwitchLock"))
        return;
    const Mode next = *std::exchange(requested_, std::nullopt);
    if (next == current_)
        return;
    report_("mode", toText(next), {{"from", toText(current_)}, {"to", toText(next)}});
    current_ = next;
    change_to_tell_ = true;
}

BT::NodeStatus ModeService::changeTo(BT::TreeNode& node)
{
    std::optional<Mode> aim;
    for (const AimPort& entry : kAims)
        if (textOf(node, entry.port) == "true")
        {
            if (aim)
                return BT::NodeStatus::FAILURE;  // two aims are none
            aim = entry.mode;
        }
    if (!aim)
        return BT::NodeStatus::FAILURE;
    request(*aim);
    return BT::NodeStatus::SUCCESS;
}

void ModeService::install(leaf::LeafHost& host)
{
    installDispatch(host);
    installDeals(host);
}

void ModeService::installDispatch(leaf::LeafHost& host)
{
    host.action("ChangeRobotModeTo", [this](BT::TreeNode& node) { return changeTo(node); });
    host.builder("DoesRobotModeChanged", PassCondition::builder({[this] { return std::exchange(change_to_tell_, false); },
                                                                 [] { return true; }, [] {}}));
    host.condition("RobotModeAdjugement", [this](BT::TreeNode& node) {
        return passed(current_ != Mode::None && textOf(node, "DoesRobotModeExcute") == toText(current_));
    });
    for (const Entry& entry : kEntries)
        host.condition(entry.leaf, [this, mode = entry.mode](BT::TreeNode&) { return passed(current_ == mode); });
    host.condition("NeedInitialStopMode", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
    host.condition("NeedInitialAutoMode", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
    host.action("SetLastRobotMode", [this](BT::TreeNode&) {
        blackboard_.set("LastRobotMode", static_cast<int>(current_));
        return BT::NodeStatus::SUCCESS;
    });
    // The number kept on falling asleep; a robot that has none stands by.
    host.action("BackToLastRobotMode", [this](BT::TreeNode&) {
        int number = 0;
        if (!blackboard_.get("Sleep_LastRobotMode", number))
            number = static_cast<int>(Mode::Standby);
        const auto mode = static_cast<Mode>(number);
        request(*toText(mode) != '\0' && mode != Mode::Sleep ? mode : Mode::Standby);
        return BT::NodeStatus::SUCCESS;
    });
    host.action("ThrowErrMSG", [this](BT::TreeNode& node) {
        report_("message", textOf(node, "Message"), {{"level", "err"}});
        return BT::NodeStatus::SUCCESS;
    });
}

void ModeService::installDeals(leaf::LeafHost& host)
{
    // The robot rests in these modes: nothing is to be done, for as long as the mode lasts.
    const auto rest = RunningAction::builder([](BT::TreeNode&) { return BT::NodeStatus::RUNNING; });
    for (const char* leaf : {"StopModeDeal", "SleepModeDeal", "ErrorReportModeDeal", "FactoryModeDeal"})
        host.builder(leaf, rest);
    host.builder("PowerOffModeDeal", RunningAction::builder([this](BT::TreeNode&) {
                     if (!std::exchange(powered_off_, true))
                         report_("user", "powered off", {});
                     return BT::NodeStatus::RUNNING;
                 }));
}

}  // namespace vemra::robot
