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
        robot.start("NavigateFollowWall");
        EXPECT_EQ(robot.tick(10), RUNNING);
        if (outside)
            robot.leaf("CheckFollowWallRectLimit").fails();
        EXPECT_EQ(robot.tick(10), RUNNING) << robot.transcript().print();
        EXPECT_EQ(robot.framesOf("SensorConsole"), 20);
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
        EXPECT_TRUE(robot.started(1, "Back2cm")) << name;
        EXPECT_TRUE(robot.started(1, "ResetBridgeList")) << name;
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
    robot.start("FollowWallDeal");
    EXPECT_EQ(robot.tick(5), RUNNING);
    robot.set("review_halt_token", "");
    EXPECT_EQ(robot.tick(), RUNNING);
    EXPECT_FALSE(robot.askedNow("SensorConsole"));
    EXPECT_TRUE(robot.halted("SensorConsole"));
    EXPECT_FALSE(robot.has("review_halt_token"));
    EXPECT_EQ(robot.tick(5), RUNNING);
    EXPECT_EQ(robot.framesOf("SensorConsole"), 10);
}

}  // namespace
}  // namespace vemra::test
