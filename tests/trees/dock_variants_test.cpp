#include "trees/searching_robot.h"

namespace vemra::test {
namespace {

// --- the search that circles the dock -----------------------------------------------------------

struct CirclingSearch : SearchingRobot
{
    CirclingSearch() { robot.leaf("SurroundCharger").runs(); }

    void search(const std::map<std::string, std::string>& signals, int frames)
    {
        hearAtTurn(signals);
        robot.forget();
        robot.run("SearchForCharger_vslam", frames);
    }
};

TEST_F(CirclingSearch, ChoosesTheSideByTheVotesOfItsReceivers)
{
    search({{"Left", "Left"}, {"MiddleLeft", "Left"}, {"Right", "Right"}}, 10);
    EXPECT_TRUE(robot.asked("SurroundCharger direction=Left"));
    search({{"Left", "Left"}, {"MiddleRight", "Right"}, {"Right", "Right"}}, 10);
    EXPECT_TRUE(robot.asked("SurroundCharger direction=Right"));
    // Equal votes tell nothing: a walk, and another turn.
    search({{"Left", "Left"}, {"Right", "Right"}}, 10);
    EXPECT_TRUE(robot.notAsked("SurroundCharger"));
    EXPECT_TRUE(
        robot.inOrder("GoChargingFullRoundTurn | SearchForChargerRandomWalk | GoChargingFullRoundTurn"));
}

TEST_F(CirclingSearch, CirclesUntilTheLineIsAtItsSideAndTurnsToIt)
{
    robot.leaf("SurroundCharger").decides([this](const Moment& now) {
        if (now.tick_of_run == 30) {
            heard = {{"Left", "Middle"}};
            now.set("docking_small_loop_break", "true");
        }
        return RUNNING;
    });
    search({{"MiddleLeft", "CentralLeft"}}, 100);
    EXPECT_TRUE(
        robot.inOrder("Rotate angle_deg=-100 | SurroundCharger direction=Left | OpenCloseMove left_mm_s=70 "
                      "right_mm_s=70 | Rotate angle_deg=75"));
    // Beyond the line, at the far side's outer signal, it goes round at a distance.
    robot.leaf("SurroundCharger direction=Left").decides([this](const Moment& now) {
        heard = {{"Left", "Right"}};
        now.set("docking_small_loop_break", "true");
        return RUNNING;
    });
    search({{"MiddleLeft", "CentralLeft"}}, 20);
    EXPECT_TRUE(robot.asked("SurroundCharger direction=LeftIndirect"));
}

// --- the dock that is entered backwards ---------------------------------------------------------

struct BackwardsSearch : SearchingRobot
{
    BackwardsSearch()
    {
        hearAtTurn({{"MiddleLeft", "Middle"}, {"MiddleRight", "Middle"}});
        robot.leaf("FollowDockSignalFinal").succeeds();
        robot.leaf("DockFinal7001").runs();
        robot.leaf("IsCloseToObstacleLds").fails();
    }
};

TEST_F(BackwardsSearch, BacksInAsItStandsWhenItMeasuredNothingAndGoesOffWithoutContact)
{
    robot.leaf("FindChargerIcp").runs();
    robot.runUntil("SearchForCharger_CleanDock", "DockFinal7001", 200);
    EXPECT_NEAR(robot.framesOf("FindChargerIcp"), 50, 1);
    EXPECT_TRUE(robot.notAsked("Rotate angular_velocity_deg_s=30"));
    // Without contact the time is over in 17 s, and the robot goes 40 cm off.
    robot.tickUntil("OpenCloseMove left_mm_s=100", 1000);
    EXPECT_NEAR(robot.framesOf("DockFinal7001"), 850, 1);
    EXPECT_TRUE(robot.said("tolvar df"));
    robot.tickUntil("GoChargingFullRoundTurn", 400);
    EXPECT_TRUE(robot.said("tolvar go 40"));
    EXPECT_FALSE(robot.has("dock_final_back"));
}

TEST_F(BackwardsSearch, ThreeBumpsDuringTheTurnAtTheDockEndTheApproach)
{
    int backs = 0;
    robot.leaf("Rotate angle_deg=180").decides([this, &backs](const Moment&) {
        if (backs == 3)
            return SUCCESS;
        bump = "left";
        return RUNNING;
    });
    robot.tree("Back2cm").decides([this, &backs](const Moment& now) {
        ++backs;
        bump.clear();
        now.set("bump_dir", "None");
        return SUCCESS;
    });
    robot.runUntil("SearchForCharger_CleanDock", "OpenCloseMove left_mm_s=50", 200);
    EXPECT_EQ(backs, 3);
    EXPECT_TRUE(robot.said("tq bumped too much"));
    EXPECT_TRUE(robot.notAsked("DockFinal7001"));
    robot.tickUntil("GoChargingFullRoundTurn", 300);
    EXPECT_EQ(robot.framesOf("OpenCloseMove left_mm_s=50"), 100);
    EXPECT_FALSE(robot.has("bumped_when_rotate"));
}

TEST_F(BackwardsSearch, CorrectsByWhatItMeasured)
{
    robot.leaf("FindChargerIcp").decides([](const Moment& now) {
        now.set("dock_fix_mid_dis=12 dock_fix_mid_yaw=35 dock_fix_dir=true");
        return SUCCESS;
    });
    robot.runUntil("SearchForCharger_CleanDock", "DockFinal7001", 200);
    EXPECT_TRUE(
        robot.inOrder("Rotate angle_deg=35 | OpenCloseMove left_mm_s=50 right_mm_s=50 | Rotate angle_deg=-90 "
                      "| DockFinal7001"));
    EXPECT_EQ(robot.framesOf("OpenCloseMove left_mm_s=50"), 12);
}

TEST_F(BackwardsSearch, AReflectionIsLookedBehindAndTakenBackWhereNothingIsHeard)
{
    in_field = false;
    robot.leaf("FollowDockSignalFindCenter").decides([this](const Moment&) {
        bump = "middle";
        heard.clear();
        return RUNNING;
    });
    robot.leaf("IsGotReflectedSignal").decides([](const Moment& now) {
        now.set(now.port("target_angle"), 80.0);
        return SUCCESS;
    });
    robot.tree("ThroughObstacleNavigation").runs();
    robot.runUntil("SearchForCharger_CleanDock", "Rotate angular_velocity_deg_s=80", 200);
    EXPECT_EQ(robot.framesOf("GoBackwards"), 25);
    EXPECT_TRUE(
        robot.inOrder("Rotate angle_deg=40 angular_velocity_deg_s=60 | Rotate angle_deg=40 "
                      "angular_velocity_deg_s=35 | Rotate angle_deg=-80"));
    robot.tick(3);
    EXPECT_FALSE(robot.has("ignore_dock_filed_flag"));

    // The second half of the turn ends as soon as the dock itself is heard.
    robot.leaf("Rotate angular_velocity_deg_s=35").decides([this](const Moment& now) {
        if (now.tick_of_run == 5)
            heard = at_turn;
        return RUNNING;
    });
    robot.forget();
    bump.clear();
    robot.runUntil("SearchForCharger_CleanDock", "OpenCloseMove left_mm_s=50", 200);
    EXPECT_TRUE(robot.halted("Rotate angular_velocity_deg_s=35"));
    EXPECT_TRUE(robot.notAsked("Rotate angular_velocity_deg_s=80"));
}

// --- the search without a map -------------------------------------------------------------------

using BlindSearch = SearchingRobot;

TEST_F(BlindSearch, TurnsToTheMiddleLineThatItHearsAtItsSide)
{
    in_field = false;
    heard = {{"MiddleLeft", "Left"}, {"MiddleRight", "Left"}, {"Left", "Middle"}};
    robot.leaf("FollowDockSignalFindCenter").runs();
    robot.start("SearchForChargerWithoutMap");
    // The look around goes 45 degrees to each side.
    robot.tickUntil("OpenCloseMove left_mm_s=80 right_mm_s=-80");
    robot.set("current_odom_yaw_deg", -50.0);
    robot.tickUntil("OpenCloseMove left_mm_s=-80 right_mm_s=80");
    robot.set("current_odom_yaw_deg", 0.0);
    robot.tick(10);
    EXPECT_TRUE(robot.said("tq : l or r got middle"));
    EXPECT_TRUE(robot.askedNow("OpenCloseMove left_mm_s=-80 right_mm_s=80"));
    EXPECT_TRUE(robot.notAsked("FollowDockSignalFindCenter"));
    heard = {{"MiddleLeft", "Middle"}};
    robot.tick(3);
    EXPECT_TRUE(robot.asked("FollowDockSignalFindCenter")) << "it faces the line: no turn back";
    EXPECT_TRUE(robot.notAsked("OpenCloseMove left_mm_s=60 right_mm_s=60"));
}

TEST_F(BlindSearch, FiveBumpsAtTheDockInARowEndIt)
{
    heard = {{"MiddleLeft", "Middle"}, {"MiddleRight", "Middle"}};
    robot.leaf("FollowDockSignalFinal").decides([this](const Moment& now) {
        bump = now.tick_of_run == 3 ? "middle" : "";
        return RUNNING;
    });
    robot.leaf("OpenCloseMove left_mm_s=-70").decides([this](const Moment&) {
        bump.clear();
        return RUNNING;
    });
    EXPECT_EQ(robot.finish("SearchForChargerWithoutMap", 2000), FAILURE);
    EXPECT_TRUE(robot.started(5, "OpenCloseMove left_mm_s=-70"));
}

}  // namespace
}  // namespace vemra::test
