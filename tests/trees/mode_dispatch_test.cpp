#include "support/supervised_robot.h"

namespace vemra::test {
namespace {

using testing::ElementsAre;

TEST(ModeDispatch, EachModeRunsItsTree)
{
    SupervisedRobot robot;
    robot.powerOn();
    for (const ModeNames& names : modes()) {
        robot.enterMode(names.mode);
        for (const ModeNames& other : modes())
            EXPECT_EQ(robot.askedNow(other.tree), &names == &other) << names.mode << other.tree;
    }
    robot.enterMode("FctModeMode");
    EXPECT_TRUE(robot.askedNow("ThrowErrMSG Message='Err!!!!!!!  No This Mode'"));
    robot.forget();
    robot.tick(3);
    EXPECT_EQ(robot.framesOf("ThrowErrMSG"), 3);
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

TEST(SelfTest, OfTheAppSkipsWhatIsNotAskedForAndStopsOnDemand)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.obeys_requests = false;
    robot.succeed("NeedToEnterRobotSelfTestMode | IsAPPTest | Is_bump_test");
    robot.forget();
    robot.forgetRequests();
    robot.tick();
    EXPECT_TRUE(robot.inOrder("RobotSelfTest_Cliff | RobotSelfTest_LDS | NotifyTrd"));
    EXPECT_TRUE(robot.notAsked("RobotSelfTest_Bump")) << "done already";
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
    EXPECT_TRUE(robot.inOrder("GenerateVirtualWalls | CheckInVirtualWall"));
    EXPECT_TRUE(robot.has("water_box"));
    robot.leaf("DoesRobotDropWaterBox").inTurn({SUCCESS, FAILURE});
    robot.tick(2);
    EXPECT_THAT(robot.music(), ElementsAre("23", "24"));
    EXPECT_TRUE(robot.started(2, "CheckInVirtualWall"));
}

}  // namespace
}  // namespace vemra::test
