#include <utility>

#include "trees/searching_robot.h"

namespace vemra::test {
namespace {

/// The search of the live dock.
struct DockSearch : SearchingRobot
{
    /// As hearing it stands, till the final approach or the first move.
    void search(int frames)
    {
        robot.forget();
        robot.run("SearchForCharger_lds", frames);
    }
};

TEST_F(DockSearch, StepsOntoTheMiddleLineByWhatTheFrontReceiversHear)
{
    const auto passing = [](const std::string& there, const std::string& back) {
        return "Rotate angle_deg=" + there +
               " | OpenCloseMove left_mm_s=100 right_mm_s=100 | Rotate angle_deg=" + back +
               " | FollowDockSignalFinal";
    };
    const std::vector<std::pair<std::string, std::string>> on_line{{"Middle", "Middle"},
                                                                   {"CentralLeft", "CentralRight"}};
    for (const auto& [ml, mr] : on_line) {
        hearAtTurn({{"MiddleLeft", ml}, {"MiddleRight", mr}});
        search(5);
        EXPECT_TRUE(robot.asked("FollowDockSignalFinal")) << ml << ' ' << mr;
        EXPECT_TRUE(robot.notAsked("Rotate angle_deg=90"));
    }
    const std::vector<std::map<std::string, std::string>> line_on_right{
        {{"MiddleLeft", "Left"}, {"MiddleRight", "Middle"}},
        {{"MiddleLeft", "CentralLeft"}, {"MiddleRight", "Middle"}},
        {{"MiddleLeft", "Middle"}}};
    for (const auto& signals : line_on_right) {
        hearAtTurn(signals);
        search(40);
        EXPECT_TRUE(robot.inOrder(passing("-90", "90")));
        EXPECT_EQ(robot.framesOf("OpenCloseMove left_mm_s=100"), 20);
    }
    const std::vector<std::map<std::string, std::string>> line_on_left{
        {{"MiddleLeft", "Middle"}, {"MiddleRight", "CentralRight"}},
        {{"MiddleLeft", "Middle"}, {"MiddleRight", "Right"}},
        {{"MiddleRight", "Middle"}}};
    for (const auto& signals : line_on_left) {
        hearAtTurn(signals);
        search(40);
        EXPECT_TRUE(robot.inOrder(passing("90", "-90")));
    }
}

TEST_F(DockSearch, ArcsAcrossTheFieldFromTheSideThatItHearsAndTheRightIsNoMirrorImage)
{
    hearAtTurn({{"MiddleLeft", "Left"}, {"MiddleRight", "CentralLeft"}});
    search(30);
    EXPECT_TRUE(robot.said("看到左侧信号"));
    EXPECT_TRUE(robot.inOrder("Rotate angle_deg=-95 | OpenCloseMove left_mm_s=100 right_mm_s=140"));
    hearAtTurn({{"MiddleRight", "Right"}});
    search(30);
    EXPECT_TRUE(robot.said("看到右侧信号"));
    EXPECT_TRUE(robot.inOrder("Rotate angle_deg=90 | OpenCloseMove left_mm_s=90 right_mm_s=60"));
    // The right receiver hears that the line is passed: a short arc and a quarter turn.
    heard["Right"] = "Middle";
    at_turn = heard;
    search(80);
    EXPECT_TRUE(robot.inOrder(
        "OpenCloseMove left_mm_s=90 right_mm_s=70 | Rotate angle_deg=-90 | FollowDockSignalFinal"));
}

TEST_F(DockSearch, GivesUpAfterFiveMarkingTurns)
{
    hearAtTurn({{"MiddleLeft", "Middle"}, {"MiddleRight", "Middle"}});
    robot.leaf("InMiddleDockOnceInAWhile").decides([this](const Moment&) {
        heard.clear();
        return FAILURE;
    });
    EXPECT_EQ(robot.finish("SearchForCharger_lds", 200), FAILURE);
    EXPECT_TRUE(robot.started(5, "GoChargingFullRoundTurn"));
    EXPECT_TRUE(robot.started(5, "SearchForChargerRandomWalk")) << "it hears nothing at the sector";
}

// Each run into the dock is backed out of and weighed.
TEST_F(DockSearch, BacksOutFiveTimesAndThriceWhereItLeavesTheField)
{
    hearAtTurn({{"MiddleLeft", "Middle"}, {"MiddleRight", "Middle"}});
    robot.leaf("FollowDockSignalFinal").decides([this](const Moment& now) {
        bump = now.tick_of_run == 3 ? "middle" : "";
        return RUNNING;
    });
    robot.runUntil("SearchForCharger_lds", "SearchForChargerRandomWalk", 3000);
    EXPECT_TRUE(robot.started(5, "WeighDockSignalFirstStep | WeighDockSignalSecondStep"));
    EXPECT_EQ(robot.key("docking_try_times"), "0");
    EXPECT_EQ(robot.key("final_dock_times"), "0") << "set back with each approach: it ends nothing";
    robot.tickUntil("GoChargingFullRoundTurn");

    robot.leaf("WeighDockSignalFirstStep").decides([this](const Moment&) {
        in_field = false;
        return SUCCESS;
    });
    robot.forget();
    in_field = true;
    robot.runUntil("SearchForCharger_lds", "SearchForChargerRandomWalk", 3000);
    EXPECT_TRUE(robot.started(3, "WeighDockSignalFirstStep"));
    EXPECT_TRUE(robot.notAsked("WeighDockSignalSecondStep"));
}

// Each counter ends what it counts where its test says: "above 4" lets five pass.
TEST_F(DockSearch, ATrappedCycleCostsNoMarkingTurnAndTheFifthIsWalkedOutOf)
{
    hearAtTurn({{"MiddleLeft", "Middle"}, {"MiddleRight", "Middle"}});
    bool turned = false;
    robot.tree("GoChargingFullRoundTurn").decides([&](const Moment& now) {
        turned = true;
        now.set("marker_signal_type=Middle marker_dir=0.0");
        return SUCCESS;
    });
    robot.tree("Escape").decides([&](const Moment&) { return turned ? FAILURE : SUCCESS; });
    // Asked before the turn, and after it by the cycle that could not go on.
    robot.leaf("NotTrapped").decides([&](const Moment&) {
        return std::exchange(turned, false) ? FAILURE : SUCCESS;
    });
    robot.start("SearchForCharger_lds");
    for (int walks = 1; walks <= 2; ++walks) {
        robot.tickUntil("SearchForChargerRandomWalk", 200);
        EXPECT_TRUE(robot.started(5 * walks, "GoChargingFullRoundTurn"));
        EXPECT_TRUE(robot.keysAre("full_round_turn_times=0 charging_escape_times=0"));
        robot.tick();
    }
}

TEST_F(DockSearch, ASectorIsArcedThroughFiveTimes)
{
    hearAtTurn({{"MiddleLeft", "Left"}, {"MiddleRight", "CentralLeft"}});
    robot.runUntil("SearchForCharger_lds", "GoChargingFullRoundTurn", 200);
    robot.tickUntil("OpenCloseMove", 200);
    robot.tickUntil("GoChargingFullRoundTurn", 4000);
    EXPECT_TRUE(robot.started(6, "Rotate angle_deg=-95")) << "the sixth is the next cycle's first";
}

/// The whole way home with the search replaced.
struct WayHome : SearchingRobot
{
    WayHome()
    {
        robot.leaf("GridmapLimitCheck").succeeds();
        robot.fail("AwesomeSearch | FindNearestInTrajectory");
        robot.leaf("GotCharger").follows(contact);
        robot.tree("Explore").fails();
        robot.set("search_charger_time=0 search_charger_timeout=60000");
    }

    bool contact = false;
};

TEST_F(WayHome, AContactThatBreaksWithinTheDelayLetsTheSearchGoOn)
{
    robot.tree("SearchForCharger_lds").runs();
    robot.run("GoCharging_lds", 20);
    contact = true;
    EXPECT_EQ(robot.tick(30), RUNNING);
    contact = false;
    EXPECT_EQ(robot.tick(20), RUNNING);
    EXPECT_TRUE(robot.askedNow("SearchForCharger_lds"));
    EXPECT_TRUE(robot.started(1, "SearchForCharger_lds")) << "it stood where it was";
    contact = true;
    EXPECT_EQ(robot.finish(60), SUCCESS);
}

TEST_F(WayHome, ASecondPlaceOfHistoryStaysEligibleAfterItFailed)
{
    for (const std::string camera : {"", "by camera"}) {
        robot.set("first_potential_charger=100 second_potential_charger=200 -first_potential_charger_failed");
        robot.succeed("ChargerReceiverPickedUpSignal | ReadyToSearchForCharger");
        robot.fail("SearchForCharger_lds | SearchForCharger_vslam");
        EXPECT_EQ(robot.finish(camera.empty() ? "GoCharging_lds" : "GoCharging_vslam", 300), FAILURE);
        EXPECT_TRUE(robot.has("first_potential_charger_failed"));
        EXPECT_EQ(robot.has("second_potential_charger_failed"), !camera.empty()) << camera;
    }
}

TEST_F(WayHome, ARobotThatWasKnockedOffItsDockDoesNotTrustTheStoredOne)
{
    robot.leaf("GetChargerFromReuseInfo").succeeds().fills("out_point_mm", 5000);
    robot.tree("BackToMarkedCharger_WithoutSearch").runs();
    robot.set("only_charger_in_map=0 kicked_dock");
    robot.run("GoCharging_lds", 10);
    EXPECT_TRUE(robot.asked("BackToMarkedCharger_WithoutSearch"));
    EXPECT_TRUE(robot.notAsked("GetChargerFromReuseInfo"));
}

}  // namespace
}  // namespace vemra::test
