#include <map>
#include <utility>

#include "support/scripted_robot.h"

namespace vemra::test {
namespace {

/// A scripted robot near its dock: a test says what its receivers hear and whether it touches something.
struct SearchingRobot : RobotOnALine
{
    SearchingRobot()
    {
        robot.set("current_pose=0 current_coord=0 current_yaw_deg=0.0 current_odom_yaw_deg=0.0");
        robot.succeed("Escape | EscapeCoat | Back2cm");
        robot.tree("GoChargingFullRoundTurn").decides([this](const Moment& now) {
            heard = at_turn;
            now.set("marker_signal_type=Middle marker_dir=0.0");
            return SUCCESS;
        });
        robot.tree("SearchForChargerRandomWalk").succeeds();
        robot.leaf("InDockField").follows(in_field);
        robot.succeed("NotTrapped | InMiddleDockOnceInAWhile");
        robot.leaf("FollowDockSignalFinal").runs();
        robot.textsAsTheyStand();
        robot.leaf("ChargerReceiverPickedUpSignal").decides([this](const Moment& now) {
            return hears(now.port("receiver"), now.port("signal")) ? SUCCESS : FAILURE;
        });
        robot.leaf("SensorCheckBumped").decides([this](const Moment& now) {
            if (const std::string key = now.port("out_bump_dir"); !key.empty())
                now.set(key, bump.empty() ? "None" : bump);
            return bump.empty() ? FAILURE : SUCCESS;
        });
        // Backing off frees the bumper.
        robot.leaf("GoBackwards").decides([this](const Moment& now) {
            bump.clear();
            now.set("current_pose", now.keys.get<int>("current_pose") + 10);
            return RUNNING;
        });
    }

    /// Both are what a marking turn finds when it ends.
    void hearAtTurn(const std::map<std::string, std::string>& signals) { heard = at_turn = signals; }

    [[nodiscard]] bool hears(const std::string& receiver, const std::string& signal) const
    {
        if (receiver == "Any") {
            for (const auto& [at, what] : heard)
                if (signal == "Any" || what == signal)
                    return true;
            return heard.empty() && signal == "None";
        }
        const auto found = heard.find(receiver);
        return found == heard.end() ? signal == "None" : signal == "Any" || found->second == signal;
    }

    std::map<std::string, std::string> heard;  ///< by receiver; silent ones are left out
    std::map<std::string, std::string> at_turn;
    std::string bump;
    bool in_field = true;
};

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

// --- the whole way home ----------------------------------------------------------------------------

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
