#include "support/scripted_robot.h"

namespace vemra::test {
namespace {

class Exploring : public testing::Test
{
protected:
    Exploring()
    {
        robot.pointsOnALine();
        robot.set("current_pose=0 current_coord=0 navi_target_point=4000 bump_dir=None");
        robot.set("marker_signal_type=Middle marker_dir=0.0");
        robot.tree("GoChargingFullRoundTurn").succeeds();
    }

    ScriptedRobot robot;
};

TEST_F(Exploring, EndsWithTheDockItFound)
{
    robot.succeed("ExploreFindCharger | InDockField");
    robot.start("Explore");
    EXPECT_EQ(robot.finish(60), FAILURE);
    EXPECT_TRUE(robot.has("explore_found_charger"));
    EXPECT_TRUE(robot.notAsked("GenerateRandomPoint")) << "there is nothing more to look for";
}

TEST_F(Exploring, ASignalThatIsNoneOrMixedIsNoDock)
{
    robot.leaf("SignalTypeMatch").decides([](const Moment& now) {
        return now.port("a_type") == now.port("b_type") ? SUCCESS : FAILURE;
    });
    for (const char* heard : {"None", "Mixed"}) {
        robot.set("marker_signal_type", heard);
        robot.leaf("ExploreFindCharger").inTurn({SUCCESS, FAILURE});
        robot.fail("AwesomeSearch | SearchCharger");
        robot.start("Explore");
        EXPECT_EQ(robot.finish(100), FAILURE) << heard;
        EXPECT_TRUE(robot.said("tolvar no charger"));
        EXPECT_FALSE(robot.has("explore_found_charger"));
    }
}

TEST_F(Exploring, QuickMappingKeepsTheOriginThatItHasAndTellsWhetherItIsShutIn)
{
    robot.tree("EscapeCoat").fails();
    robot.set("origin_point", 700);
    bool way_home = true;
    robot.leaf("AwesomeSearch").fails();
    robot.leaf("AwesomeSearch search_mode=Origin").follows(way_home);
    robot.set("path_bridge_max_failure_cnt", 0);
    robot.start("QuickMapping");
    EXPECT_EQ(robot.finish(100), SUCCESS);
    EXPECT_EQ(robot.key("origin_point"), "700");
    way_home = false;
    robot.start("QuickMapping");
    EXPECT_EQ(robot.finish(100), FAILURE);
}

}  // namespace
}  // namespace vemra::test
