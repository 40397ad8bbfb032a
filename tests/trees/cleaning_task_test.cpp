#include "cleaning_task.h"

namespace vemra::test {
namespace {

constexpr const char* kHalfTurn = "Rotate angle_deg=180";

// --- which task this is -------------------------------------------------------------------------

TEST_F(CleaningTask, OwnStagesGoOnAndThoseOfOtherTasksAreClosedAndBegunAnew)
{
    for (const CleaningModeNames& mode : kCleaningModes) {
        const std::string own = mode.prefix;
        for (const CleaningModeNames& other : kCleaningModes) {
            const std::string closed = &other == &mode || own == other.prefix ? "" : "CA";
            for (const char* stage : {"cleaning", "lowpower"}) {
                ASSERT_TRUE(enter(mode, std::string(other.prefix) + stage)) << mode.tree;
                EXPECT_EQ(closedAndBegun(), closed) << mode.tree << ' ' << other.prefix << stage;
            }
        }
        ASSERT_TRUE(enter(mode, own + "lowpower_pause"));
        EXPECT_EQ(closedAndBegun(), "") << mode.tree;
        for (const auto& [stage, steps] : {std::pair{"init", "A"},
                                           {"search_charge", "SA"},
                                           {"completing", "CA"},
                                           {"charge", "CA"},
                                           {"part_cleaning", "CA"},
                                           {"never heard of", ""}}) {
            ASSERT_TRUE(enter(mode, stage)) << mode.tree;
            EXPECT_EQ(closedAndBegun(), steps) << mode.tree << ' ' << stage;
            EXPECT_EQ(robot.key("task_state"), own + "cleaning") << stage;
            EXPECT_FALSE(robot.has("no_restart_flag"));
        }
    }
    ASSERT_TRUE(enter(kHome, "map_cleaning"));
    EXPECT_EQ(closedAndBegun(), "SA");
    ASSERT_TRUE(enter(kRooms, "map_cleaning"));
    EXPECT_EQ(closedAndBegun(), "");
}

TEST_F(CleaningTask, ThatHasBegunItsMapOnceDoesNotBeginItAgainUnlessAnotherModeWasLast)
{
    const std::tuple<const CleaningModeNames&, bool, const char*, const char*> rows[] = {
        {kHome, false, "AutoCleanMode", "A"},
        {kHome, true, "AutoCleanMode", ""},
        {kHome, true, "SelectAreaCleanMode", "A"},
        {kRooms, true, "SelectAreaCleanMode", ""},
        {kRooms, true, "AutoCleanMode", "A"},
        {kPoint, true, "SelectPointCleanMode", ""},
        {kPoint, true, "AutoCleanMode", "A"},
        // Drawn rectangles go by the kind of task, which has been noted by then.
        {kZones, true, "AutoCleanMode", ""}};
    for (const auto& [mode, begun, last, steps] : rows) {
        if (begun)
            robot.set("no_restart_flag", "true");
        robot.set("last_clean_mode", last);
        ASSERT_TRUE(enter(mode, "precleaning"));
        EXPECT_EQ(closedAndBegun(), steps) << mode.tree << ' ' << last;
        EXPECT_EQ(robot.key("last_clean_mode"), mode.mode);
    }
}

TEST_F(CleaningTask, NewInputOfTheAppBeginsTheTaskAnew)
{
    for (const auto& [mode, flag, stage] : {std::tuple{kZones, "reset_zone_cleaning", "zone_cleaning"},
                                            {kPoint, "reset_point_cleaning", "point_cleaning"}}) {
        robot.set(flag, "");
        ASSERT_TRUE(enter(mode, stage));
        EXPECT_EQ(closedAndBegun(), "CA") << flag;
        EXPECT_FALSE(robot.has(flag));
    }
}

TEST_F(CleaningTask, AModeThatIsNotReadyEndsBeforeAnythingIsDone)
{
    robot.leaf("NeedInitialAutoMode").fails();
    EXPECT_FALSE(enter(kHome, "init"));
    EXPECT_EQ(robot.key("task_state"), "precleaning");
    EXPECT_TRUE(robot.notAsked("SetCleanSystem"));
    EXPECT_FALSE(enter(kZones, "init"));
    EXPECT_EQ(robot.key("task_state"), "init");
}

TEST_F(CleaningTask, RoomsNeedAStoredMapThatHasSome)
{
    robot.leaf("IsReuseInfoExist").fails();
    EXPECT_FALSE(enter(kRooms, "init"));
    EXPECT_THAT(robot.requests(), ElementsAre("StandbyMode"));
    EXPECT_TRUE(robot.notAsked("SetSelectAreaCleanList"));
    robot.leaf("IsReuseInfoExist").succeeds();
    robot.erase("segment_map");
    EXPECT_FALSE(enter(kRooms, "init"));
    EXPECT_THAT(robot.requests(), ElementsAre("StandbyMode"));
}

// --- what is heard ------------------------------------------------------------------------------

TEST_F(CleaningTask, TellsByMusicWhetherItBeginsOrGoesOn)
{
    for (const auto& [mode, begins] : {std::tuple<const CleaningModeNames&, const char*>{kHome, "7"},
                                       {kRooms, "56"},
                                       {kZones, "57"},
                                       {kPoint, "76"}}) {
        const std::string prefix = mode.prefix;
        for (const char* stage : {"init", "completing"}) {
            enter(mode, stage);
            EXPECT_THAT(music(), ElementsAre(begins)) << mode.tree;
        }
        enter(mode, prefix + "cleaning");
        EXPECT_THAT(music(), ElementsAre("58"));
        for (const char* stage : {"lowpower", "lowpower_pause"}) {
            robot.erase("break_point_start_clean");
            enter(mode, prefix + stage);
            EXPECT_THAT(music(), ElementsAre("10")) << prefix << stage;
            EXPECT_TRUE(robot.has("break_point_start_clean"));
        }
        // Back from a wash.
        robot.set("mop_is_dirty", "true");
        enter(mode, prefix + "lowpower");
        EXPECT_THAT(music(), IsEmpty());
        EXPECT_FALSE(robot.has("mop_is_dirty"));
    }
    robot.leaf("DoesRobotUsingWaterBox").succeeds();
    enter(kHome, "init");
    EXPECT_THAT(music(), ElementsAre("61"));
}

TEST_F(CleaningTask, ThatAScheduleBeganClosesTheOpenTaskUnlessItIsOne)
{
    robot.leaf("DoesExcuteOrderAutoMode").succeeds();
    for (const char* tree : {"SearchChargeEnding", "AdvCleanComplete"})
        robot.tree(tree).writes("task_state", std::string("init"));
    for (const auto& [stage, steps] : {std::tuple<const char*, const char*>{"init", "A"},
                                       {"search_charge", "SA"},
                                       {"zone_cleaning", "CA"},
                                       {"area_lowpower", "CA"},
                                       {"cleaning", ""},
                                       {"lowpower", ""}}) {
        ASSERT_TRUE(enter(kHome, stage));
        EXPECT_THAT(music(), ElementsAre("9")) << stage;
        EXPECT_EQ(closedAndBegun(), steps) << stage;
        EXPECT_EQ(robot.key("start_clean_method_app"), "7");
    }

    // Rooms whose task is on its way home are taken up again.
    for (const auto& [last, steps] : {std::pair{"SelectAreaCleanMode", ""}, {"AutoCleanMode", "CA"}}) {
        robot.set("last_clean_mode", last);
        ASSERT_TRUE(enter(kRooms, "completing"));
        EXPECT_EQ(closedAndBegun(), steps) << last;
        EXPECT_THAT(music(), ElementsAre("9"));
        EXPECT_EQ(robot.key("start_clean_method_app"), "6");
    }
}

// --- the map of a task that goes on -------------------------------------------------------------

TEST_F(CleaningTask, LooksForItsPlaceWhereItWasMovedOrLostItsMap)
{
    for (const CleaningModeNames& mode : kCleaningModes) {
        robot.set("moved_during_pause", "true");
        ASSERT_TRUE(enter(mode, std::string(mode.prefix) + "cleaning"));
        EXPECT_THAT(music(), ElementsAre("58", "30", "54"));
        EXPECT_EQ(closedAndBegun(), "");
        EXPECT_TRUE(robot.notAsked(kHalfTurn));
        EXPECT_EQ(robot.key("moved_during_pause"), "false");
    }
    robot.leaf("SlamIsResumable").fails();
    ASSERT_TRUE(enter(kHome, "cleaning"));
    EXPECT_TRUE(robot.asked("ActiveRelocalize_LdsInteractive"));
}

TEST_F(CleaningTask, OfTheWholeHomeThatIsLostIsBegunAnew)
{
    robot.set("moved_during_pause", "true");
    robot.leaf("IsPointInRectangle").fails();  // a place beside the map is none
    ASSERT_TRUE(enter(kHome, "cleaning"));
    EXPECT_THAT(music(), ElementsAre("58", "30", "31"));
    EXPECT_EQ(closedAndBegun(), "CN");
    EXPECT_TRUE(robot.asked(kHalfTurn)) << "the first turn of a new map";

    robot.tree("ActiveRelocalize_LdsInteractive").fails();
    robot.set("moved_during_pause=true clean_relo_fail_reuse_relo_succ=true");
    ASSERT_TRUE(enter(kHome, "cleaning"));
    EXPECT_THAT(music(), ElementsAre("58", "30", "54"));
    EXPECT_EQ(closedAndBegun(), "CR");
    EXPECT_FALSE(robot.has("clean_relo_fail_reuse_relo_succ"));
}

TEST_F(CleaningTask, OfASelectionThatIsLostBecomesASilentCleanOfTheWholeHome)
{
    robot.tree("ActiveRelocalize_LdsInteractive").fails();
    for (const CleaningModeNames& mode : {kRooms, kZones, kPoint}) {
        robot.set("moved_during_pause", "true");
        EXPECT_FALSE(enter(mode, std::string(mode.prefix) + "cleaning"));
        EXPECT_THAT(robot.requests(), ElementsAre("AutoCleanMode"));
        EXPECT_THAT(music(), ElementsAre("58", "30", "31"));
        EXPECT_EQ(closedAndBegun(), "C");
        EXPECT_TRUE(robot.keysAre("task_state=init just_damode_reuse_failed=true"));

        ASSERT_TRUE(enter(kHome, "init"));
        EXPECT_THAT(music(), IsEmpty());
        EXPECT_EQ(closedAndBegun(), "A");
    }
}

// --- the start of the run -----------------------------------------------------------------------

TEST_F(CleaningTask, NotesTheDockFromWhereItBeganAndTurnsOnceUnlessItHas)
{
    robot.set("start_from_charger=true start_from_charger_yaw_deg=12.0");
    robot.leaf("DoesInitialIMUPoseDriftEnable").succeeds();
    ASSERT_TRUE(enter(kHome, "init"));
    EXPECT_TRUE(robot.asked("CalcChargerPosition"));
    EXPECT_TRUE(robot.asked("PlainPoseMmSetYaw key=start_from_charger_pose yaw_deg=12"));
    EXPECT_TRUE(robot.keysAre("only_charger_in_map=7 -start_from_charger_yaw_deg"));
    EXPECT_TRUE(robot.asked(kHalfTurn));
    EXPECT_TRUE(robot.asked("GetIMUPose storage=IMU_POSE_TurnEnd"));
    EXPECT_TRUE(robot.has("IMUInitDriftEvent"));

    // A pose that is known stays.
    robot.set("current_pose=9 skip_first_rotate");
    robot.tree("AdvRestartCleaning").writes("skip_first_rotate", std::string());
    ASSERT_TRUE(enter(kHome, "init"));
    EXPECT_EQ(robot.key("start_from_charger_pose"), "7");
    EXPECT_TRUE(robot.notAsked(kHalfTurn));
}

TEST_F(CleaningTask, TakesNewInputOfTheAppAtItsStartAndNotUnderWay)
{
    robot.set("is_ordering_task", false);
    for (const auto& [mode, input, taken] : {std::tuple<const CleaningModeNames&, const char*, const char*>{
                                                 kRooms, "Areas_Clean_Set_List_Ping", "Areas_Clean_Set_List"},
                                             {kZones, "Draw_Area_Set_Ping", "Draw_Area_Set"},
                                             {kPoint, "Select_Point_Set_Ping", "Select_Point_Set"}}) {
        robot.set(input, "first");
        ASSERT_TRUE(enter(mode, "init"));
        EXPECT_EQ(robot.key(taken), "first");
        EXPECT_FALSE(robot.has(input));
        robot.set(input, "second");
        robot.tick(20);
        EXPECT_EQ(robot.key(taken), "first");
        EXPECT_TRUE(robot.has(input));
    }
}

TEST_F(CleaningTask, AreasThatCannotBeSetAreNotCleaned)
{
    for (const auto& [mode, leaf] :
         {std::pair{kPoint, "SetPointCleaningArea"}, {kZones, "SetDrawAreaSegmentMap"}}) {
        robot.leaf(leaf).fails();
        EXPECT_FALSE(enter(mode, "init"));
        EXPECT_THAT(robot.requests(), ElementsAre("StandbyMode")) << mode.tree;
        EXPECT_TRUE(robot.notAsked(mode.coverage));
        EXPECT_EQ(robot.key("task_state"), std::string(mode.prefix) + "cleaning") << "not done";
        EXPECT_THAT(music(), Not(Contains("12")));
        EXPECT_FALSE(robot.has("clean_complete"));
    }
}

TEST_F(CleaningTask, GoesRoomByRoomOnAMapOfRoomsAndKeepsToThat)
{
    const auto rooms = [this] { return bool(robot.asked(kRooms.coverage)); };
    robot.set("segments_layer=1 reuse_cleaning=0");
    enter(kHome, "init");
    EXPECT_FALSE(rooms()) << "on a new map";

    CleaningModeNames by_room = kHome;
    by_room.coverage = kRooms.coverage;
    robot.set("reuse_cleaning", 1);
    ASSERT_TRUE(enter(by_room, "init"));
    EXPECT_TRUE(robot.asked("SetAutomodeCleaningArea"));
    EXPECT_EQ(robot.key("segment_map_info"), "segment_map");
    robot.set("reuse_cleaning", 0);
    robot.tick(10);
    EXPECT_TRUE(robot.askedNow(kRooms.coverage)) << "chosen once a task";

    robot.set("is_ordering_task=true order_map=1");
    ASSERT_TRUE(enter(by_room, "init"));
    EXPECT_EQ(robot.key("segment_map_info"), "order_map");
    robot.tree(kRooms.coverage).succeeds();
    awaitRequest();
    EXPECT_TRUE(robot.keysAre("segment_map_info=segment_map -order_map"));
}

TEST_F(CleaningTask, IsCalledHomeByTheStation)
{
    for (const auto& [mode, work] :
         {std::pair{kRooms, "clean_area"}, {kZones, "clean_draw"}, {kPoint, "clean_point"}}) {
        robot.erase("need_back_station");
        ASSERT_TRUE(enter(mode, "init"));
        robot.tick(5);
        EXPECT_THAT(robot.requests(), IsEmpty());
        robot.set("need_back_station", "");
        robot.tick(2);
        EXPECT_THAT(robot.requests(), Contains("BackHomeMode"));
        EXPECT_EQ(robot.key("continue_work"), work);
    }
}

}  // namespace
}  // namespace vemra::test
