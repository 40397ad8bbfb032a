#include "support/supervised_robot.h"

namespace vemra::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ModeDispatch, EachModeRunsItsTree)
{
    SupervisedRobot robot;
    robot.powerOn();
    for (const auto& [mode, tree] : modeTrees()) {
        robot.enterMode(mode);
        EXPECT_TRUE(robot.askedNow(tree)) << mode;
        int running = 0;
        for (const auto& [other_mode, other_tree] : modeTrees())
            running += robot.askedNow(other_tree) ? 1 : 0;
        EXPECT_EQ(running, 1) << mode;
    }
    robot.enterMode("FctModeMode");
    EXPECT_TRUE(robot.askedNow("ThrowErrMSG", {{"Message", "Err!!!!!!!  No This Mode"}}));
    robot.forget();
    robot.tick(3);
    EXPECT_EQ(robot.framesOf("ThrowErrMSG"), 3);
    EXPECT_EQ(robot.framesOf("Parse_MCU_FCT_CMD"), 3) << "the watchers go on";
}

TEST(ModeDispatch, FirstConditionOfTheChainCutsWhatRunsBelowIt)
{
    const std::vector<std::pair<std::string, std::string>> chain = {
        {"NeedToEnterPowerOffMode", "PowerOffModeIndex"},
        {"NeedToEnterOTAMode", "OTAModeDealIndex"},
        {"NeedToEnterSleepMode", "SleepModeDealIndex"},
        {"NeedToEnterStopMode", "StopModeIndex"},
        {"NeedToEnterAutoMode", "AutoModeIndex"},
        {"NeedToEnterBackHomeMode", "BackHomeIndex"},
        {"NeedToEnterErrorReportMode", "ErrorReportIndex"},
        {"NeedToEnterFollowWallMode", "FollowWallModeIndex"},
        {"NeedToEnterWIFISetMode", "SetWIFIModeIndex"},
        {"NeedToEnterFactoryMode", "FactoryModeIndex"},
        {"NeedToEnterRemoteCtrlMode", "RemoteCtrlModeIndex"},
        {"NeedToEnterFactoryRunMode", "FactoryRunModeIndex"},
        {"NeedToEnterPartCleanMode", "PartCleanModeIndex"},
        {"NeedToEnterChargingMode", "StopChargingIndex"},
        {"NeedToEnterStandbyMode", "StandbyModeIndex"},
    };
    SupervisedRobot robot;
    robot.powerOn();
    robot.enterMode("SelectAreaCleanMode");
    std::string below = "AreaSelectModeIndex";
    for (auto entry = chain.rbegin(); entry != chain.rend(); ++entry) {
        robot.forget();
        robot.leaf(entry->first).succeeds();
        robot.tick();
        EXPECT_TRUE(robot.askedNow(entry->second)) << entry->first;
        EXPECT_TRUE(robot.halted(below)) << entry->first;
        EXPECT_TRUE(robot.notAsked(below)) << entry->first;
        below = entry->second;
    }
}

TEST(ModeChange, KeepsTheTaskAndForgetsWhatBelongedToTheRun)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.enterMode("AutoCleanMode");
    robot.set("task_state", "cleaning");
    robot.set("task_type", "AutoClean");
    robot.set("breakpoint_getcharger", "");
    const std::vector<std::string> of_the_run = {
        "on_charger_pose",           "reuse_from_charger",   "start_from_charger_yaw_deg",
        "disable_reuse_reloc_once",  "mapping_no_reloc",     "mica_on_charger",
        "disable_reuse_reloc_music", "draw_area_reloc_flag", "auto_mode_reloc_flag",
        "select_area_reloc_flag",    "keep_clean_area",      "reset_map_remain_submap",
        "stop_charging_flag"};
    for (const std::string& key : of_the_run)
        robot.set(key, "1");
    robot.set("dust_handle", "");
    robot.forget();
    robot.mode = "StandbyMode";  // so that the request below is a change
    robot.enterMode("PauseAndStopMode");

    EXPECT_TRUE(robot.halted("AutoModeIndex"));
    EXPECT_EQ(robot.framesOf("SaySomething", {{"message", "Robot Mode Changed!"}}), 5);
    EXPECT_EQ(robot.firstFrameOf("StopModeIndex"), robot.frame());
    EXPECT_EQ(robot.key("task_state"), "cleaning");
    EXPECT_EQ(robot.key("task_type"), "AutoClean");
    for (const std::string& key : of_the_run)
        EXPECT_FALSE(robot.has(key)) << key;
    EXPECT_TRUE(robot.has("dust_handle")) << "only a cleaning mode stops the dust work";
    EXPECT_EQ(robot.framesOf("Parse_MCU_FCT_CMD"), 6) << "the watchers go on meanwhile";
    EXPECT_EQ(robot.framesOf("RobotMusicPlay"), 1) << "no music during a change";
}

TEST(ModeChange, IntoACleaningModeStopsTheDustWork)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.set("dust_handle", "");
    robot.set("APPDustHandle", "true");
    robot.set("Have_dust_task", "");
    robot.forget();
    robot.enterMode("PartCleanMode");
    EXPECT_TRUE(robot.asked("DustContrlSet", {{"dust_status", "DUST_QUIT"}}));
    for (const char* key : {"dust_handle", "APPDustHandle", "Have_dust_task"})
        EXPECT_FALSE(robot.has(key)) << key;
    EXPECT_TRUE(robot.has("dust_delay_end"));
}

TEST(SelfTest, StopsTheFrameOfTheMode)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.leaf("NeedToEnterRobotSelfTestMode").succeeds();
    robot.leaf("IsOnceTest").succeeds();
    robot.leaf("RobotSelfTest_Cliff").inTurn({FAILURE, FAILURE, SUCCESS});
    robot.obeys_requests = false;
    robot.forget();
    robot.forgetRequests();
    robot.tick();
    EXPECT_TRUE(robot.halted("StandbyModeIndex"));
    EXPECT_TRUE(robot.notAsked("RobotMusicPlay"));
    robot.tick(2);
    EXPECT_TRUE(robot.started(3, "RobotSelfTest_Cliff")) << "until it passes";
    EXPECT_TRUE(robot.started(1, "RobotSelfTest_Bump")) << "passed already";
    EXPECT_THAT(robot.requests(), testing::Contains("StandbyMode"));
    EXPECT_EQ(robot.framesOf("Parse_MCU_FCT_CMD"), 3);
}

TEST(SelfTest, OfTheAppSkipsWhatIsNotAskedForAndStopsOnDemand)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.obeys_requests = false;
    robot.leaf("NeedToEnterRobotSelfTestMode").succeeds();
    robot.leaf("IsAPPTest").succeeds();
    robot.leaf("Is_bump_test").succeeds();
    robot.leaf("RobotSelfTest_LDS").succeedsAfter(10);
    robot.forget();
    robot.forgetRequests();
    robot.tick(10);
    EXPECT_TRUE(robot.inOrder({{"RobotSelfTest_Calibration", {}},
                               {"RobotSelfTest_Cliff", {}},
                               {"RobotSelfTest_FrontIR", {}},
                               {"RobotSelfTest_PSD", {}},
                               {"RobotSelfTest_TOF", {}},
                               {"RobotSelfTest_LDS", {}}}));
    EXPECT_TRUE(robot.notAsked("RobotSelfTest_Bump")) << "done already";
    EXPECT_TRUE(robot.notAsked("RobotSelfTest_Move"));
    EXPECT_THAT(robot.requests(), IsEmpty());
    robot.tick();
    EXPECT_TRUE(robot.inOrder({{"RobotSelfTest_Move", {}},
                               {"RobotSelfTest_Turn", {}},
                               {"RobotSelfTest_Mag", {}},
                               {"RobotSelfTest_DustBox", {}},
                               {"RobotSelfTest_WaterBox", {}},
                               {"RobotSelfTest_Fan", {}},
                               {"RobotSelfTest_SideBrush", {}},
                               {"RobotSelfTest_Brush", {}},
                               {"NotifyTrd", {}}}));
    EXPECT_THAT(robot.requests(), ElementsAre("StandbyMode"));

    robot.leaf("IsStopTest").succeeds();
    robot.forget();
    robot.tick(2);
    EXPECT_TRUE(robot.asked("SelfTestTestOver"));
    EXPECT_TRUE(robot.notAsked("RobotSelfTest_Calibration"));
}

TEST(WaterBox, DuringACleaningLooksForTheWallsThatItChanges)
{
    SupervisedRobot robot;
    robot.tree("CheckInVirtualWall").succeeds();
    robot.powerOn();
    robot.enterMode("AutoCleanMode");
    robot.leaf("DoesRobotPutOnWaterBox").inTurn({SUCCESS, FAILURE});
    robot.tick(2);
    EXPECT_THAT(robot.music(), ElementsAre("23"));
    EXPECT_TRUE(robot.inOrder({{"GenerateVirtualWalls", {}}, {"CheckInVirtualWall", {}}}));
    EXPECT_TRUE(robot.has("water_box"));
    robot.leaf("DoesRobotDropWaterBox").inTurn({SUCCESS, FAILURE});
    robot.tick(2);
    EXPECT_THAT(robot.music(), ElementsAre("23", "24"));
    EXPECT_TRUE(robot.started(2, "CheckInVirtualWall"));
}

TEST(WaterBox, PutOnPlaysItsMusicAndWakesTheRobot)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.enterMode("SleepMode");
    robot.leaf("DoesRobotPutOnWaterBox").inTurn({SUCCESS, FAILURE});
    robot.tick();
    EXPECT_THAT(robot.music(), testing::Contains("23"));
    EXPECT_TRUE(robot.has("water_box"));
    EXPECT_TRUE(robot.asked("BackToLastRobotMode"));

    robot.leaf("DoesRobotDropWaterBox").inTurn({SUCCESS, FAILURE});
    robot.tick();
    EXPECT_THAT(robot.music(), testing::Contains("63"));
    EXPECT_FALSE(robot.has("water_box"));
}

}  // namespace
}  // namespace vemra::test
