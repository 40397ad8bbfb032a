#include "support/scripted_robot.h"

namespace vemra::test {
namespace {

class NearRun : public testing::Test
{
protected:
    NearRun()
    {
        robot.pointsOnALine();
        robot.set("current_pose=0 current_coord=0 navi_target_point=80");
        robot.leaf("NaviOnePoint").runs();
    }

    ScriptedRobot robot;
};

TEST_F(NearRun, FailsBehindTheTenFramesForTheCliffSensors)
{
    robot.start("NaviOnePointProc");
    robot.tick(5);
    robot.set("stop_to_check_clif", "");
    robot.forget();
    EXPECT_EQ(robot.tick(10), RUNNING);
    EXPECT_TRUE(robot.halted("NaviOnePoint"));
    EXPECT_TRUE(robot.asked("Stop"));
    EXPECT_TRUE(robot.said("停下来检测悬崖传感器！"));
    EXPECT_EQ(robot.tick(), FAILURE);
}

TEST_F(NearRun, OnABridgeGoesOnBehindThem)
{
    robot.set("navigation_bridge", "narrow");
    robot.leaf("BridgePathTrans").fills("o_path", "path over the bridge");
    robot.leaf("BridgeNavi").succeedsAfter(20).provided([](const Moment& now) {
        now.keys.erase("stop_to_check_clif");
        return true;
    });
    robot.set("stop_to_check_clif", "");
    robot.start("NavigateTree");
    EXPECT_EQ(robot.tick(10), RUNNING);
    EXPECT_TRUE(robot.notAsked("BridgeNavi"));
    robot.leaf("CheckClifBump").succeeds();
    EXPECT_EQ(robot.finish(40), SUCCESS) << "a bump does not hold it up either";
    EXPECT_EQ(robot.framesOf("BridgeNavi path='path over the bridge'"), 21);
    EXPECT_TRUE(robot.halted("TemporarilyDisableSensor sensor=LdsPointcloud"));
    EXPECT_TRUE(robot.keysAre("cross_bridge_success navi_to_target=true"));

    robot.set("finish_escape", "true");
    EXPECT_EQ(robot.finish(10), FAILURE) << "an escape does";
    EXPECT_TRUE(robot.keysAre("navi_to_target=false -cross_bridge_success"));
    EXPECT_TRUE(robot.said("过桥失败"));
}

TEST_F(NearRun, IsMadeWithoutAPlanAndForgetsTheBridgesWhateverCameOfIt)
{
    robot.tree("GotoPoint").fails();
    robot.leaf("NaviOnePoint").succeedsAfter(3);
    robot.start("NavigateProc");
    EXPECT_EQ(robot.finish(10), SUCCESS);
    EXPECT_TRUE(robot.notAsked("GotoPoint"));
    EXPECT_TRUE(robot.started(1, "ResetBridgeList"));

    robot.set("navi_target_point", 120);
    robot.forget();
    robot.leaf("ResetBridgeList").fails();
    EXPECT_EQ(robot.finish(10), FAILURE);
    EXPECT_TRUE(robot.asked("GotoPoint"));
    EXPECT_TRUE(robot.notAsked("NaviOnePoint"));
    EXPECT_TRUE(robot.started(1, "ResetBridgeList"));

    robot.tree("GotoPoint").succeeds();
    EXPECT_EQ(robot.finish(10), SUCCESS);
}

}  // namespace
}  // namespace vemra::test
