#include "support/scripted_robot.h"

namespace vemra::test {
namespace {

/// The bumper is pressed in these frames, inclusive.
Answer::Function pressedIn(const std::vector<std::pair<int, int>>& frames, const std::string& direction)
{
    return [frames, direction](const Moment& now) {
        for (const auto& [first, last] : frames)
            if (first <= now.frame && now.frame <= last) {
                if (!now.port("out_bump_dir").empty())
                    now.set(now.port("out_bump_dir"), direction);
                return SUCCESS;
            }
        return FAILURE;
    };
}

TEST(StepBack, GoesOnUntilTheBumperIsFreeAndFiveFramesMore)
{
    ScriptedRobot robot;
    robot.set("bump_dir", "Left");
    robot.leaf("BumpdirMerge").decides([](const Moment& now) {
        if (now.port("bumpdir1") != now.port("bumpdir2"))
            now.set(now.port("out_bumpdir"), "Middle");
        return SUCCESS;
    });
    robot.leaf("SensorCheckBumped").decides(pressedIn({{1, 12}}, "Left"));
    EXPECT_EQ(robot.finish("BTBack2cm", 60), SUCCESS);
    const int first = robot.firstFrameOf("GoBackwards").value();
    EXPECT_EQ(robot.framesOf("GoBackwards"), 12 - first + 1 + 5);
    EXPECT_EQ(robot.key("bump_dir"), "Left");
    EXPECT_TRUE(robot.inOrder("Stop | SetMapDrawMode draw_mode=BlockOnly | GoBackwards | Stop"));

    // Another touch, and the five frames are counted afresh.
    const int start = robot.frame() + 1;
    robot.leaf("SensorCheckBumped")
        .decides(pressedIn({{start, start + 8}, {start + 12, start + 12}}, "Right"));
    EXPECT_EQ(robot.finish("BTBack2cm", 60), SUCCESS);
    const int again = robot.firstFrameOf("GoBackwards").value();
    EXPECT_EQ(robot.framesOf("GoBackwards"), start + 12 - again + 1 + 5);
    EXPECT_EQ(robot.key("bump_dir"), "Middle") << "all of the collision";
}

TEST(BlindAdvance, ThatBumpsGivesTheWholeRunUpAndWaitsBehindItsStepBack)
{
    ScriptedRobot robot;
    robot.tree("Back2cm").succeedsAfter(3);
    robot.leaf("SensorCheckBumped").decides(pressedIn({{30, 30}}, "Left"));
    EXPECT_EQ(robot.run("BlindAdvance", 30), RUNNING);
    EXPECT_EQ(robot.key("bump_dir"), "Left");
    EXPECT_TRUE(robot.halted("OpenCloseMove"));
    const int driven = robot.framesOf("OpenCloseMove");
    EXPECT_EQ(robot.tick(3 + 19), RUNNING);
    EXPECT_EQ(robot.finish(3), SUCCESS);
    EXPECT_EQ(robot.framesOf("OpenCloseMove"), driven);
}

TEST(ShakeAndBack, StopsAfterTenCentimetresAndTurnsOnlyBeforeADock)
{
    ScriptedRobot robot;
    robot.pointsOnALine();
    robot.set("current_pose", 0);
    robot.leaf("GoBackwards").decides([](const Moment& now) {
        now.set("current_pose", now.keys.get<int>("current_pose") - 4);
        return RUNNING;
    });
    EXPECT_EQ(robot.finish("ShakeAndBack", 300), SUCCESS);
    EXPECT_EQ(robot.key("current_pose"), "-100");
    EXPECT_TRUE(robot.notAsked("Rotate"));

    robot.leaf("InDockField").succeeds();
    robot.set("current_pose", 0);
    robot.forget();
    EXPECT_EQ(robot.finish(600), SUCCESS);
    EXPECT_TRUE(robot.inOrder(
        "Rotate angle_deg=-180 | OpenCloseMove left_mm_s=120 right_mm_s=120 | Rotate angle_deg=180"));
    EXPECT_EQ(robot.framesOf("OpenCloseMove"), 150);
}

/// The charger is heard behind a wall; the point behind it stands at 1500 mm, the bump at 0.
struct ThroughObstacle : RobotOnALine
{
    ThroughObstacle()
    {
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
};

TEST_F(ThroughObstacle, TriesElevenTimesAlongTheWall)
{
    EXPECT_EQ(robot.finish("ThroughObstacleNavigation", 100), FAILURE);
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
    EXPECT_EQ(robot.finish("ThroughObstacleNavigation", 100), SUCCESS);
    EXPECT_TRUE(robot.started(2, "NavigateProc"));
    expectCleanUp();
}

TEST_F(ThroughObstacle, EndsWithoutAPathOrOutsideTheSquare)
{
    robot.tree("NavigateProc").runs();
    EXPECT_EQ(robot.run("ThroughObstacleNavigation", 20), RUNNING);
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

struct Exploring : RobotOnALine
{
    Exploring()
    {
        robot.set("current_pose=0 current_coord=0 navi_target_point=4000 bump_dir=None");
        robot.set("marker_signal_type=Middle marker_dir=0.0");
        robot.tree("GoChargingFullRoundTurn").succeeds();
    }
};

TEST_F(Exploring, EndsWithTheDockItFound)
{
    robot.succeed("ExploreFindCharger | InDockField");
    EXPECT_EQ(robot.finish("Explore", 60), FAILURE);
    EXPECT_TRUE(robot.has("explore_found_charger"));
    EXPECT_TRUE(robot.notAsked("GenerateRandomPoint")) << "there is nothing more to look for";
}

TEST_F(Exploring, ASignalThatIsNoneOrMixedIsNoDock)
{
    robot.textsAsTheyStand();
    for (const char* heard : {"None", "Mixed"}) {
        robot.set("marker_signal_type", heard);
        robot.leaf("ExploreFindCharger").inTurn({SUCCESS, FAILURE});
        robot.fail("AwesomeSearch | SearchCharger");
        EXPECT_EQ(robot.finish("Explore", 100), FAILURE) << heard;
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
    EXPECT_EQ(robot.finish("QuickMapping", 100), SUCCESS);
    EXPECT_EQ(robot.key("origin_point"), "700");
    way_home = false;
    EXPECT_EQ(robot.finish("QuickMapping", 100), FAILURE);
}

TEST(SwitchLineTurn, BacksOffOnceFromWhatTheArcTouches)
{
    ScriptedRobot robot;
    robot.set("current_yaw_deg", 0.0);
    robot.leaf("CalcSwitchLineTurnParam").decides([n = 0](const Moment& now) mutable {
        now.set("turn_radius", 300);
        now.set("turn_angle", n++ == 0 ? 180 : 90);
        return SUCCESS;
    });
    robot.leaf("Rotate").decides([](const Moment& now) {
        now.set("current_yaw_deg", 100.0);
        return RUNNING;
    });
    robot.succeed("CheckClifBump | Back2cm");
    EXPECT_EQ(robot.finish("SwitchLineTurn", 20), FAILURE);
    EXPECT_TRUE(robot.started(1, "Back2cm"));
    EXPECT_TRUE(robot.notAsked("TurnAround"));
}

}  // namespace
}  // namespace vemra::test
