#include "support/scripted_robot.h"

namespace vemra::test {
namespace {

class Exploring : public testing::Test
{
protected:
    Exploring()
    {
        robot.pointsOnALine();
        robot.set("current_pose", 0);
        robot.set("current_coord", 0);
        robot.set("navi_target_point", 4000);
        robot.set("bump_dir", "None");
        robot.set("marker_signal_type", "Middle");
        robot.set("marker_dir", 0.0);
        robot.tree("GoChargingFullRoundTurn").succeeds();
    }

    ScriptedRobot robot;
};

TEST_F(Exploring, EndsWithTheDockItFound)
{
    robot.leaf("ExploreFindCharger").succeeds();
    robot.leaf("InDockField").succeeds();
    robot.start("Explore");
    EXPECT_EQ(robot.finish(60), FAILURE);
    EXPECT_TRUE(robot.has("explore_found_charger"));
    EXPECT_TRUE(robot.notAsked("GenerateRandomPoint")) << "there is nothing more to look for";
}

TEST_F(Exploring, GoesOnToRandomPointsBehindTheLastFrontier)
{
    robot.leaf("AwesomeSearch").fails();
    robot.start("Explore");
    robot.tickUntil("GenerateRandomPoint", {}, 60);
    EXPECT_FALSE(robot.has("explore_found_charger"));
}

}  // namespace
}  // namespace vemra::test
