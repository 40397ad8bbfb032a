#include "support/supervised_robot.h"

namespace vemra::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OtherMode : public testing::Test
{
protected:
    OtherMode() : robot({"ErrorReportIndex", "RemoteCtrlModeIndex", "FactoryRunModeIndex"})
    {
        robot.obeys_requests = false;
        robot.set("task_state", "init");
        robot.set("bump_dir", "None");
        for (const char* deal : {"ErrorReportModeDeal", "RemoteCtrlModeDeal", "FollowWallModeDeal"})
            robot.leaf(deal).runs();
        for (const char* tree : {"RestartCleaning", "auto_cleanmode_set", "AdvPreAutoOnCharger"})
            robot.tree(tree).succeeds();
    }

    void enter(const std::string& mode, const std::string& tree, int frames)
    {
        robot.mode = mode;
        robot.forgetRequests();
        robot.start(tree);
        robot.tick(frames);
    }

    SupervisedRobot robot;
};

TEST_F(OtherMode, AnErrorKeepsTheRobotStillUntilItIsMended)
{
    robot.errors = {"I_FAN_SPEED"};
    enter("ErrRepotMode", "ErrorReportIndex", 100);
    EXPECT_TRUE(robot.asked("Stop"));
    EXPECT_TRUE(robot.asked("SetCleanSystem", {{"Brush", "0"}, {"Fan", "0"}}));
    EXPECT_TRUE(robot.asked("SlamPause"));
    EXPECT_TRUE(robot.askedNow("Led_Mode_Set", {{"LedMode", "BUTTON_LED_Working_ERROR"}}));
    EXPECT_TRUE(robot.askedNow("ErrorReportModeDeal"));
    EXPECT_EQ(robot.key("robot_status"), "clean_error");
    EXPECT_EQ(robot.key("restart_cleaning_from_err_mode"), "true");
    EXPECT_THAT(robot.requests(), IsEmpty());
    robot.errors.clear();
    robot.tick();
    EXPECT_THAT(robot.requests(), ElementsAre("StandbyMode"));
}

TEST_F(OtherMode, OnTheDockAnErrorIsLeftForTheChargeAndTheStationCountsToo)
{
    robot.on_charger = true;
    robot.errors = {"I_FAN_SPEED"};
    enter("ErrRepotMode", "ErrorReportIndex", 5);
    EXPECT_THAT(robot.requests(), testing::Each("ChargingMode"));
    EXPECT_FALSE(robot.requests().empty());

    robot.errors.clear();
    robot.leaf("IsStationNormal").fails();
    enter("ErrRepotMode", "ErrorReportIndex", 5);
    EXPECT_THAT(robot.requests(), testing::Each("ChargingMode")) << "the station is not well";
    robot.leaf("IsStationNormal").succeeds();
    robot.forgetRequests();
    robot.tick();
    EXPECT_THAT(robot.requests(), ElementsAre("StandbyMode"));
}

TEST_F(OtherMode, AnErrorHoldsEmptyingAndDrying)
{
    robot.errors = {"I_FAN_SPEED"};
    robot.on_charger = true;
    robot.set("dust_handle", "");
    robot.set("dust_left_time", 300);
    robot.set("dry_procssing", "");
    enter("ErrRepotMode", "ErrorReportIndex", 3);
    EXPECT_TRUE(robot.asked("DustContrlSet", {{"dust_status", "DUST_PAUSE"}, {"time_set", "300"}}));
    EXPECT_TRUE(robot.asked("SetDustLight", {{"StaLedMode", "STATTON_LED_OrangeTwinkleFast"}}));
    EXPECT_FALSE(robot.has("dust_handle"));
    EXPECT_EQ(robot.key("wash_dry_pause_falg"), "true");

    robot.on_charger = false;
    robot.set("dust_handle", "");
    enter("ErrRepotMode", "ErrorReportIndex", 3);
    EXPECT_TRUE(robot.notAsked("DustContrlSet")) << "off the dock there is nothing to hold";
    EXPECT_TRUE(robot.has("dust_handle"));
}

TEST(Laser, SpinsInTheMovingModesAlone)
{
    SupervisedRobot robot;
    robot.powerOn();
    for (const ModeNames& names : modes()) {
        const std::string mode = names.mode;
        const bool rests = testing::Value(
            mode, testing::AnyOf("StandbyMode", "ErrRepotMode", "PauseAndStopMode", "ChargingMode",
                                 "OtaModeMode", "SleepMode", "WIFISetMode", "PowerOffMode"));
        robot.enterMode(mode);
        robot.forget();
        robot.tick(5);
        EXPECT_TRUE(robot.askedNow("LDS_Switch", {{"state", rests ? "false" : "true"}})) << mode;
        EXPECT_TRUE(robot.notAsked("LDS_Switch", {{"state", rests ? "true" : "false"}})) << mode;
    }
}

TEST(Laser, IsLeftAloneForThreeHundredTicksAfterAFault)
{
    SupervisedRobot robot;
    robot.mode = "AutoCleanMode";
    robot.warnings = {"I_LDS_ERROR"};
    robot.start("LDS_CTRL");
    EXPECT_EQ(robot.finish(299), RUNNING);
    EXPECT_EQ(robot.key("LdsForceOff"), "true");
    robot.warnings.clear();
    EXPECT_EQ(robot.finish(5), SUCCESS);
    EXPECT_TRUE(robot.notAsked("LDS_Switch"));
    EXPECT_EQ(robot.finish(1), FAILURE) << "the laser spins again";
    EXPECT_TRUE(robot.has("LdsForceOff")) << "a fault is remembered";
}

TEST_F(OtherMode, ByHandTheRobotDrivesAsToldAndPausesWhenNobodyIsThere)
{
    bool told = true;
    robot.leaf("RemoteCtrlModeGetSpeed").decides([&](const Moment&) { return told ? SUCCESS : FAILURE; });
    enter("RemoteCtrlMode", "RemoteCtrlModeIndex", 50);
    EXPECT_TRUE(robot.askedNow("RemoteCtrlModeDeal"));
    EXPECT_EQ(robot.key("move_ctrl_token"), "old") << "without a map";
    EXPECT_TRUE(robot.notAsked("AdvPreAutoOnCharger"));
    told = false;
    robot.tick(40);
    EXPECT_TRUE(robot.halted("RemoteCtrlModeDeal"));
    EXPECT_THAT(robot.requests(), IsEmpty());
    robot.tick(15);
    EXPECT_THAT(robot.requests(), testing::Contains("PauseAndStopMode"));
}

TEST_F(OtherMode, ByHandABumpIsBackedOffFromForFiftyFrames)
{
    robot.leaf("RemoteCtrlModeGetSpeed").succeeds();
    robot.leaf("GoBackwards").runs();
    bool bumps = false;
    robot.leaf("SensorCheckBumped").decides([&](const Moment&) { return bumps ? SUCCESS : FAILURE; });
    enter("RemoteCtrlMode", "RemoteCtrlModeIndex", 10);
    robot.forget();
    bumps = true;
    robot.tick();
    bumps = false;
    robot.tick(70);
    EXPECT_NEAR(robot.framesOf("GoBackwards"), 50, 1);
    EXPECT_TRUE(robot.askedNow("RemoteCtrlModeDeal")) << "and then as told again";
}

TEST_F(OtherMode, ByHandItLeavesTheDockBeforeTheFirstOrderAndKeepsTheMapOfItsTask)
{
    robot.leaf("RemoteCtrlModeGetSpeed").succeeds();
    robot.on_charger = true;
    robot.set("task_state", "cleaning");
    robot.leaf("SlamIsResumable").succeeds();
    robot.set("OloWIFICMD_RemoteCtrl_audio", "true");
    enter("RemoteCtrlMode", "RemoteCtrlModeIndex", 10);
    EXPECT_TRUE(robot.inOrder({{"AdvPreAutoOnCharger", {}}, {"SlamStart", {}}, {"RemoteCtrlModeDeal", {}}}));
    EXPECT_EQ(robot.key("move_ctrl_token"), "cleaning");
    EXPECT_EQ(robot.key("task_in_progress"), "true");
    EXPECT_THAT(robot.music(), ElementsAre("62"));
    EXPECT_FALSE(robot.has("OloWIFICMD_RemoteCtrl_audio"));
}

TEST_F(OtherMode, TheFactoryRunShowsWhatFailedForEver)
{
    robot.leaf("DoesGetChargerMiddleSig").succeeds();
    robot.on_charger = true;
    for (const auto& [part, light] :
         std::vector<std::pair<std::string, std::string>>{{"laser", "BUTTON_LED_Pause_LowPower"},
                                                          {"slam", "BUTTON_LED_Working_ERROR"},
                                                          {"tof", "BUTTON_LED_Backhome_LowPower"},
                                                          {"wheels", "BUTTON_LED_Working"}}) {
        robot.leaf("AutorunTestResReturn").decides([part = part](const Moment& now) {
            now.set("TestResId", part);
            return FAILURE;
        });
        enter("FactoryFuncTest", "FactoryRunModeIndex", 500);
        EXPECT_TRUE(robot.askedNow("Led_Mode_Set", {{"LedMode", light}})) << part;
        EXPECT_THAT(robot.requests(), IsEmpty());
    }
    robot.leaf("AutorunTestResReturn").succeeds();
    enter("FactoryFuncTest", "FactoryRunModeIndex", 150);
    EXPECT_THAT(robot.requests(), testing::Contains("StandbyMode"));
}

TEST_F(OtherMode, TheFactoryRunFollowsTheWallUntilTheDockIsHeard)
{
    robot.tree("GoCharging_lds").runs();
    enter("FactoryFuncTest", "FactoryRunModeIndex", 150);
    EXPECT_TRUE(robot.askedNow("FollowWallModeDeal"));
    EXPECT_TRUE(robot.askedNow("AutorunTestCalibrateReliable"));
    robot.leaf("DoesGetChargerMiddleSig").succeeds();
    robot.tick(2);
    EXPECT_TRUE(robot.halted("FollowWallModeDeal"));
    EXPECT_TRUE(robot.askedNow("GoCharging_lds"));
    robot.on_charger = true;
    robot.tick(2);
    EXPECT_TRUE(robot.halted("GoCharging_lds"));
    EXPECT_TRUE(robot.asked("SendFinishTestToVslam"));
}

TEST(Gyro, ACalibrationAsksForAStopAndIMUCalibStandsForIt)
{
    ScriptedRobot robot;
    robot.leaf("Does_NeedToCalibrate_IMU_Diff").inTurn({FAILURE, SUCCESS, FAILURE});
    robot.leaf("Does_FinishCalibrate_IMU").succeeds();
    robot.start("IMUCalibrateDrift");
    EXPECT_EQ(robot.tick(2), RUNNING);
    EXPECT_EQ(robot.key("IMUCaliEn"), "true");
    EXPECT_EQ(robot.key("IMUCaliStopTicks"), "200");

    robot.start("IMUCalib");
    EXPECT_EQ(robot.finish(199), RUNNING);
    EXPECT_TRUE(robot.asked("Stop"));
    EXPECT_EQ(robot.finish(5), SUCCESS);
    EXPECT_FALSE(robot.has("IMUCaliEn"));
    EXPECT_EQ(robot.finish(1), SUCCESS) << "nobody asks: no stop";

    robot.start("IMUCalibrateDrift");
    EXPECT_EQ(robot.tick(2), RUNNING);
    EXPECT_EQ(robot.key("IMUCaliStopTicks"), "0");
}

}  // namespace
}  // namespace vemra::test
