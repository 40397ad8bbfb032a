#include "robot/services/modes/modes.h"

#include <array>
#include <utility>

#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {

namespace {

constexpr std::uint64_t kFramesOfUpdate = 3000;

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

/// `RobotModeAdjugement`: is the mode the one that the port names? What a literal names is looked up once.
class IsModeCondition final : public BT::ConditionNode
{
public:
    IsModeCondition(const std::string& name, const BT::NodeParameters& ports, const ModeSwitch& modes)
        : ConditionNode(name, ports), modes_(modes)
    {}

private:
    static constexpr const char* kPort = "DoesRobotModeExcute";

    void onInit() override
    {
        const BT::Port* port = findPort(kPort);
        is_literal_ = port == nullptr || port->form() == BT::PortForm::Literal;
        if (port != nullptr && is_literal_)
            named_ = modeFromText(port->raw());
    }
    BT::NodeStatus tick() override
    {
        const Mode now = modes_.current();
        if (now == Mode::None)
            return BT::NodeStatus::FAILURE;
        return passed(is_literal_ ? named_ == now : isText(*this, kPort, toText(now)));
    }

    const ModeSwitch& modes_;
    bool is_literal_ = false;
    std::optional<Mode> named_;
};

}  // namespace

void ModeService::update()
{
    frames_of_update_ = current() == Mode::Ota ? frames_of_update_ + 1 : 0;
    if (frames_of_update_ != kFramesOfUpdate)
        return;
    parts_.report(event::Note{"firmware updated", "update"});
    parts_.state.modes.request(Mode::Standby);
}

bool ModeService::take(const Happening& what)
{
    const auto* entered = std::get_if<EnterMode>(&what);
    if (entered == nullptr)
        return false;
    from_board_ = entered->mode;
    return true;
}

BT::NodeStatus ModeService::changeTo(BT::TreeNode& node)
{
    std::optional<Mode> aim;
    for (const AimPort& entry : kAims)
        if (isText(node, entry.port, "true")) {
            if (aim)
                return BT::NodeStatus::FAILURE;  // two aims are none
            aim = entry.mode;
        }
    if (!aim)
        return BT::NodeStatus::FAILURE;
    parts_.state.modes.request(*aim);
    return BT::NodeStatus::SUCCESS;
}

void ModeService::install(leaf::LeafHost& host)
{
    installDispatch(host);
    installDeals(host);
}

void ModeService::installDispatch(leaf::LeafHost& host)
{
    // A task that is being closed holds the change up, and with it the tree that asks: ended, it would be
    // entered anew and begin the next task.
    host.builder("ChangeRobotModeTo", RunningAction::builder([this](BT::TreeNode& node) {
                     const bool held =
                         current() != Mode::None && parts_.blackboard.contains("RobotModeSwitchLock");
                     return held ? BT::NodeStatus::RUNNING : changeTo(node);
                 }));
    host.builder("DoesRobotModeChanged",
                 PassCondition::builder({[this] {
                                             const std::uint64_t changes = parts_.state.modes.changes();
                                             return std::exchange(told_changes_, changes) != changes;
                                         },
                                         [] { return true; }, [] {}}));
    host.builder("RobotModeAdjugement", [this](const std::string& name, const BT::NodeParameters& ports) {
        return BT::makeNode<IsModeCondition>(name, ports, parts_.state.modes);
    });
    for (const Entry& entry : kEntries)
        host.condition(entry.leaf,
                       [this, mode = entry.mode](BT::TreeNode&) { return passed(current() == mode); });
    host.condition("NeedInitialStopMode", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
    host.condition("NeedInitialAutoMode", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
    host.action("SetLastRobotMode", [this](BT::TreeNode&) {
        parts_.blackboard.set("LastRobotMode", static_cast<int>(current()));
        return BT::NodeStatus::SUCCESS;
    });
    // The number kept on falling asleep; a robot that has none stands by.
    host.action("BackToLastRobotMode", [this](BT::TreeNode&) {
        int number = 0;
        if (!parts_.blackboard.get("Sleep_LastRobotMode", number))
            number = static_cast<int>(Mode::Standby);
        const Mode mode = modeFromNumber(number).value_or(Mode::None);
        parts_.state.modes.request(mode != Mode::None && mode != Mode::Sleep ? mode : Mode::Standby);
        return BT::NodeStatus::SUCCESS;
    });
    host.action("Parse_MCU_FCT_CMD", [this](BT::TreeNode&) {
        if (from_board_)
            parts_.state.modes.request(*std::exchange(from_board_, std::nullopt));
        return BT::NodeStatus::SUCCESS;
    });
    host.action("ThrowErrMSG", [this](BT::TreeNode& node) {
        parts_.report(event::LevelMessage{textOf(node, "Message"), "err"});
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
                     if (!std::exchange(parts_.state.powered_off, true))
                         parts_.report(event::UserAct{"powered off"});
                     return BT::NodeStatus::RUNNING;
                 }));
}

}  // namespace vemra::robot
