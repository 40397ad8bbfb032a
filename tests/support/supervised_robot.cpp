#include "support/supervised_robot.h"

#include <algorithm>
#include <stdexcept>

namespace vemra::test {
namespace {

constexpr ModeNames kModes[] = {
    {"PowerOffMode", "PowerOffModeIndex", "NeedToEnterPowerOffMode", "IsAimMode_PowerOff"},
    {"OtaModeMode", "OTAModeDealIndex", "NeedToEnterOTAMode", "IsAimMode_OTA"},
    {"SleepMode", "SleepModeDealIndex", "NeedToEnterSleepMode", "IsAimMode_Sleep"},
    {"PauseAndStopMode", "StopModeIndex", "NeedToEnterStopMode", "IsAimMode_Pause"},
    {"AutoCleanMode", "AutoModeIndex", "NeedToEnterAutoMode", "IsAimMode_Auto"},
    {"BackHomeMode", "BackHomeIndex", "NeedToEnterBackHomeMode", "IsAimMode_BackHome"},
    {"ErrRepotMode", "ErrorReportIndex", "NeedToEnterErrorReportMode", "IsAimMode_ErrReport"},
    {"FollowWallMode", "FollowWallModeIndex", "NeedToEnterFollowWallMode", nullptr},
    {"WIFISetMode", "SetWIFIModeIndex", "NeedToEnterWIFISetMode", nullptr},
    {"FactoryMode", "FactoryModeIndex", "NeedToEnterFactoryMode", nullptr},
    {"RemoteCtrlMode", "RemoteCtrlModeIndex", "NeedToEnterRemoteCtrlMode", "IsAimMode_Remote"},
    {"FactoryFuncTest", "FactoryRunModeIndex", "NeedToEnterFactoryRunMode", nullptr},
    {"PartCleanMode", "PartCleanModeIndex", "NeedToEnterPartCleanMode", "IsAimMode_FiledClean"},
    {"ChargingMode", "StopChargingIndex", "NeedToEnterChargingMode", "IsAimMode_Charging"},
    {"StandbyMode", "StandbyModeIndex", "NeedToEnterStandbyMode", "IsAimMode_Standby"},
    {"SelectAreaCleanMode", "AreaSelectModeIndex", nullptr, "IsAimMode_AreaSelect"},
    {"DrawAreaCleanMode", "DrawAreaModeIndex", nullptr, "IsAimMode_DrawArea"},
    {"SelectPointCleanMode", "PointSelectModeIndex", nullptr, "IsAimMode_PointSelect"},
    {"FastMapBuildMode", "MapBuildModeIndex", nullptr, "IsAimMode_FastMapBuild"},
};

constexpr const char* kKeyValue = "1";

NodeStatus passed(bool yes)
{
    return yes ? SUCCESS : FAILURE;
}

}  // namespace

std::span<const ModeNames> modes()
{
    return kModes;
}

SupervisedRobot::SupervisedRobot(const std::vector<std::string>& real_mode_trees)
{
    for (const ModeNames& names : kModes)
        if (std::find(real_mode_trees.begin(), real_mode_trees.end(), names.tree) == real_mode_trees.end())
            tree(names.tree).runs();
    scriptModes();
    scriptMachine();
    scriptCommands();
}

void SupervisedRobot::scriptModes()
{
    leaf("RobotModeAdjugement").decides([this](const Moment& now) {
        return passed(now.port("DoesRobotModeExcute") == mode);
    });
    for (const ModeNames& names : kModes)
        if (names.entry != nullptr)
            leaf(names.entry).decides([this, &names](const Moment&) { return passed(mode == names.mode); });
    leaf("NeedInitialStopMode").succeeds();
    leaf("ChangeRobotModeTo").decides([this](const Moment& now) {
        for (const ModeNames& names : kModes)
            if (names.port != nullptr && now.port(names.port) == "true") {
                requests_.emplace_back(names.mode);
                if (obeys_requests)
                    take(names.mode);
                return SUCCESS;
            }
        throw std::logic_error("ChangeRobotModeTo without a mode");
    });
    // A change is seen until it was dealt with, which ends with five lines of log.
    leaf("DoesRobotModeChanged").follows(changed_);
    leaf("SaySomething message='Robot Mode Changed!'").decides([this](const Moment&) {
        changed_ = ++lines_of_change_ < 5;
        return SUCCESS;
    });
    leaf("BackToLastRobotMode").succeeds();
    for (const char* idle : {"StopModeDeal", "SleepModeDeal", "PowerOffModeDeal"})
        leaf(idle).runs();
}

void SupervisedRobot::take(const std::string& mode_name)
{
    changed_ = mode != mode_name;
    lines_of_change_ = 0;
    mode = mode_name;
}

void SupervisedRobot::scriptMachine()
{
    leaf("RobotPowerGetLowerThan").decides([this](const Moment& now) {
        return passed(battery < std::stoi(now.port("capability")));
    });
    leaf("RobotPowerGetHigherThan").decides([this](const Moment& now) {
        return passed(battery >= std::stoi(now.port("capability")));
    });
    leaf("DoesRobotGetCharger").follows(on_charger);
    leaf("IsRobotInAnnoyMode").follows(quiet_hours);
    leaf("IsRobotHealthy").decides([this](const Moment&) { return passed(errors.empty()); });
    leaf("IsStationNormal").succeeds();
    const auto holds = [this](const char* id, const std::set<std::string>& codes) {
        leaf(id).decides([&codes](const Moment& now) {
            const std::string code = now.port("ErrCode");
            const auto name = code.rfind("TYPE_");
            return passed(name != std::string::npos && codes.contains(code.substr(name + 5)));
        });
    };
    holds("DoesHappenThisErr", errors);
    holds("DoesHappenThisWarning", warnings);
    succeed("IsElecParaInitOK | IsGyroParaInitOK | IsIrParaInitOK | IsLightFlowParaInitOK");
    succeed("IsInfraredConnect | IsInFrequentDust");
    leaf("SlamCleanComplete").writes("slam_save_map_reta", 0);
    leaf("SetMusicPlayPara").decides([this](const Moment& now) {
        if (const std::string number = now.port("MusicNumber"); !mode.empty())
            music_.push_back(number);
        return SUCCESS;
    });
    set("RobotReuseMapEnable=0 reuseinfo_fullfilename=/reuse map_id_with_order=1 RobotChildLockStatus=0");
}

void SupervisedRobot::scriptCommands()
{
    leaf("IsKeysStatueChanged").decides([this](const Moment& now) {
        return passed(now.frame == key_frame_);
    });
    leaf("DoesKeyValueIs").decides([this](const Moment& now) {
        return passed(now.frame >= key_frame_ && now.port("button_value") == kKeyValue);
    });
    for (const char* key : {"Is_Key1_Click", "Is_Key2_Click", "Is_Key1_LongPressed", "Is_Key2_LongPressed",
                            "Is_SetWIFIKey_Click", "Is_ResetKey_LongPress"})
        leaf(key).decides([this, key](const Moment&) { return passed(key_leaf_ == key); });
    leaf("DoesReceiveWIFICMD").decides([this](const Moment& now) {
        return passed(now.frame == command_frame_);
    });
    leaf("WhatsTheAPPCMDMode").decides([this](const Moment& now) {
        return passed(now.port("IsThisMode") == command_);
    });
}

void SupervisedRobot::powerOn()
{
    start("RobotNode");
    for (int i = 0; i < 50; ++i) {
        tick();
        if (!changed_ && std::any_of(std::begin(kModes), std::end(kModes),
                                     [this](const ModeNames& names) { return mode == names.mode; }))
            return (void)tick();
    }
    ADD_FAILURE() << "the robot did not come up:\n" << transcript().print();
}

void SupervisedRobot::enterMode(const std::string& name)
{
    take(name);
    tick(5);
    EXPECT_FALSE(changed_) << "the change to " << name << " was not dealt with";
    tick();
}

NodeStatus SupervisedRobot::enter(const std::string& name, const std::string& tree, int frames)
{
    mode = name;
    forgetRequests();
    return run(tree, frames);
}

void SupervisedRobot::press(const std::string& key_leaf)
{
    key_leaf_ = key_leaf;
    key_frame_ = frame() + 1;
    set("OloButton", kKeyValue);
}

void SupervisedRobot::command(const std::string& mode_name)
{
    command_ = mode_name;
    command_frame_ = frame() + 1;
}

}  // namespace vemra::test
