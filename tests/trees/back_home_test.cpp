#include "support/supervised_robot.h"

namespace vemra::test {
namespace {

/// The mode of the way home, with the way itself replaced.
struct BackHome : testing::Test
{
    BackHome() : robot({"BackHomeIndex"})
    {
        robot.obeys_requests = false;
        robot.mode = "BackHomeMode";
        robot.set("LastRobotMode=1 current_pose=7 current_coord=7 moved_during_pause=false");
        robot.set("search_charger_time=0 search_charger_timeout=60000 backhome_fail_times=0");
        robot.succeed("SlamIsResumable | IsPointInRectangle");
        robot.succeed(
            "AdvCleanComplete | SearchChargeEnding | AdvRestartCleaning | RestartCleaning | "
            "ReuseRestartCleaning | PreprocessDealsBeforeCleaning | ForceDelay | Back2cm");
        robot.tree("ActiveRelocalize_LdsInteractive").succeeds();
        robot.tree("GoCharging_lds").succeedsAfter(10);
    }

    NodeStatus goHome(const std::string& task_state)
    {
        robot.set("task_state", task_state);
        robot.forget();
        robot.forgetRequests();
        return robot.finish("BackHomeIndex", 400);
    }

    SupervisedRobot robot;
};

TEST_F(BackHome, OnTheDockTheTaskIsClosedByWhatItWas)
{
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"cleaning", "AdvCleanComplete", "charge"},
        {"map_cleaning", "AdvCleanComplete", "charge"},
        {"part_lowpower", "AdvCleanComplete", "part_lowpower"},
        {"search_charge", "SearchChargeEnding", "search_charge"},
        {"completing", "AdvCleanComplete", "complete"},
        {"init", "SearchChargeEnding", "search_charge"},
        {"lowpower", "", "lowpower"},
        {"area_lowpower", "", "area_lowpower"}};
    for (const auto& [before, closed_by, after] : rows) {
        goHome(before);
        EXPECT_EQ(robot.key("task_state"), after) << before;
        for (const std::string tree : {"AdvCleanComplete", "SearchChargeEnding"})
            EXPECT_EQ(bool(robot.asked(tree)), tree == closed_by) << before << ' ' << tree;
        EXPECT_THAT(robot.requests(), Contains("ChargingMode")) << before;
        EXPECT_EQ(robot.key("backhome_fail_times"), "0");
    }
}

TEST_F(BackHome, WithoutADockItStandsByAndTheTaskIsClosedByWhatItWas)
{
    robot.tree("GoCharging_lds").failsAfter(10);
    const std::tuple<const char*, const char*, int> rows[] = {{"search_charge", "SearchChargeEnding", 100},
                                                              {"search_charge", "", 60000},
                                                              {"completing", "AdvCleanComplete", 0},
                                                              {"lowpower", "AdvCleanComplete", 0}};
    int failed = 0;
    for (const auto& [before, closed_by, searched] : rows) {
        robot.tree("GoCharging_lds").decides([time = searched](const Moment& now) {
            now.set("search_charger_time", time);
            return FAILURE;
        });
        robot.set("search_charger_time", 0);
        goHome(before);
        for (const std::string tree : {"AdvCleanComplete", "SearchChargeEnding"})
            EXPECT_EQ(bool(robot.asked(tree)), tree == closed_by) << before << ' ' << tree;
        EXPECT_THAT(robot.requests(), Contains("StandbyMode")) << before;
        EXPECT_THAT(robot.music(), Contains("17"));
        EXPECT_EQ(robot.key("backhome_fail_times"), std::to_string(++failed));
    }
    EXPECT_TRUE(robot.has("clean_log_without_charger"));
}

TEST_F(BackHome, ABudgetThatIsSpentIsRenewedAndAnotherGoesOn)
{
    for (const auto& [before, then] : {std::pair{60000, "0"}, std::pair{59999, "59999"}}) {
        robot.set("search_charger_time", before);
        robot.set("task_state", "charge");
        robot.runUntil("BackHomeIndex", "GoCharging_lds", 400);
        EXPECT_EQ(robot.key("search_charger_time"), then);
    }
}

TEST_F(BackHome, AMapThatItCannotFindItsPlaceOnIsGivenUpAndTheSearchBeginsAnew)
{
    robot.set("moved_during_pause", "true");
    robot.tree("ActiveRelocalize_LdsInteractive").fails();
    goHome("cleaning");
    EXPECT_TRUE(
        robot.inOrder("ActiveRelocalize_LdsInteractive | AdvCleanComplete | RestartCleaning | GoCharging_lds "
                      "| SearchChargeEnding"));
    EXPECT_EQ(robot.key("moved_during_pause"), "false");
    EXPECT_THAT(robot.music(), Contains("64"));
    // Where it stands it trusts its map.
    goHome("cleaning");
    EXPECT_TRUE(robot.notAsked("ActiveRelocalize_LdsInteractive"));
}

TEST_F(BackHome, AStopDuringTheSearchEndsItWithoutAnotherMode)
{
    robot.tree("GoCharging_lds").runs();
    robot.set("task_state", "area_lowpower");
    robot.runUntil("BackHomeIndex", "GoCharging_lds", 400);
    robot.forgetRequests();
    robot.set("stop_clean_task_falg", "");
    EXPECT_EQ(robot.finish(5), SUCCESS);
    EXPECT_TRUE(robot.halted("GoCharging_lds"));
    EXPECT_FALSE(robot.has("stop_clean_task_falg"));
    EXPECT_THAT(robot.requests(), IsEmpty());
    EXPECT_TRUE(robot.notAsked("AdvCleanComplete"));
}

TEST_F(BackHome, KnockedOffAndBackOnTheContactsItChargesWithoutASearch)
{
    robot.set("kicked", "true");
    robot.on_charger = true;
    robot.set("task_state", "charge");
    robot.run("BackHomeIndex", 70);
    EXPECT_THAT(robot.requests(), Contains("ChargingMode"));
    EXPECT_TRUE(robot.notAsked("GoCharging_lds"));
}

}  // namespace
}  // namespace vemra::test
