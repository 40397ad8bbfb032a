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

TEST_F(NearRun, NoneStopSearchesAgainUntilItIsThereOrThereIsNoPath)
{
    robot.set("gridmap_limit=home avoid_mopped_areas=true navi_target_point=3000");
    robot.leaf("FindLastInTrajectory").fills("out_point_grid", 1000);
    robot.tree("NavigateFollowWall").fails();
    robot.tree("NavigateProcNoUnknown").decides([](const Moment& now) {
        EXPECT_EQ(now.keys.get<bool>("avoid_mopped_areas"), false);
        const int pose = now.keys.get<int>("current_pose") + 400;
        now.set("current_pose", pose);
        return pose > 1000 ? SUCCESS : FAILURE;
    });
    robot.leaf("AwesomeSearch").inTurn({SUCCESS, SUCCESS, SUCCESS, FAILURE});
    robot.start("NavigateProcWithHistoryMapNoneStop");
    EXPECT_EQ(robot.finish(50), FAILURE) << "200 mm past the goal with no path left";
    EXPECT_EQ(robot.key("avoid_mopped_areas"), "true") << "as it was before";

    robot.leaf("AwesomeSearch").inTurn({SUCCESS, SUCCESS, SUCCESS, FAILURE});
    robot.set("current_pose", -300);
    robot.forget();
    EXPECT_EQ(robot.finish(50), SUCCESS) << "within 150 mm";
    EXPECT_TRUE(robot.started(3, "AwesomeSearch | NavigateFollowWall"));
    EXPECT_TRUE(robot.started(1, "ResetBridgeList"));
}

}  // namespace
}  // namespace vemra::test
