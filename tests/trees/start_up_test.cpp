#include "support/supervised_robot.h"

namespace vemra::test {
namespace {

TEST(StartUp, ClearsTheMapWhoseSegmentsCannotBeHad)
{
    SupervisedRobot robot;
    robot.set("RobotReuseMapEnable=1 reuse_map_id=7");
    robot.leaf("GetSegmentMap").fails();
    robot.powerOn();
    EXPECT_TRUE(robot.started(1, "GetSegmentMap map_id=7")) << "no second try";
    EXPECT_TRUE(robot.keysAre("startup_clear_flag=get_segmap_failed -reuse_map_id"));
}

TEST(StartUp, LoadsTheMapAgainOnRequest)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.forget();
    robot.set(
        "save_reuse_info_startup= update_reuse_app_map_startup= update_reuse_app_map_mult_map= "
        "MultmapRecoverDelTrFlag=");
    robot.tick(5);
    EXPECT_TRUE(robot.notAsked("LoadReuseInfo"));
    robot.set("Start_Map_Load", "true");
    robot.tick(3);
    EXPECT_TRUE(robot.started(1, "LoadReuseInfo fullfilename=/reuse | SaveReuseInfo"));
    EXPECT_TRUE(robot.started(2, "UpdateReuseAppMap mode=load_charger_del_tr"));
    EXPECT_TRUE(robot.started(1, "UpdateReuseAppMap mode="));
    EXPECT_TRUE(robot.askedNow("StandbyModeIndex")) << "beside the mode";
}

/// A task that ends, with the map to be cleared or not.
class Completion : public testing::Test
{
protected:
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

TEST_F(Completion, ThatAsksForALoadFreesTheSwitchAtOnce)
{
    robot.set("Load_After_Complete", "");
    complete();
    EXPECT_TRUE(robot.keysAre("-RobotModeSwitchLock -Load_After_Complete"));
    robot.tick();
    EXPECT_TRUE(robot.asked("LoadReuseInfo"));
}

}  // namespace
}  // namespace vemra::test
