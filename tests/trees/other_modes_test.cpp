#include "support/supervised_robot.h"

namespace vemra::test {
namespace {

struct OtherMode : testing::Test
{
    OtherMode() : robot({"ErrorReportIndex", "FactoryRunModeIndex"})
    {
        robot.obeys_requests = false;
        robot.set("task_state=init bump_dir=None");
        robot.leaf("ErrorReportModeDeal").runs();
        robot.leaf("FollowWallModeDeal").runs();
        robot.succeed("RestartCleaning | auto_cleanmode_set | AdvPreAutoOnCharger");
    }

    SupervisedRobot robot;
};

TEST_F(OtherMode, AnErrorHoldsEmptyingAndDrying)
{
    robot.errors = {"I_FAN_SPEED"};
    robot.on_charger = true;
    robot.set("dust_handle dust_left_time=300 dry_procssing");
    robot.enter("ErrRepotMode", "ErrorReportIndex", 3);
    EXPECT_TRUE(robot.asked("DustContrlSet dust_status=DUST_PAUSE time_set=300"));
    EXPECT_TRUE(robot.asked("SetDustLight StaLedMode=STATTON_LED_OrangeTwinkleFast"));
    EXPECT_TRUE(robot.keysAre("-dust_handle wash_dry_pause_falg=true"));

    robot.on_charger = false;
    robot.set("dust_handle", "");
    robot.enter("ErrRepotMode", "ErrorReportIndex", 3);
    EXPECT_TRUE(robot.notAsked("DustContrlSet")) << "off the dock there is nothing to hold";
    EXPECT_TRUE(robot.has("dust_handle"));
}

TEST(Laser, SpinsInTheMovingModesAlone)
{
    SupervisedRobot robot;
    robot.powerOn();
    for (const ModeNames& names : modes()) {
        const std::string mode = names.mode;
        const bool rests =
            testing::Value(mode, AnyOf("StandbyMode", "ErrRepotMode", "PauseAndStopMode", "ChargingMode",
                                       "OtaModeMode", "SleepMode", "WIFISetMode", "PowerOffMode"));
        robot.enterMode(mode);
        robot.forget();
        robot.tick(5);
        EXPECT_TRUE(robot.askedNow(rests ? "LDS_Switch state=false" : "LDS_Switch state=true")) << mode;
        EXPECT_TRUE(robot.notAsked(rests ? "LDS_Switch state=true" : "LDS_Switch state=false")) << mode;
    }
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
        robot.enter("FactoryFuncTest", "FactoryRunModeIndex", 500);
        EXPECT_TRUE(robot.askedNow("Led_Mode_Set LedMode=" + light)) << part;
        EXPECT_THAT(robot.requests(), IsEmpty());
    }
    robot.leaf("AutorunTestResReturn").succeeds();
    robot.enter("FactoryFuncTest", "FactoryRunModeIndex", 150);
    EXPECT_THAT(robot.requests(), Contains("StandbyMode"));
}

TEST(Gyro, ACalibrationAsksForAStopAndIMUCalibStandsForIt)
{
    ScriptedRobot robot;
    robot.leaf("Does_NeedToCalibrate_IMU_Diff").inTurn({FAILURE, SUCCESS, FAILURE});
    robot.leaf("Does_FinishCalibrate_IMU").succeeds();
    EXPECT_EQ(robot.run("IMUCalibrateDrift", 2), RUNNING);
    EXPECT_TRUE(robot.keysAre("IMUCaliEn=true IMUCaliStopTicks=200"));

    EXPECT_EQ(robot.finish("IMUCalib", 199), RUNNING);
    EXPECT_TRUE(robot.asked("Stop"));
    EXPECT_EQ(robot.finish(5), SUCCESS);
    EXPECT_FALSE(robot.has("IMUCaliEn"));
    EXPECT_EQ(robot.finish(1), SUCCESS) << "nobody asks: no stop";

    EXPECT_EQ(robot.run("IMUCalibrateDrift", 2), RUNNING);
    EXPECT_EQ(robot.key("IMUCaliStopTicks"), "0");
}

}  // namespace
}  // namespace vemra::test
