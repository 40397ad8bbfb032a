#include "support/scripted_robot.h"

namespace vemra::test {
namespace {

/// A navigation that ended at an obstacle; the goal stands 1000 mm off and the wall leads on.
class FollowAfterABump : public testing::Test
{
protected:
    FollowAfterABump()
    {
        robot.pointsOnALine();
        robot.set("current_pose", 0);
        robot.set("current_coord", 0);
        robot.set("navi_target_point", 1000);
        robot.set("bump_dir", "Left");
        robot.set("gridmap_limit", "home");
        robot.set("awesome_search_mode", "Target");
        robot.tree("LaserReviewAction").succeeds();
        robot.tree("Back2cm").succeeds();
        for (const char* passes : {"NotTrapped", "Bumped", "CheckSuccessiveCollision", "FollowWallNotLooped",
                                   "CheckFollowWallMatchingNavi", "CheckFollowWallRectLimit"})
            robot.leaf(passes).succeeds();
        robot.leaf("SensorConsole").runs();
    }

    /// Follows for 20 frames, the last 10 of them outside the rectangle when `outside`.
    void follow(bool outside)
    {
        robot.start("NavigateFollowWall");
        EXPECT_EQ(robot.tick(10), RUNNING);
        if (outside)
            robot.leaf("CheckFollowWallRectLimit").fails();
        EXPECT_EQ(robot.tick(10), RUNNING) << robot.transcript().print();
        EXPECT_EQ(robot.framesOf("SensorConsole"), 20);
    }

    /// The follow is over on the next frame, the robot steps back, and the caller is told nothing by it.
    void expectEnd()
    {
        EXPECT_EQ(robot.finish(10), FAILURE);
        EXPECT_EQ(robot.framesOf("SensorConsole"), 20) << robot.transcript().print("SensorConsole");
        EXPECT_TRUE(robot.started(1, "Back2cm"));
        EXPECT_TRUE(robot.started(1, "ResetBridgeList"));
    }

    ScriptedRobot robot;
};

TEST_F(FollowAfterABump, NeedsABumpAndNoTrap)
{
    robot.leaf("Bumped").fails();
    robot.start("NavigateFollowWall");
    EXPECT_EQ(robot.tick(), FAILURE);
    robot.leaf("Bumped").succeeds();
    robot.leaf("NotTrapped").fails();
    EXPECT_EQ(robot.tick(), FAILURE);
    robot.leaf("NotTrapped").succeeds();
    robot.leaf("CheckSuccessiveCollision").fails();
    EXPECT_EQ(robot.tick(), FAILURE);
    EXPECT_TRUE(robot.notAsked("SensorConsole"));
    EXPECT_TRUE(robot.notAsked("Back2cm"));
    EXPECT_TRUE(robot.started(3, "ResetBridgeList"));
}

TEST_F(FollowAfterABump, InsideTheRectangleKeepsToTheWallRegardless)
{
    robot.leaf("CheckFollowWallMatchingNavi").fails();
    robot.set("navi_target_point", 10);
    follow(false);
    EXPECT_TRUE(robot.asked("SetFollowWallCmd", {{"precise", "false"}}));
    EXPECT_EQ(robot.key("target_mode"), "true");
    robot.halt();
    EXPECT_TRUE(robot.halted("SensorConsole"));
    EXPECT_TRUE(robot.asked("ResetBridgeList")) << "on the halt as well";
    EXPECT_FALSE(robot.has("target_mode"));
}

TEST_F(FollowAfterABump, StopsOutsideWhenTheWallLeadsAway)
{
    follow(true);
    robot.leaf("CheckFollowWallMatchingNavi").fails();
    expectEnd();
}

TEST_F(FollowAfterABump, StopsOutsideWithin100MmOfTheGoal)
{
    follow(true);
    robot.set("current_pose", 890);
    EXPECT_EQ(robot.tick(), RUNNING);
    robot.forget();
    robot.set("current_pose", 910);
    EXPECT_EQ(robot.finish(10), FAILURE);
    EXPECT_TRUE(robot.halted("SensorConsole"));
    EXPECT_TRUE(robot.started(1, "Back2cm"));
}

TEST_F(FollowAfterABump, StopsWhenTheLoopIsClosed)
{
    follow(false);
    robot.leaf("FollowWallNotLooped").fails();
    expectEnd();
}

TEST_F(FollowAfterABump, StopsAfterAnEscape)
{
    follow(false);
    robot.set("finish_escape", "true");
    expectEnd();
    EXPECT_EQ(robot.key("trapped"), "true");
}

TEST_F(FollowAfterABump, StopsWithTheMotionItself)
{
    follow(false);
    robot.leaf("SensorConsole").fails();
    EXPECT_EQ(robot.finish(10), FAILURE);
    EXPECT_EQ(robot.framesOf("SensorConsole"), 21);
    EXPECT_TRUE(robot.started(1, "Back2cm"));
}

TEST_F(FollowAfterABump, SearchThatFailsOnTheWayOnlyLeavesItsMark)
{
    follow(false);
    EXPECT_TRUE(robot.started(1, "AwesomeSearch"));
    robot.leaf("AwesomeSearch").fails();
    EXPECT_EQ(robot.tick(60), RUNNING);
    EXPECT_TRUE(robot.started(2, "AwesomeSearch", {{"search_mode", "Target"}}));
    EXPECT_EQ(robot.key("trapped_in_real_block"), "true");
    EXPECT_EQ(robot.framesOf("SensorConsole"), 80) << "the robot follows on";

    robot.leaf("AwesomeSearch").succeeds();
    EXPECT_EQ(robot.tick(60), RUNNING);
    EXPECT_FALSE(robot.has("recalculating_navi_dir"));
}

TEST_F(FollowAfterABump, RenewsItsDirectionEveryFiftyFramesAndOnceAtTheEdge)
{
    follow(false);
    EXPECT_EQ(robot.transcript().starts("CalculateNavigateDirection", {}), 1);
    robot.tick(50);
    EXPECT_EQ(robot.transcript().starts("CalculateNavigateDirection", {}), 2);
    robot.leaf("CheckFollowWallRectLimit").fails();
    robot.tick();
    EXPECT_EQ(robot.transcript().starts("CalculateNavigateDirection", {}), 3);
    EXPECT_FALSE(robot.has("still_in_rect_limit"));
}

TEST_F(FollowAfterABump, DoesNotSearchAtTheEdgeWhileTheTimedSearchRuns)
{
    follow(false);
    robot.leaf("AwesomeSearch").runs();
    robot.tick(45);
    ASSERT_TRUE(robot.has("recalculating_navi_dir")) << robot.transcript().print();
    robot.leaf("CheckFollowWallRectLimit").fails();
    robot.tick(5);
    EXPECT_TRUE(robot.started(2, "AwesomeSearch"));
    EXPECT_TRUE(robot.askedNow("SensorConsole"));
}

TEST_F(FollowAfterABump, WithoutAPathGoesOnlyToTheEdge)
{
    robot.leaf("AwesomeSearch").fails();
    robot.start("NavigateFollowWall");
    EXPECT_EQ(robot.tick(5), RUNNING);
    EXPECT_TRUE(robot.notAsked("SensorConsole"));
    EXPECT_EQ(robot.key("trapped_in_real_block"), "true");
    EXPECT_EQ(robot.tick(10), RUNNING);
    EXPECT_TRUE(robot.asked("SensorConsole"));
    EXPECT_TRUE(robot.asked("AdvancedSetFollowWallDirection"));
    EXPECT_TRUE(robot.notAsked("NavigatedSetFollowWallDirection"));
    robot.leaf("CheckFollowWallRectLimit").fails();
    EXPECT_EQ(robot.finish(5), FAILURE);
    EXPECT_TRUE(robot.halted("SensorConsole"));
    EXPECT_TRUE(robot.started(1, "AwesomeSearch"));
}

TEST_F(FollowAfterABump, PausesForAReviewAndFollowsOn)
{
    robot.start("FollowWallProc");
    robot.tick(10);
    robot.set("review_halt_token", 1);
    EXPECT_EQ(robot.tick(), RUNNING);
    EXPECT_TRUE(robot.halted("SensorConsole"));
    EXPECT_FALSE(robot.has("review_halt_token"));
    robot.tickUntil("SensorConsole", {}, 60);
    robot.tree("LaserReviewAction").fails();
    EXPECT_EQ(robot.tick(), FAILURE) << "no follow without the review";
}

TEST_F(FollowAfterABump, TillTheRectangleEndsWellOnlyAtItsEdge)
{
    for (const char* tree : {"FollowWallTillRectLimit", "FollowWallTillRectLimitIgnoreCharger"}) {
        robot.leaf("CheckFollowWallRectLimit").succeeds();
        robot.leaf("FollowWallNotLooped").succeeds();
        robot.start(tree);
        EXPECT_EQ(robot.tick(20), RUNNING);
        EXPECT_EQ(robot.framesOf("SensorConsole"), 20);
        robot.leaf("CheckFollowWallRectLimit").fails();
        EXPECT_EQ(robot.finish(5), SUCCESS) << tree;
        EXPECT_TRUE(robot.halted("SensorConsole"));
        EXPECT_TRUE(robot.started(1, "Back2cm"));

        EXPECT_EQ(robot.finish(5), SUCCESS) << "started outside";
        robot.forget();
        robot.leaf("CheckFollowWallRectLimit").succeeds();
        robot.leaf("FollowWallNotLooped").fails();
        EXPECT_EQ(robot.finish(5), FAILURE) << tree;
        EXPECT_TRUE(robot.started(1, "Back2cm"));
        EXPECT_TRUE(robot.notAsked("SensorConsole"));
    }
    EXPECT_TRUE(robot.notAsked("SetFollowWallCmd", {{"ignorebase", "false"}})) << "the charger is no wall";
}

}  // namespace
}  // namespace vemra::test
