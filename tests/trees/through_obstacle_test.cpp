#include "support/scripted_robot.h"

namespace vemra::test {
namespace {

/// The charger is heard behind a wall; the point behind it stands at 1500 mm, the bump at 0.
class ThroughObstacle : public testing::Test
{
protected:
    ThroughObstacle()
    {
        robot.pointsOnALine();
        robot.set("initial_bump_pose=0 current_pose=0 current_coord=0 gridmap_limit=home bump_dir=Left");
        robot.set("follow_wall_dir=true");
        robot.leaf("MoveThroughWalls").fills("out_point", 1500);
        robot.leaf("GeneratePointCenteredRectMm").fills("out_rect", "square");
        robot.succeed("IsPointInRectangle | NotTrapped | Bumped");
        robot.leaf("AdvancedSetFollowWallDirection").writes("follow_wall_dir", "false");
        robot.fail("NavigateProc | FollowWallTillRectLimitIgnoreCharger");
    }

    void expectCleanUp()
    {
        EXPECT_TRUE(robot.said("tolvar break"));
        EXPECT_FALSE(robot.has("MTW_times"));
        EXPECT_EQ(robot.key("follow_wall_dir"), "true") << "as the caller had it";
    }

    ScriptedRobot robot;
};

TEST_F(ThroughObstacle, TriesElevenTimesAlongTheWall)
{
    robot.start("ThroughObstacleNavigation");
    EXPECT_EQ(robot.finish(100), FAILURE);
    EXPECT_TRUE(robot.started(11, "NavigateProc | FollowWallTillRectLimitIgnoreCharger"));
    EXPECT_TRUE(robot.said("tolvar try over 10 times"));
    expectCleanUp();
}

TEST_F(ThroughObstacle, EndsWithin200MmOfThePoint)
{
    robot.tree("NavigateProc").decides([](const Moment& now) {
        now.set("current_pose", now.keys.get<int>("current_pose") + 700);
        return FAILURE;
    });
    robot.start("ThroughObstacleNavigation");
    EXPECT_EQ(robot.finish(100), SUCCESS);
    EXPECT_TRUE(robot.started(2, "NavigateProc"));
    expectCleanUp();
}

TEST_F(ThroughObstacle, EndsWithoutAPathOrOutsideTheSquare)
{
    robot.tree("NavigateProc").runs();
    robot.start("ThroughObstacleNavigation");
    EXPECT_EQ(robot.tick(20), RUNNING);
    robot.leaf("IsPointInRectangle").fails();
    EXPECT_EQ(robot.tick(), FAILURE);
    EXPECT_TRUE(robot.halted("NavigateProc"));
    expectCleanUp();

    robot.leaf("IsPointInRectangle").succeeds();
    robot.leaf("AwesomeSearch").fails();
    robot.forget();
    EXPECT_EQ(robot.finish(5), FAILURE);
    EXPECT_TRUE(robot.notAsked("NavigateProc"));
    expectCleanUp();
}

}  // namespace
}  // namespace vemra::test
