#include "cleaning_task.h"

namespace vemra::test {
namespace {

// --- power and cloth ----------------------------------------------------------------------------

struct CleaningRun : CleaningTask
{
    /// Under way, with this much dirt in a cloth that is washed by the area.
    void wipe(const CleaningModeNames& mode = kHome)
    {
        robot.set("use_mop=true wash_mop_mode=10");
        ASSERT_TRUE(enter(mode, std::string(mode.prefix) + "cleaning"));
    }
};

TEST_F(CleaningRun, IsBrokenOffAtSixteenPercentAndGoesOnFromWhereItWas)
{
    for (const CleaningModeNames& mode : kCleaningModes) {
        const std::string prefix = mode.prefix;
        robot.battery = 17;
        robot.set("current_coord", 8);
        ASSERT_TRUE(enter(mode, "init"));
        robot.tick(5);
        EXPECT_THAT(robot.requests(), IsEmpty()) << "at 17 percent";
        robot.battery = 16;
        awaitRequest(5);
        EXPECT_THAT(robot.requests(), ElementsAre("BackHomeMode"));
        EXPECT_TRUE(robot.halted(mode.coverage));
        EXPECT_EQ(robot.key("task_state"), prefix + "lowpower");
        EXPECT_EQ(robot.key("mode_dirty_record"), prefix + "lowpower");
        EXPECT_EQ(music().back(), "48");
        EXPECT_EQ(robot.has("lowpower_coord_save"), prefix == "area_" || prefix == "point_") << prefix;
        robot.erase("lowpower_coord_save");

        robot.battery = 80;
        ASSERT_TRUE(enter(mode, prefix + "lowpower"));
        EXPECT_EQ(closedAndBegun(), "");
        EXPECT_EQ(robot.key("task_state"), prefix + "cleaning");
    }
    EXPECT_FALSE(robot.has("clean_task_end"));
}

TEST_F(CleaningRun, OnItsWayToABreakPointKeepsThat)
{
    robot.set("use_mop=true wash_mop_mode=10 wash_mop_break_point=7 current_pose=8 mop_dirty=0.0");
    robot.tree("NavigateProcWithHistoryMapNoneStop").runs();
    robot.mode = kHome.mode;
    robot.runUntil(kHome.tree, "NavigateProcWithHistoryMapNoneStop");
    robot.set("mop_dirty", 101.0);
    robot.forgetRequests();
    awaitRequest(5);
    EXPECT_EQ(robot.key("wash_mop_break_point"), "7");
}

TEST_F(CleaningRun, KeepsABreakPointOnlyWhereTheClothIsWashedUnderWay)
{
    for (const auto& [mode, wash_mode, on_map, kept] :
         {std::tuple<const CleaningModeNames&, int, int, bool>{kHome, 10, 1, true},
          {kHome, 0, 1, false},
          {kHome, 0, 4, true},
          {kRooms, 0, 4, false},
          {kZones, 10, 1, true}}) {
        robot.set("-wash_mop_break_point mop_dirty=0.0");
        wipe(mode);
        robot.set("wash_mop_mode", wash_mode);
        robot.set("reuse_cleaning", on_map);
        robot.set("mop_dirty", 101.0);
        awaitRequest(5);
        EXPECT_EQ(robot.has("wash_mop_break_point"), kept) << mode.tree << ' ' << wash_mode << ' ' << on_map;
    }
}

// --- one home, two passes -----------------------------------------------------------------------

TEST_F(CleaningRun, OfTenMinutesOrLessIsDoneTwice)
{
    robot.leaf("PresetBlackboard").writes("clean_time_for_app", 0);
    for (const auto& [seconds, second_already, passes] :
         {std::tuple{600, false, 2}, {601, false, 1}, {100, true, 1}}) {
        robot.set(second_already ? "second_time_cleaning" : "-second_time_cleaning");
        robot.set("follow_wall_frames_consumption", 7000);
        robot.tree(kHome.coverage).decides([time = seconds](const Moment& now) {
            now.set("clean_time_for_app", time);
            return SUCCESS;
        });
        enter(kHome, "cleaning");
        EXPECT_TRUE(robot.started(passes, kHome.coverage)) << seconds;
        EXPECT_EQ(robot.key("clean_time_for_app"), std::to_string(seconds));
        EXPECT_EQ(bool(robot.asked("ResetMap")), passes == 2);
        EXPECT_EQ(robot.key("follow_wall_frames_consumption"), passes == 2 ? "1000" : "7000");
        EXPECT_FALSE(robot.has("reset_map_remain_submap"));
        EXPECT_THAT(robot.requests(), ElementsAre("BackHomeMode"));
    }
}

// --- the end ------------------------------------------------------------------------------------

TEST_F(CleaningRun, ThatIsDoneGoesHomeWithMusic)
{
    robot.set("second_time_cleaning", "");
    for (const CleaningModeNames& mode : kCleaningModes) {
        robot.tree(mode.coverage).succeedsAfter(3);
        robot.set("cleanmode_restore", "true");
        ASSERT_TRUE(enter(mode, "init"));
        awaitRequest();
        EXPECT_THAT(robot.requests(), ElementsAre("BackHomeMode"));
        EXPECT_TRUE(robot.keysAre("task_state=completing clean_complete"));
        EXPECT_EQ(music().back(), "12");
        robot.tick();
        EXPECT_TRUE(robot.asked("RestoreCleanMode"));
        EXPECT_FALSE(robot.has("cleanmode_restore"));
    }
}

TEST_F(CleaningRun, ThatGivesUpReportsATrapOnceAndGoesHomeWithItsTaskOpen)
{
    for (const CleaningModeNames& mode : kCleaningModes) {
        for (const auto& [shut_in, told, other] : {std::tuple{true, "close_door_trapped", "automode_trapped"},
                                                   {false, "automode_trapped", "close_door_trapped"}}) {
            robot.erase(told);
            robot.erase(other);
            robot.tree(mode.coverage).failsAfter(3);
            robot.leaf("AreaCheck").gives(shut_in);
            robot.set("cleanmode_restore=true");
            ASSERT_TRUE(enter(mode, "init"));
            awaitRequest();
            EXPECT_THAT(robot.requests(), ElementsAre("BackHomeMode"));
            EXPECT_TRUE(robot.has(told)) << mode.tree;
            EXPECT_FALSE(robot.has(other)) << mode.tree;
            EXPECT_EQ(robot.key("task_state"), std::string(mode.prefix) + "cleaning");
            EXPECT_THAT(music(), SizeIs(1)) << "none but that of the start";
            robot.tick();
            EXPECT_TRUE(robot.asked("RestoreCleanMode")) << mode.tree;
            EXPECT_TRUE(robot.keysAre("have_trapped_type -cleanmode_restore"));
        }
    }
    // What is known to shut the robot in is not told again.
    robot.erase("automode_trapped");
    ASSERT_TRUE(enter(kHome, "init"));
    robot.set("have_trapped_type", "");
    awaitRequest();
    EXPECT_FALSE(robot.has("automode_trapped"));
}

// --- the spot -----------------------------------------------------------------------------------

struct Spot : testing::Test
{
    Spot() : robot({"PartCleanModeIndex"})
    {
        robot.obeys_requests = false;
        robot.mode = "PartCleanMode";
        robot.set("task_state=init current_coord=7");
        robot.succeed(
            "AdvCleanComplete | AdvRestartCleaning | AdvPreAutoOnCharger | ForceDelay | "
            "PreprocessDealsBeforeCleaning | EscapeCoat | Back2cm | OtherModePreset");
        robot.tree("NeighborCleaningMode").succeedsAfter(10);
    }

    NodeStatus clean()
    {
        robot.forgetRequests();
        return robot.finish("PartCleanModeIndex", 800);
    }

    SupervisedRobot robot;
};

TEST_F(Spot, ThatShutsTheRobotInIsReported)
{
    robot.tree("NeighborCleaningMode").fails();
    clean();
    EXPECT_TRUE(robot.has("automode_trapped"));
    EXPECT_TRUE(robot.notAsked("AdvCleanComplete | RobotMopGearSet"));
    EXPECT_THAT(robot.requests(), ElementsAre("StandbyMode"));

    // In a small place it is a door that closed.
    robot.set("-automode_trapped -have_trapped_type");
    robot.leaf("AreaCheck").succeeds();
    robot.set("mop_mode", "x");
    clean();
    EXPECT_TRUE(robot.keysAre("close_door_trapped -automode_trapped"));
    EXPECT_TRUE(robot.asked("RobotMopGearSet value=34"));
}

TEST_F(Spot, IsLeftBelowFifteenPercentForGood)
{
    robot.tree("NeighborCleaningMode").runs();
    robot.battery = 15;
    robot.runUntil("PartCleanModeIndex", "NeighborCleaningMode");
    robot.battery = 14;
    robot.tick(3);
    EXPECT_TRUE(robot.halted("NeighborCleaningMode"));
    EXPECT_THAT(robot.requests(), ElementsAre("BackHomeMode"));
    EXPECT_EQ(robot.key("task_state"), "part_lowpower");
    EXPECT_EQ(robot.music().back(), "48");
}

}  // namespace
}  // namespace vemra::test
