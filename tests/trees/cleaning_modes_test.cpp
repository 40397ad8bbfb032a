// What the four modes do alike, and what only a key of the app or of another mode brings about.
#include "cleaning_task.h"

namespace vemra::test {
namespace {

struct CleaningModes : CleaningTask
{
    static std::string underWay(const CleaningModeNames& mode)
    {
        return std::string(mode.prefix) + "cleaning";
    }
};

TEST_F(CleaningModes, BeginSilentlyWhereToldAndWithTheTuneOfTheScheduleWhereItBeganThem)
{
    for (const CleaningModeNames& mode : kCleaningModes) {
        robot.set("WorkStartMusic_shield", "true");
        ASSERT_TRUE(enter(mode, "init")) << mode.tree;
        EXPECT_THAT(music(), IsEmpty()) << mode.tree;
        EXPECT_FALSE(robot.has("WorkStartMusic_shield"));
    }
    robot.leaf("DoesExcuteOrderAutoMode").succeeds();
    for (const CleaningModeNames& mode : kCleaningModes) {
        ASSERT_TRUE(enter(mode, "init")) << mode.tree;
        EXPECT_THAT(music(), ElementsAre("9")) << mode.tree;
    }
}

TEST_F(CleaningModes, WetTheClothAsItWasSet)
{
    for (const CleaningModeNames& mode : kCleaningModes) {
        robot.erase("mop_mode");
        ASSERT_TRUE(enter(mode, "init"));
        EXPECT_TRUE(robot.notAsked("RobotMopGearSet")) << mode.tree;
        robot.set("mop_mode", "x");
        ASSERT_TRUE(enter(mode, "init"));
        EXPECT_TRUE(robot.asked("RobotMopGearSet value=34")) << mode.tree;
    }
}

TEST_F(CleaningModes, ThatAreToGoOnAfterTheChargeSaySoAtSixteenPercent)
{
    robot.leaf("DoesRobotBreakPointEnable").succeeds();
    for (const CleaningModeNames& mode : kCleaningModes) {
        robot.battery = 80;
        robot.set("-breakpoint_wash -clean_task_end");
        ASSERT_TRUE(enter(mode, underWay(mode)));
        robot.battery = 16;
        awaitRequest(5);
        EXPECT_EQ(music().back(), "14") << mode.tree;
        EXPECT_TRUE(robot.keysAre("breakpoint_wash clean_task_end=true"));
        EXPECT_TRUE(robot.said("clean task end 0..."));
    }
}

TEST_F(CleaningModes, GoBackAfterAWashToWhereTheyWereAndTakeTheLineUp)
{
    for (const CleaningModeNames& mode : kCleaningModes) {
        robot.set("use_mop=true wash_mop_mode=10 current_motion_type=Gong mop_dirty=100.0");
        ASSERT_TRUE(enter(mode, underWay(mode)));
        robot.tick(5);
        EXPECT_THAT(robot.requests(), IsEmpty()) << mode.tree;
        robot.set("mop_dirty", 101.0);
        awaitRequest(5);
        EXPECT_TRUE(robot.keysAre("mop_is_dirty=true wash_mop_break_point=7")) << mode.tree;
        EXPECT_EQ(robot.key("wash_mop_break_deg"), "45") << mode.tree;

        robot.set("mop_dirty", 0.0);
        ASSERT_TRUE(enter(mode, std::string(mode.prefix) + "lowpower"));
        EXPECT_TRUE(
            robot.inOrder("NavigateProcWithHistoryMapNoneStop | "
                          "Rotate angle_deg=45 false_relative_true_absolute=true | " +
                          std::string(mode.coverage)))
            << mode.tree;
        EXPECT_TRUE(robot.keysAre("-wash_mop_break_point -wash_mop_break_deg"));

        // Off a line there is no heading to turn to, and where no way leads back a line begins where the
        // robot is.
        robot.set("current_motion_type=Charge mop_dirty=101.0");
        robot.forgetRequests();
        awaitRequest(5);
        EXPECT_FALSE(robot.has("wash_mop_break_deg")) << mode.tree;
        robot.set("mop_dirty", 0.0);
        ASSERT_TRUE(enter(mode, std::string(mode.prefix) + "lowpower"));
        EXPECT_TRUE(robot.notAsked("Rotate angle_deg=45"));
        robot.set("wash_mop_break_point=9 gong_motion_type=x");
        robot.tree("NavigateProcWithHistoryMapNoneStop").fails();
        ASSERT_TRUE(enter(mode, std::string(mode.prefix) + "lowpower"));
        EXPECT_EQ(robot.key("navi_target_point"), "9");
        EXPECT_FALSE(robot.has("gong_motion_type")) << mode.tree;
        EXPECT_FALSE(robot.has("wash_mop_break_point"));
        robot.tree("NavigateProcWithHistoryMapNoneStop").succeeds();

        // A turn that fails there leaves no place behind for the next wash.
        robot.set("wash_mop_break_point=9 wash_mop_break_deg=30.0");
        robot.leaf("Rotate").fails();
        ASSERT_TRUE(enter(mode, std::string(mode.prefix) + "lowpower"));
        EXPECT_TRUE(robot.keysAre("-wash_mop_break_point -wash_mop_break_deg")) << mode.tree;
        robot.leaf("Rotate").succeeds();
    }
}

TEST_F(CleaningModes, StandByWhereTheirMapWasLost)
{
    for (const CleaningModeNames& mode : kCleaningModes) {
        robot.set("need_to_standby", "");
        EXPECT_FALSE(enter(mode, underWay(mode)));
        EXPECT_THAT(robot.requests(), ElementsAre("StandbyMode")) << mode.tree;
        EXPECT_EQ(music().back(), "112");
        EXPECT_TRUE(robot.keysAre("task_state=init -need_to_standby"));
    }
}

TEST_F(CleaningModes, KeepTheDockThatTheyKnow)
{
    robot.tree("CalcChargerPositionOrNot").succeeds();
    for (const CleaningModeNames& mode : kCleaningModes) {
        for (const bool known : {false, true}) {
            robot.set("-start_from_charger_pose -only_charger_in_map");
            if (known)
                robot.set("start_from_charger_pose", 5);
            robot.set("start_from_charger", "true");
            ASSERT_TRUE(enter(mode, underWay(mode)));
            EXPECT_EQ(robot.key("start_from_charger_pose"), known ? "5" : "7") << mode.tree;
            EXPECT_EQ(robot.has("only_charger_in_map"), !known) << mode.tree;
        }
    }
}

TEST_F(CleaningModes, OfASelectionThatWasNotAllReachedEndWithoutATune)
{
    robot.set("second_time_cleaning", "");
    for (const CleaningModeNames& mode : {kRooms, kZones, kPoint}) {
        robot.erase("have_trapped_type");
        robot.tree(mode.coverage).succeedsAfter(3);
        ASSERT_TRUE(enter(mode, "init"));
        robot.set("prompt_zone_not_reached", "true");
        awaitRequest();
        EXPECT_THAT(robot.requests(), ElementsAre("BackHomeMode")) << mode.tree;
        EXPECT_THAT(music(), SizeIs(1)) << mode.tree << ": none but that of the start";
        EXPECT_TRUE(robot.has("have_trapped_type"));
    }
}

TEST_F(CleaningModes, AfterAnErrorBeginAnewWhereLittleWasCleanedAndElseGoOn)
{
    for (const CleaningModeNames& mode : kCleaningModes)
        for (const bool little : {true, false}) {
            robot.leaf("CleanAreaTooSmall").gives(little);
            robot.set("restart_cleaning_from_err_mode", "");
            ASSERT_TRUE(enter(mode, underWay(mode)));
            EXPECT_EQ(bool(robot.asked("ResetMap")), little) << mode.tree;
            EXPECT_FALSE(robot.has("restart_cleaning_from_err_mode"));
        }
}

TEST_F(CleaningModes, OfAHomeThatIsAlsoMappedDoNotLookForTheirPlace)
{
    robot.set("AutoMappingClean", "");
    ASSERT_TRUE(enter(kHome, "init"));
    EXPECT_TRUE(robot.keysAre("mapping_no_reloc=true disable_reuse_reloc_once=true -AutoMappingClean"));
    ASSERT_TRUE(enter(kHome, "init"));
    EXPECT_FALSE(robot.has("mapping_no_reloc"));
}

TEST_F(CleaningModes, OfAScheduleGoByItsMapOfRooms)
{
    robot.set("is_ordering_task=true order_map");
    ASSERT_TRUE(enter(kRooms, underWay(kRooms)));
    EXPECT_EQ(robot.key("segment_map_info"), "order_map");
    robot.set("is_ordering_task=false Areas_Clean_Set_List_Ping=[1] -Areas_Clean_Set_List");
    ASSERT_TRUE(enter(kRooms, "init"));
    EXPECT_EQ(robot.key("segment_map_info"), "segment_map");
    EXPECT_EQ(robot.key("Areas_Clean_Set_List"), "[1]") << "of the app";
    EXPECT_FALSE(robot.has("Areas_Clean_Set_List_Ping"));
}

}  // namespace
}  // namespace vemra::test
