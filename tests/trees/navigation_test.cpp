#include "support/scripted_robot.h"

namespace vemra::test {
namespace {

/// A plan of vector segments or bridges; the goal stands at 1000 mm.
struct PlanWalk : RobotOnALine
{
    PlanWalk()
    {
        robot.set("navi_target_point=1000 current_pose=0 current_coord=0 navigation_path_segments=plan");
        robot.set("navigation_path=path bump_dir=Left");
    }

    void planOf(std::initializer_list<NodeStatus> left) { robot.leaf("CheckPathSegment").inTurn(left); }

    /// Each run of the planner or of a bridge brings the robot to `at` and ends so.
    static Answer::Function bringsTo(int at, NodeStatus result)
    {
        return [at, result](const Moment& now) {
            now.set("current_pose", at);
            now.set("current_coord", at);
            return result;
        };
    }

    /// How many segments of a plan of one are asked for; the robot is not at the goal.
    int segments()
    {
        planOf({SUCCESS, FAILURE});
        EXPECT_EQ(robot.finish("GotoPoint", 100), FAILURE);
        return robot.transcript().starts({"CheckPathSegment", {}});
    }
    /// When the planner gave up at `pose` and the segment ended at 500.
    int segmentsAfterGivingUpAt(int pose)
    {
        robot.leaf("PathSegIsVector").succeeds();
        robot.set("navi_path_target", 500);
        robot.leaf("DwaLocalPlanner").decides(bringsTo(pose, FAILURE));
        const int count = segments();
        EXPECT_TRUE(robot.asked("Stop"));
        return count;
    }

    /// The same after a bridge that was crossed from 100 to `pose`.
    int segmentsAfterCrossingTo(int pose)
    {
        robot.set("current_coord=100 current_pose=100");
        robot.leaf("PathSegIsVector").fails();
        robot.tree("CrossBridge").decides(bringsTo(pose, SUCCESS));
        return segments();
    }
};

TEST_F(PlanWalk, ThatBreaksOffWithin110MmOr220BeforeATrialBridgeHasDoneItsSegment)
{
    EXPECT_EQ(segmentsAfterGivingUpAt(395), 2);
    EXPECT_EQ(segmentsAfterGivingUpAt(385), 1);
    robot.set("trial_bridge_next_to_this_vector", "true");
    EXPECT_EQ(segmentsAfterGivingUpAt(285), 2);
    EXPECT_EQ(segmentsAfterGivingUpAt(275), 1);
}

TEST_F(PlanWalk, ThatBreaksOffNearItsEndStillMustStandAtTheGoal)
{
    robot.leaf("PathSegIsVector").succeeds();
    robot.set("navi_path_target", 1000);
    robot.leaf("DwaLocalPlanner").decides(bringsTo(895, FAILURE));
    planOf({SUCCESS, FAILURE});
    EXPECT_EQ(robot.finish("GotoPoint", 100), FAILURE);
    robot.leaf("DwaLocalPlanner").decides(bringsTo(905, FAILURE));
    planOf({SUCCESS, FAILURE});
    EXPECT_EQ(robot.finish(100), SUCCESS);
}

TEST_F(PlanWalk, GivesTheRestUpAfter300MmOfBridge)
{
    EXPECT_EQ(segmentsAfterCrossingTo(390), 2);
    EXPECT_TRUE(robot.asked("UpdateBridgeCost"));
    EXPECT_EQ(segmentsAfterCrossingTo(410), 1) << "the plan is stale";
    EXPECT_TRUE(robot.asked("UpdateBridgeCost"));
    EXPECT_FALSE(robot.has("cross_bridge_start_point"));

    robot.set("step_bridge_valid", "");
    EXPECT_EQ(segmentsAfterCrossingTo(390), 2);
    EXPECT_TRUE(robot.notAsked("UpdateBridgeCost")) << "a step keeps its own record";
    EXPECT_FALSE(robot.has("step_bridge_valid"));
}

/// A navigation that ended at an obstacle; the goal stands 1000 mm off and the wall leads on.
struct FollowAfterABump : RobotOnALine
{
    FollowAfterABump()
    {
        robot.set("current_pose=0 current_coord=0 navi_target_point=1000 bump_dir=Left gridmap_limit=home");
        robot.set("awesome_search_mode=Target");
        robot.succeed("LaserReviewAction | Back2cm");
        robot.succeed(
            "NotTrapped | Bumped | CheckSuccessiveCollision | FollowWallNotLooped | "
            "CheckFollowWallMatchingNavi | CheckFollowWallRectLimit");
        robot.leaf("SensorConsole").runs();
    }

    /// Follows for 20 frames, the last 10 of them outside the rectangle when `outside`.
    void follow(bool outside)
    {
        EXPECT_EQ(robot.run("NavigateFollowWall", 10), RUNNING);
        if (outside)
            robot.leaf("CheckFollowWallRectLimit").fails();
        EXPECT_EQ(robot.tick(10), RUNNING) << robot.transcript().print();
        EXPECT_EQ(robot.framesOf("SensorConsole"), 20);
    }
};

TEST_F(FollowAfterABump, NeedsABumpAndNoTrap)
{
    robot.leaf("Bumped").fails();
    EXPECT_EQ(robot.run("NavigateFollowWall"), FAILURE);
    robot.leaf("Bumped").succeeds();
    robot.leaf("NotTrapped").fails();
    EXPECT_EQ(robot.tick(), FAILURE);
    robot.leaf("NotTrapped").succeeds();
    robot.leaf("CheckSuccessiveCollision").fails();
    EXPECT_EQ(robot.tick(), FAILURE);
    EXPECT_TRUE(robot.notAsked("SensorConsole | Back2cm"));
    EXPECT_TRUE(robot.started(3, "ResetBridgeList"));
}

TEST_F(FollowAfterABump, StopsOnEachCauseAndStepsBack)
{
    using Cause = std::function<void(ScriptedRobot&)>;
    const std::vector<std::tuple<std::string, bool, Cause>> causes = {
        {"the wall leads away", true,
         [](ScriptedRobot& r) { r.leaf("CheckFollowWallMatchingNavi").fails(); }},
        {"within 100 mm of the goal", true, [](ScriptedRobot& r) { r.set("current_pose", 910); }},
        {"the loop is closed", false, [](ScriptedRobot& r) { r.leaf("FollowWallNotLooped").fails(); }},
        {"an escape", false, [](ScriptedRobot& r) { r.set("finish_escape", "true"); }},
        {"the motion ends", false, [](ScriptedRobot& r) { r.leaf("SensorConsole").fails(); }},
    };
    for (const auto& [name, outside, cause] : causes) {
        robot.succeed("CheckFollowWallRectLimit | CheckFollowWallMatchingNavi | FollowWallNotLooped");
        robot.leaf("SensorConsole").runs();
        robot.set("current_pose", 890);
        follow(outside);
        cause(robot);
        EXPECT_EQ(robot.finish(10), FAILURE) << name;
        EXPECT_LE(robot.framesOf("SensorConsole"), 21) << name;
        EXPECT_TRUE(robot.started(1, "Back2cm | ResetBridgeList")) << name;
    }
}

TEST_F(FollowAfterABump, SearchThatFailsOnTheWayOnlyLeavesItsMark)
{
    follow(false);
    EXPECT_TRUE(robot.started(1, "AwesomeSearch"));
    robot.leaf("AwesomeSearch").fails();
    EXPECT_EQ(robot.tick(60), RUNNING);
    EXPECT_TRUE(robot.started(2, "AwesomeSearch search_mode=Target"));
    EXPECT_EQ(robot.key("trapped_in_real_block"), "true");
    EXPECT_EQ(robot.framesOf("SensorConsole"), 80) << "the robot follows on";

    robot.leaf("AwesomeSearch").succeeds();
    EXPECT_EQ(robot.tick(60), RUNNING);
    EXPECT_FALSE(robot.has("recalculating_navi_dir"));
}

// The token is gone as soon as the rest has begun, and the choice is made anew in every frame.
TEST(FollowWallDeal, RestsOneFrameAfterAReviewThatMovedTheRobot)
{
    ScriptedRobot robot;
    robot.tree("LaserReviewAction").succeeds();
    robot.leaf("SensorConsole").runs();
    EXPECT_EQ(robot.run("FollowWallDeal", 5), RUNNING);
    robot.set("review_halt_token", "");
    EXPECT_EQ(robot.tick(), RUNNING);
    EXPECT_FALSE(robot.askedNow("SensorConsole"));
    EXPECT_TRUE(robot.halted("SensorConsole"));
    EXPECT_FALSE(robot.has("review_halt_token"));
    EXPECT_EQ(robot.tick(5), RUNNING);
    EXPECT_EQ(robot.framesOf("SensorConsole"), 10);
}

struct NearRun : RobotOnALine
{
    NearRun()
    {
        robot.set("current_pose=0 current_coord=0 navi_target_point=80");
        robot.leaf("NaviOnePoint").runs();
    }
};

TEST_F(NearRun, FailsBehindTheTenFramesForTheCliffSensors)
{
    robot.run("NaviOnePointProc", 5);
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
    EXPECT_EQ(robot.run("NavigateTree", 10), RUNNING);
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
    EXPECT_EQ(robot.finish("NavigateProc", 10), SUCCESS);
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
