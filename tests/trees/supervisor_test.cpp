#include "support/supervised_robot.h"

namespace vemra::test {
namespace {

TEST(ModeDispatch, AModeThatNoTreeKnowsIsAnErrorInEachFrame)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.enterMode("FctModeMode");
    robot.forget();
    robot.tick(3);
    EXPECT_EQ(robot.framesOf("ThrowErrMSG Message='Err!!!!!!!  No This Mode'"), 3);
    EXPECT_EQ(robot.framesOf("Parse_MCU_FCT_CMD"), 3) << "the watchers go on";
}

TEST(ModeDispatch, FirstConditionOfTheChainCutsWhatRunsBelowIt)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.enterMode("SelectAreaCleanMode");
    std::string below = "AreaSelectModeIndex";
    const auto chain = modes();
    for (auto names = chain.rbegin(); names != chain.rend(); ++names) {
        if (names->entry == nullptr)
            continue;
        robot.forget();
        robot.leaf(names->entry).succeeds();
        robot.tick();
        EXPECT_TRUE(robot.askedNow(names->tree)) << names->mode;
        EXPECT_TRUE(robot.halted(below)) << names->mode;
        EXPECT_TRUE(robot.notAsked(below)) << names->mode;
        below = names->tree;
    }
}

TEST(ModeChange, KeepsTheTaskAndForgetsWhatBelongedToTheRun)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.enterMode("AutoCleanMode");
    robot.set("task_state=cleaning task_type=AutoClean breakpoint_getcharger");
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
    EXPECT_EQ(robot.framesOf("SaySomething message='Robot Mode Changed!'"), 5);
    EXPECT_EQ(robot.firstFrameOf("StopModeIndex"), robot.frame());
    EXPECT_TRUE(robot.keysAre("task_state=cleaning task_type=AutoClean"));
    for (const std::string& key : of_the_run)
        EXPECT_FALSE(robot.has(key)) << key;
    EXPECT_TRUE(robot.has("dust_handle")) << "only a cleaning mode stops the dust work";
    EXPECT_EQ(robot.framesOf("Parse_MCU_FCT_CMD"), 6) << "the watchers go on meanwhile";
    EXPECT_EQ(robot.framesOf("RobotMusicPlay"), 1) << "no music during a change";
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
    EXPECT_TRUE(robot.inOrder("GenerateVirtualWalls | CheckInVirtualWall"));
    EXPECT_TRUE(robot.has("water_box"));
    robot.leaf("DoesRobotDropWaterBox").inTurn({SUCCESS, FAILURE});
    robot.tick(2);
    EXPECT_THAT(robot.music(), ElementsAre("23", "24"));
    EXPECT_TRUE(robot.started(2, "CheckInVirtualWall"));
}

/// A task that ends, with the map to be cleared or not.
struct Completion : testing::Test
{
    Completion()
    {
        robot.powerOn();
        robot.set("last_clean_mode=AutoCleanMode task_state=cleaning");
        robot.forget();
    }

    void complete()
    {
        robot.set("AdvCleanCompleteStart", "");
        robot.tick(2);
        EXPECT_TRUE(robot.keysAre("AdvCleanCompleteEnd task_state=init"));
        EXPECT_TRUE(robot.asked("GenerateCleaningLog clean_mode=AutoCleanMode"));
    }

    SupervisedRobot robot;
};

TEST_F(Completion, HoldsTheModeSwitchForAHundredTicks)
{
    complete();
    ASSERT_TRUE(robot.has("RobotModeSwitchLock"));
    EXPECT_TRUE(robot.started(1, "SlamCleanComplete"));
    const int set_in = robot.firstFrameOf("SlamCleanComplete").value();
    robot.tick(set_in + 99 - robot.frame());
    EXPECT_TRUE(robot.has("RobotModeSwitchLock"));
    robot.tick();
    EXPECT_FALSE(robot.has("RobotModeSwitchLock"));
}

TEST_F(Completion, ClearsTheMapBehindTheLogOrAtOnceWithoutOne)
{
    robot.set("clear_map_flag", "true");
    complete();
    EXPECT_TRUE(robot.inOrder(
        "SlamCleanComplete | GenerateCleaningLog | SlamCleanComplete | ResetMap | ResetReuseInfo"));
    EXPECT_EQ(robot.key("actively_upload_appmap_once"), "1");

    robot.forget();
    robot.set("clear_map_flag=true CleanCompleteWithoutCleaningLog=true");
    complete();
    EXPECT_TRUE(robot.started(1, "SlamCleanComplete"));
    EXPECT_EQ(robot.key("clear_map_flag"), "true");
    EXPECT_TRUE(robot.asked("ResetMap"));
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

TEST(LandingOnTheDock, ChangesNoModeThatWorksOrForbidsIt)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.enterMode("AutoCleanMode");
    robot.forgetRequests();
    robot.on_charger = true;
    robot.tick(20);
    EXPECT_THAT(robot.requests(), IsEmpty());
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
    EXPECT_THAT(robot.requests(), AllOf(Not(IsEmpty()), Each("PowerOffMode")));
    EXPECT_TRUE(robot.askedNow("PowerOffModeIndex"));

    SupervisedRobot docked;
    docked.battery = 0;
    docked.on_charger = true;
    docked.powerOn();
    docked.tick(50);
    EXPECT_THAT(docked.requests(), Each("ChargingMode"));
}

TEST(Warnings, OfAPlaceThatCannotBeReachedAreNotToldWhileTheRobotStandsBy)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.warnings = {"CANNOTREACH_VIRTUALWALLSTUCK"};
    robot.tick(20);
    EXPECT_THAT(robot.music(), IsEmpty());
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

}  // namespace
}  // namespace vemra::test
