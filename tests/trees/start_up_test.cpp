#include "support/supervised_robot.h"

namespace vemra::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(StartUp, OffTheDockStandsByAndOnItCharges)
{
    SupervisedRobot robot;
    robot.powerOn();
    EXPECT_THAT(robot.requests(), ElementsAre("StandbyMode"));
    EXPECT_TRUE(robot.askedNow("StandbyModeIndex"));
    EXPECT_FALSE(robot.has("chargemode_poweron"));
    EXPECT_TRUE(robot.asked("LDS_Switch", {{"state", "false"}}));
    EXPECT_EQ(robot.key("task_state"), "init");
    EXPECT_EQ(robot.key("task_type"), "Idle");
    EXPECT_EQ(robot.key("bump_dir"), "None");

    SupervisedRobot docked;
    docked.on_charger = true;
    docked.powerOn();
    EXPECT_THAT(docked.requests(), ElementsAre("ChargingMode"));
    EXPECT_TRUE(docked.askedNow("StopChargingIndex"));
    EXPECT_EQ(docked.key("chargemode_poweron"), "true");
}

TEST(StartUp, WaitsForEachSetOfParametersAndSendsItAgain)
{
    SupervisedRobot robot;
    robot.leaf("IsElecParaInitOK").decides([](const Moment& now) {
        return now.frame > 40 ? SUCCESS : FAILURE;
    });
    robot.leaf("IsIrParaInitOK").decides([](const Moment& now) {
        return now.frame > 60 ? SUCCESS : FAILURE;
    });
    robot.start("RobotNode");
    EXPECT_EQ(robot.tick(40), RUNNING);
    EXPECT_TRUE(robot.started(40, "SendElecPara"));
    EXPECT_TRUE(robot.notAsked("SendIrPara")) << "one after the other";
    EXPECT_TRUE(robot.notAsked("RobotTimer_s_Init"));
    EXPECT_EQ(robot.tick(20), RUNNING);
    EXPECT_TRUE(robot.started(20, "SendIrPara"));
    EXPECT_TRUE(robot.started(40, "SendElecPara")) << "confirmed for good";
    EXPECT_THAT(robot.requests(), IsEmpty());
    robot.tick(10);
    EXPECT_THAT(robot.requests(), ElementsAre("StandbyMode"));
    EXPECT_TRUE(robot.notAsked("SendGyroPara"));
}

class MapCheck : public testing::TestWithParam<std::pair<double, bool>>
{};

TEST_P(MapCheck, KeepsTheMapOnlyAtAReturnOfZero)
{
    const auto [returned, cleared] = GetParam();
    SupervisedRobot robot;
    robot.set("reuse_map_id", "7");
    robot.leaf("SlamCleanComplete").writes("slam_save_map_reta", returned);
    robot.powerOn();
    EXPECT_EQ(robot.has("reuse_map_id"), !cleared);
    EXPECT_EQ(robot.key("startup_clear_flag") == "check_map_id_failed", cleared);
    EXPECT_TRUE(robot.started(cleared ? 2 : 1, "SlamCleanComplete")) << "a second time to clear";
    EXPECT_EQ(robot.has("clear_map_flag"), cleared);
    EXPECT_FALSE(robot.has("map_loading"));
    EXPECT_THAT(robot.requests(), ElementsAre("StandbyMode")) << "the robot goes on in any case";
}

INSTANTIATE_TEST_SUITE_P(Returns, MapCheck,
                         testing::Values(std::pair(0.0, false), std::pair(0.5, true), std::pair(-1.0, true),
                                         std::pair(1.0, true)));

TEST(StartUp, ClearsTheMapWhoseSegmentsCannotBeHad)
{
    SupervisedRobot robot;
    robot.set("RobotReuseMapEnable", 1);
    robot.set("reuse_map_id", "7");
    robot.leaf("GetSegmentMap").fails();
    robot.powerOn();
    EXPECT_TRUE(robot.started(1, "GetSegmentMap", {{"map_id", "7"}})) << "no second try";
    EXPECT_EQ(robot.key("startup_clear_flag"), "get_segmap_failed");
    EXPECT_FALSE(robot.has("reuse_map_id"));

    SupervisedRobot without_reuse;
    without_reuse.set("reuse_map_id", "7");
    without_reuse.leaf("GetSegmentMap").fails();
    without_reuse.powerOn();
    EXPECT_TRUE(without_reuse.notAsked("GetSegmentMap"));
    EXPECT_EQ(without_reuse.key("reuse_map_id"), "7");
}

TEST(StartUp, LoadsTheMapAgainOnRequest)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.forget();
    for (const char* request : {"save_reuse_info_startup", "update_reuse_app_map_startup",
                                "update_reuse_app_map_mult_map", "MultmapRecoverDelTrFlag"})
        robot.set(request, "");
    robot.tick(5);
    EXPECT_TRUE(robot.notAsked("LoadReuseInfo"));
    robot.set("Start_Map_Load", "true");
    robot.tick(3);
    EXPECT_TRUE(robot.started(1, "LoadReuseInfo", {{"fullfilename", "/reuse"}}));
    EXPECT_TRUE(robot.started(1, "SaveReuseInfo"));
    EXPECT_TRUE(robot.started(2, "UpdateReuseAppMap", {{"mode", "load_charger_del_tr"}}));
    EXPECT_TRUE(robot.started(1, "UpdateReuseAppMap", {{"mode", ""}}));
    robot.set("Start_Map_Load", "true");
    robot.tick(3);
    EXPECT_TRUE(robot.started(1, "SaveReuseInfo")) << "each request is used up";
    EXPECT_TRUE(robot.started(3, "UpdateReuseAppMap"));
    EXPECT_TRUE(robot.askedNow("StandbyModeIndex")) << "beside the mode";
}

/// A task that ends, with the map to be cleared or not.
class Completion : public testing::Test
{
protected:
    Completion()
    {
        robot.powerOn();
        robot.set("last_clean_mode", "AutoCleanMode");
        robot.set("task_state", "cleaning");
        robot.forget();
    }

    void complete()
    {
        robot.set("AdvCleanCompleteStart", "");
        robot.tick(2);
        EXPECT_TRUE(robot.has("AdvCleanCompleteEnd"));
        EXPECT_EQ(robot.key("task_state"), "init");
        EXPECT_TRUE(robot.asked("GenerateCleaningLog", {{"clean_mode", "AutoCleanMode"}}));
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

TEST_F(Completion, LockThatWasGoneForATickHasItsFullTime)
{
    robot.set("RobotModeSwitchLock", "true");
    robot.tick(99);
    EXPECT_TRUE(robot.has("RobotModeSwitchLock"));
    robot.erase("RobotModeSwitchLock");
    robot.tick();
    robot.set("RobotModeSwitchLock", "true");
    robot.tick(99);
    EXPECT_TRUE(robot.has("RobotModeSwitchLock"));
    robot.tick();
    EXPECT_FALSE(robot.has("RobotModeSwitchLock"));
}

TEST_F(Completion, ClearsTheMapBehindTheLogOrAtOnceWithoutOne)
{
    robot.set("clear_map_flag", "true");
    complete();
    EXPECT_TRUE(robot.inOrder({{"SlamCleanComplete", {}},
                               {"GenerateCleaningLog", {}},
                               {"SlamCleanComplete", {}},
                               {"ResetMap", {}},
                               {"ResetReuseInfo", {}}}));
    EXPECT_EQ(robot.key("actively_upload_appmap_once"), "1");

    robot.forget();
    robot.set("clear_map_flag", "true");
    robot.set("CleanCompleteWithoutCleaningLog", "true");
    complete();
    EXPECT_TRUE(robot.started(1, "SlamCleanComplete"));
    EXPECT_EQ(robot.key("clear_map_flag"), "true");
    EXPECT_TRUE(robot.asked("ResetMap"));
}

TEST_F(Completion, ThatAsksForALoadFreesTheSwitchAtOnce)
{
    robot.set("Load_After_Complete", "");
    complete();
    EXPECT_FALSE(robot.has("RobotModeSwitchLock"));
    EXPECT_FALSE(robot.has("Load_After_Complete"));
    robot.tick();
    EXPECT_TRUE(robot.asked("LoadReuseInfo"));
}

}  // namespace
}  // namespace vemra::test
