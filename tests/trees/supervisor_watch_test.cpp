#include "support/supervised_robot.h"

namespace vemra::test {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

TEST(HealthCheck, StopsTellsAndReportsAnErrorOnce)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.enterMode("AutoCleanMode");
    robot.forgetRequests();
    robot.forget();
    robot.errors = {"I_FAN_SPEED", "BATTERY_FAULT"};
    robot.tick();
    EXPECT_TRUE(robot.asked("Stop"));
    EXPECT_THAT(robot.requests(), ElementsAre("ErrRepotMode"));
    EXPECT_THAT(robot.music(), ElementsAre("42")) << "the first of the list";
    EXPECT_TRUE(robot.halted("AutoModeIndex"));
    robot.tick(50);
    EXPECT_THAT(robot.requests(), ElementsAre("ErrRepotMode"));
    EXPECT_THAT(robot.music(), ElementsAre("42"));
}

TEST(HealthCheck, HasAMusicForEachError)
{
    const std::vector<std::pair<std::string, std::string>> music = {
        {"MOP_CHECK", "111"},       {"I_LDS_ERROR", "71"},       {"I_LDS_BUMPER", "72"},
        {"CHARGE_FAULT", "50"},     {"HEAP_CHECK", "75"},        {"I_LEFTWHELL_SPEED", "38"},
        {"LEFT_WHEEL_MOTOR", "38"}, {"RIGHT_WHEEL_MOTOR", "37"}, {"STRONG_MAGNET", "49"},
        {"TOF_OFFLINE", "74"},      {"FORWARD_SUFFOCATE", "40"}, {"PATH_CLOSEDOORSTUCK", "151"},
        {"CAMERA_FAULT", "44"},     {"SOMETHING_ELSE", "44"},
    };
    for (const auto& [code, number] : music) {
        SupervisedRobot robot;
        robot.powerOn();
        robot.enterMode("AutoCleanMode");
        robot.errors = {code};
        robot.tick();
        EXPECT_THAT(robot.music(), ElementsAre(number)) << code;
    }
    SupervisedRobot robot;
    robot.powerOn();
    robot.enterMode("AutoCleanMode");
    robot.errors = {"DROP"};
    robot.leaf("IsError_Drop").succeeds();
    robot.tick();
    EXPECT_THAT(robot.music(), ElementsAre("41"));
    EXPECT_EQ(robot.key("robot_status"), "clean_drop");
}

TEST(HealthCheck, WaitsFourTicksBehindACommandAndLeavesRestingModesAlone)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.enterMode("AutoCleanMode");
    robot.forgetRequests();
    robot.set("HealthDelay", "true");
    robot.errors = {"GESTURE"};
    robot.tick(4);
    EXPECT_THAT(robot.requests(), IsEmpty());
    robot.tick();
    EXPECT_THAT(robot.requests(), ElementsAre("ErrRepotMode"));

    for (const char* mode : {"ChargingMode", "SleepMode", "WIFISetMode", "StandbyMode"}) {
        robot.errors.clear();
        robot.enterMode(mode);
        robot.forgetRequests();
        robot.errors = {"GESTURE"};
        robot.tick(10);
        EXPECT_THAT(robot.requests(), IsEmpty()) << mode;
    }
}

TEST(LandingOnTheDock, PlaysTheChargeTuneOnceAfterAHundredTicks)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.on_charger = true;
    robot.tick(6);
    EXPECT_THAT(robot.requests(), ElementsAre("StandbyMode", "ChargingMode"));
    EXPECT_TRUE(robot.askedNow("StopChargingIndex"));
    EXPECT_TRUE(robot.has("just_on_charger"));
    robot.tick(90);
    EXPECT_THAT(robot.music(), Not(Contains("47")));
    robot.tick(30);
    EXPECT_THAT(robot.music(), ElementsAre("47"));
    robot.tick(500);
    EXPECT_THAT(robot.music(), ElementsAre("47"));

    robot.on_charger = false;
    robot.tick(99);
    EXPECT_TRUE(robot.has("just_on_charger"));
    robot.tick(5);
    EXPECT_FALSE(robot.has("just_on_charger"));
    robot.set("charge_voice_disable", "true");
    robot.on_charger = true;
    robot.tick(150);
    EXPECT_THAT(robot.music(), ElementsAre("47")) << "silenced for this landing";
    EXPECT_EQ(robot.key("charge_voice_disable"), "false");
}

TEST(LandingOnTheDock, AtPowerOnHasItsTuneTwentyTicksLater)
{
    SupervisedRobot robot;
    robot.on_charger = true;
    robot.powerOn();
    robot.tickUntil("SetMusicPlayPara", {{"MusicNumber", "47"}}, 200);
    const int first = robot.firstFrameOf("DoesRobotGetCharger").value();
    EXPECT_NEAR(robot.frame() - first, 120, 5);
    EXPECT_FALSE(robot.has("chargemode_poweron"));
}

TEST(LandingOnTheDock, ChangesNoModeThatWorksOrForbidsIt)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.enterMode("AutoCleanMode");
    robot.forgetRequests();
    robot.on_charger = true;
    robot.tick(20);
    EXPECT_THAT(robot.requests(), IsEmpty());
    robot.enterMode("RemoteCtrlMode");
    robot.tick(5);
    EXPECT_THAT(robot.requests(), IsEmpty());
    EXPECT_EQ(robot.key("moved_during_pause"), "true");
    robot.set("not_change_mode", "");
    robot.enterMode("PauseAndStopMode");
    robot.tick(20);
    EXPECT_THAT(robot.requests(), IsEmpty());
    robot.erase("not_change_mode");
    robot.tick(2);
    EXPECT_THAT(robot.requests(), Contains("ChargingMode"));
}

TEST(LowBattery, PowersOffBelowOnePercentOffTheDock)
{
    SupervisedRobot robot;
    robot.battery = 1;
    robot.powerOn();
    robot.forgetRequests();
    robot.tick(50);
    EXPECT_THAT(robot.requests(), IsEmpty());
    robot.battery = 0;
    robot.tick(7);
    EXPECT_THAT(robot.requests(), testing::AllOf(Not(IsEmpty()), Each("PowerOffMode")));
    EXPECT_TRUE(robot.askedNow("PowerOffModeIndex"));

    SupervisedRobot docked;
    docked.battery = 0;
    docked.on_charger = true;
    docked.powerOn();
    docked.tick(50);
    EXPECT_THAT(docked.requests(), Each("ChargingMode"));
}

TEST(MovedByHand, IsNoticedAtRestAlone)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.enterMode("AutoCleanMode");
    robot.leaf("DoesRobotMoved").succeeds();
    robot.set("calcu_chargerpos", "");
    robot.tick(3);
    EXPECT_EQ(robot.key("robot_moved"), "false");
    robot.enterMode("PauseAndStopMode");
    EXPECT_EQ(robot.key("robot_moved"), "true");
    EXPECT_EQ(robot.key("moved_during_pause"), "true");
    EXPECT_FALSE(robot.has("calcu_chargerpos"));
}

TEST(Warnings, OfAPlaceThatCannotBeReachedSendTheCleaningRobotHome)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.warnings = {"CANNOTREACH_VIRTUALWALLSTUCK"};
    robot.tick(20);
    EXPECT_THAT(robot.music(), IsEmpty()) << "not while it stands by";
    robot.warnings.clear();
    robot.enterMode("DrawAreaCleanMode");
    robot.warnings = {"CANNOTREACH_VIRTUALWALLSTUCK"};
    robot.tick(5);
    EXPECT_THAT(robot.music(), Contains("150"));
    EXPECT_THAT(robot.requests(), Contains("BackHomeMode"));
}

TEST(Warnings, OfLaserAndMemoryAreToldOncePerSpell)
{
    for (const auto& [code, number] :
         std::vector<std::pair<std::string, std::string>>{{"HEAP_CHECK", "75"}, {"I_LDS_ERROR", "0"}}) {
        SupervisedRobot robot;
        robot.powerOn();
        robot.warnings = {code};
        robot.tick(20);
        EXPECT_THAT(robot.music(), ElementsAre(number));
        robot.warnings.clear();
        robot.tick(2);
        robot.warnings = {code};
        robot.tick(20);
        EXPECT_THAT(robot.music(), ElementsAre(number, number));
    }
}

TEST(Watchers, TakeUpWhatOthersLeaveForThem)
{
    SupervisedRobot robot;
    robot.tree("SearchChargeEnding").succeeds();
    robot.powerOn();
    robot.set("current_pose", "here");
    robot.set("build_virtualwall_start", "");
    robot.set("clear_map_while_standby", "");
    robot.leaf("NeedSaveStationInfo").inTurn({SUCCESS, FAILURE});
    robot.tick();
    EXPECT_TRUE(robot.started(1, "CleanInfoSave"));
    EXPECT_TRUE(robot.started(1, "VirtualWallAddPoint", {{"point_mm", "here"}}));
    EXPECT_TRUE(robot.started(1, "SearchChargeEnding"));
    EXPECT_FALSE(robot.has("build_virtualwall_start"));
    EXPECT_FALSE(robot.has("clear_map_while_standby"));

    for (const auto& [lock, number] : {std::pair(1, "116"), std::pair(0, "117")}) {
        robot.set("RobotChildLockStatus", lock);
        robot.set("ChildLockAppButtonClick", "");
        robot.tick(2);
        EXPECT_EQ(robot.music().back(), number);
    }
    EXPECT_EQ(robot.music().size(), 2U);
}

TEST(Watchers, ForgetTheMarksThatAModeHasOutlived)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.set("DisableErrMusic_Box", "");
    robot.set("breakpoint_getcharger", "");
    robot.enterMode("BackHomeMode");
    robot.set("DisableErrMusic_Box", "");
    robot.tick(5);
    EXPECT_TRUE(robot.has("DisableErrMusic_Box"));
    EXPECT_TRUE(robot.has("breakpoint_getcharger"));
    robot.enterMode("SelectPointCleanMode");
    robot.tick();
    EXPECT_FALSE(robot.has("DisableErrMusic_Box"));
    EXPECT_FALSE(robot.has("breakpoint_getcharger"));
}

TEST(InfraredSensors, AreOffOnlyWhileChargingOrAsleep)
{
    SupervisedRobot robot;
    robot.powerOn();
    for (const auto& [mode, on] : std::vector<std::pair<std::string, std::string>>{
             {"AutoCleanMode", "true"}, {"SleepMode", "false"}, {"ChargingMode", "false"}}) {
        robot.enterMode(mode);
        robot.forget();
        robot.tick(3);
        EXPECT_TRUE(robot.started(3, "RobotIRSwitch", {{"Cliff_ON", on}, {"Front_ON", on}})) << mode;
    }
}

}  // namespace
}  // namespace vemra::test
