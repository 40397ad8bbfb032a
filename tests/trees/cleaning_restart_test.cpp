#include "support/supervised_robot.h"

namespace vemra::test {
namespace {

/// The choice of a map for a task.
struct ChoiceOfMap : testing::Test
{
    ChoiceOfMap()
    {
        robot.obeys_requests = false;
        robot.mode = "AutoCleanMode";
        robot.set("current_odom=3 current_coord=4 gridmap_limit=5 robot_moved=false task_state=init");
        robot.succeed("IsReuseInfoExist | IsPointInRectangle");
        robot.succeed(
            "EscapeCoat | ForceDelay | RestartCleaning | ReuseRestartCleaning | AdvCleanComplete | "
            "ActiveRelocalize_LdsInteractive");
    }

    /// 'N' for a new map, 'R' for the stored one, with the steps before: 'L' for a look around.
    std::string choose()
    {
        robot.forgetRequests();
        EXPECT_EQ(robot.finish("AdvRestartCleaning", 200), SUCCESS);
        EXPECT_TRUE(robot.keysAre("OdomAfterCopied=true odom_pos_after=3"));
        return robot.letters({{"ActiveRelocalize_LdsInteractive", 'L'},
                              {"RestartCleaning", 'N'},
                              {"ReuseRestartCleaning", 'R'}});
    }

    [[nodiscard]] std::vector<std::string> music() const { return robot.newMusic(); }

    SupervisedRobot robot;
};

TEST_F(ChoiceOfMap, OnTheDockTheStoredOneIsTakenUnseen)
{
    robot.set("reuse_from_charger=true on_charger_pose=1 mica_on_charger=true");
    EXPECT_EQ(choose(), "R");
    EXPECT_TRUE(robot.asked("SlamStartFromReuse"));
    EXPECT_EQ(robot.key("pretend_reuse_cleaning_token"), "true");
    EXPECT_TRUE(robot.notAsked("UpdateReuseAppMap"));
    EXPECT_THAT(music(), IsEmpty());
}

TEST_F(ChoiceOfMap, WithAStoredOneInUseNeedsNoLookUnlessOneIsAskedFor)
{
    robot.leaf("SlamIsResumable").succeeds();
    robot.set("map_id_in_map_ids", true);
    EXPECT_EQ(choose(), "R");
    EXPECT_TRUE(robot.asked("SlamStart"));

    robot.set("init_status_must_reloc_flag", "");
    EXPECT_EQ(choose(), "LR");
    robot.erase("init_status_must_reloc_flag");

    // A map that is none of the stored ones does, but not at the very start.
    robot.set("map_id_in_map_ids", false);
    EXPECT_EQ(choose(), "R");
    robot.set("reuse_relocalize_just_in_init", "true");
    EXPECT_EQ(choose(), "LR");
    EXPECT_EQ(robot.key("reuse_relocalize_just_in_flash"), "true");
}

TEST_F(ChoiceOfMap, IsTheStoredOneWhereTheRobotFindsItselfOnIt)
{
    EXPECT_EQ(choose(), "LR");
    EXPECT_THAT(music(), ElementsAre("30", "54"));
    EXPECT_TRUE(robot.started(1, "GenerateCleaningLog clean_mode="));

    robot.tree("ActiveRelocalize_LdsInteractive").fails();
    EXPECT_EQ(choose(), "LN");
    EXPECT_THAT(music(), ElementsAre("30", "31"));
    EXPECT_TRUE(robot.started(1, "GenerateCleaningLog clean_mode="));

    robot.tree("ActiveRelocalize_LdsInteractive").succeeds();
    robot.leaf("IsPointInRectangle").fails();
    EXPECT_EQ(choose(), "LN") << "a place beside the map";
}

TEST_F(ChoiceOfMap, KickedOrToldToChargeItDoesNotLookAround)
{
    robot.set("kicked", "true");
    EXPECT_EQ(choose(), "N");
    EXPECT_THAT(music(), ElementsAre("30", "31"));
    robot.set("kicked", "false");
    robot.leaf("DoesGetRobotChargeWarnning").succeeds();
    EXPECT_EQ(choose(), "N");
}

TEST_F(ChoiceOfMap, AfterAMappingRunIsANewOneWithoutAWord)
{
    robot.leaf("SlamIsResumable").succeeds();
    robot.set("map_id_in_map_ids=true mapping_no_reloc=true disable_reuse_reloc_once=true");
    robot.set("reuse_relocalize_just_in_init=true");
    EXPECT_EQ(choose(), "N");
    EXPECT_THAT(music(), IsEmpty());
    EXPECT_TRUE(robot.keysAre("-mapping_no_reloc -reuse_relocalize_just_in_init"));
}

TEST_F(ChoiceOfMap, OnTheWayHomeIsToldByMusicOfItsOwn)
{
    robot.mode = "BackHomeMode";
    for (const bool wash : {false, true}) {
        if (wash) {
            robot.set("hand_wash_flag", "");
            robot.leaf("DoesTuobuInstall").succeeds();
        }
        robot.tree("ActiveRelocalize_LdsInteractive").succeeds();
        EXPECT_EQ(choose(), "LR");
        EXPECT_THAT(music(), ElementsAre("30", wash ? "145" : "55"));
        robot.tree("ActiveRelocalize_LdsInteractive").fails();
        EXPECT_EQ(choose(), "LN");
        EXPECT_THAT(music(), ElementsAre("30", wash ? "140" : "64"));
    }
    robot.set("disable_reuse_reloc_music", "");
    EXPECT_EQ(choose(), "LN");
    EXPECT_THAT(music(), IsEmpty());
    EXPECT_THAT(robot.requests(), IsEmpty());
}

TEST_F(ChoiceOfMap, ASelectionWithoutItsMapBecomesACleanOfTheWholeHome)
{
    robot.tree("ActiveRelocalize_LdsInteractive").fails();
    for (const char* mode : {"SelectAreaCleanMode", "DrawAreaCleanMode", "SelectPointCleanMode",
                             "FastMapBuildMode", "AutoCleanMode"}) {
        const bool selection = std::string(mode) != "AutoCleanMode";
        robot.mode = mode;
        robot.set("task_state", "precleaning");
        robot.set("-WorkStartMusic_shield -from_charge_fake_flag -just_damode_reuse_failed");
        EXPECT_EQ(choose(), "LN") << mode;
        EXPECT_EQ(bool(robot.asked("AdvCleanComplete")), selection) << mode;
        EXPECT_EQ(robot.requests().size(), selection ? 1U : 0U);
        EXPECT_EQ(robot.key("task_state"), selection ? "init" : "precleaning");
        for (const char* key : {"WorkStartMusic_shield", "from_charge_fake_flag", "just_damode_reuse_failed"})
            EXPECT_EQ(robot.has(key), selection) << key;
    }
}

// --- what a task begins with --------------------------------------------------------------------

/// The keys that the last task left.
struct NewTask : testing::Test
{
    NewTask()
    {
        robot.set(
            "generate_points=old lowpower_coord_save=old clean_complete=old second_time_cleaning=old "
            "only_charger_in_map=old clear_map_flag=old");
        robot.set("gong_complete=true origin_in_enclave=true current_pose=4 current_yaw_deg=10.0");
        robot.set("current_odom_yaw_deg=20.0");
        robot.succeed("EscapeCoat | Back2cm | Escape");
        robot.leaf("Rotate").runs();
    }

    void nothingIsLeft()
    {
        EXPECT_TRUE(
            robot.keysAre("-generate_points -lowpower_coord_save -clean_complete -second_time_cleaning "
                          "-only_charger_in_map -clear_map_flag"));
        EXPECT_TRUE(robot.keysAre("gong_complete=false origin_in_enclave=false"));
        EXPECT_TRUE(robot.asked("PresetBlackboard | ClearUpdateWarning"));
    }

    ScriptedRobot robot;
};

TEST_F(NewTask, OnANewMapTurnsMoreThanHalfRoundByOdometry)
{
    robot.set("virtual_wall_lines", "1;2;3;4");
    robot.runUntil("RestartCleaning", "Rotate angle_deg=360");
    EXPECT_TRUE(robot.inOrder("SetOdometry | ResetMap | SlamReset"));
    robot.set("current_yaw_deg=190.0 current_odom_yaw_deg=200.0");
    robot.tick(3);
    EXPECT_TRUE(robot.askedNow("Rotate")) << "at 180 degrees";
    robot.leaf("InDockField").succeeds();
    robot.set("current_odom_yaw_deg", 201.0);
    EXPECT_EQ(robot.finish(3), SUCCESS);
    EXPECT_TRUE(robot.halted("Rotate"));
    EXPECT_TRUE(robot.keysAre("skip_first_rotate robot_indock=true"));
    EXPECT_EQ(robot.key("start_from_charger_yaw_deg"), "9") << "the heading when the turn began";
    EXPECT_TRUE(robot.keysAre("reuse_cleaning=0 -virtual_wall_lines"));
    nothingIsLeft();
}

TEST_F(NewTask, OnAStoredMapTakesItsWallsAndKnowsWhetherItHasRooms)
{
    robot.leaf("SlamIsResumable").succeeds();
    robot.leaf("GetReuseInfoInitValue").fills("key", 1);
    robot.set("pretend_reuse_cleaning_token", "true");
    for (const auto& [known, resumable, value] :
         {std::tuple{true, true, "1"}, {false, true, "4"}, {true, false, "4"}}) {
        robot.set("map_id_in_map_ids", known);
        robot.leaf("SlamIsResumable").gives(resumable);
        EXPECT_EQ(robot.finish("ReuseRestartCleaning", 3), SUCCESS);
        EXPECT_EQ(robot.key("reuse_cleaning"), value);
        EXPECT_EQ(robot.key("pretend_reuse_cleaning"), value == std::string("1") ? "true" : "false")
            << "told once";
        EXPECT_TRUE(robot.asked("SetVirtualWallFromReuse"));
        EXPECT_TRUE(robot.notAsked("Rotate"));
    }
    EXPECT_EQ(robot.key("initial_pose"), "4");
    nothingIsLeft();
}

TEST(Resume, DrivesToWhereTheTaskWasBrokenOff)
{
    ScriptedRobot robot;
    robot.tree("NavigateProcWithHistoryMapNoneStop").fails();
    robot.set("lowpower_coord_save", 6);
    EXPECT_EQ(robot.finish("LowpowerResume", 3), SUCCESS);
    EXPECT_EQ(robot.key("navi_target_point"), "6");
    EXPECT_TRUE(robot.asked("NavigateProcWithHistoryMapNoneStop"));
    EXPECT_FALSE(robot.has("lowpower_coord_save"));
    EXPECT_EQ(robot.finish("LowpowerResume", 3), SUCCESS);
    EXPECT_TRUE(robot.notAsked("NavigateProcWithHistoryMapNoneStop"));
}

// --- the end of a task --------------------------------------------------------------------------

/// A mode that closes its task, under the supervisor that does it.
struct EndOfTask : testing::Test
{
    EndOfTask() : robot({"AutoModeIndex"})
    {
        robot.set("last_clean_mode", "AutoCleanMode");
        robot.succeed(
            "AdvRestartCleaning | AdvPreAutoOnCharger | CleanFromChargerJudgment | ForceDelay | EscapeCoat | "
            "Back2cm | PreprocessDealsBeforeCleaning");
        robot.tree("RecursiveAutoMode_FollowGong").runs();
        robot.leaf("NeedInitialAutoMode").succeeds();
        robot.leaf("SlamCleanComplete").succeedsAfter(10);
        robot.powerOn();
    }

    /// A clean begins while this task is open; the supervisor has begun to close that.
    void beginWith(const char* stage)
    {
        robot.forget();
        robot.set("task_state", stage);
        robot.enterMode("AutoCleanMode");
        robot.tickUntil("SlamCleanComplete", 300);
    }

    SupervisedRobot robot;
};

TEST_F(EndOfTask, HoldsTheNextOneUpUntilItIsClosed)
{
    beginWith("zone_cleaning");
    EXPECT_TRUE(robot.keysAre("RobotModeSwitchLock -AdvCleanCompleteStart"));
    robot.tick(8);
    EXPECT_TRUE(robot.notAsked("AdvRestartCleaning"));
    robot.tick(5);
    EXPECT_TRUE(robot.asked("GenerateCleaningLog clean_mode=AutoCleanMode | AdvRestartCleaning"));
    EXPECT_TRUE(robot.keysAre("-AdvCleanCompleteEnd task_state=cleaning"));
}

TEST_F(EndOfTask, IsSeenToThoughTheModeThatAskedForItIsLeft)
{
    beginWith("zone_cleaning");
    robot.enterMode("StandbyMode");
    robot.tick(10);
    EXPECT_TRUE(robot.asked("GenerateCleaningLog | SaveReuseInfo"));
    EXPECT_EQ(robot.key("task_state"), "init");
    EXPECT_TRUE(robot.has("AdvCleanCompleteEnd")) << "nobody has taken it";
    EXPECT_TRUE(robot.notAsked("AdvRestartCleaning"));

    // The next one that is closed is not taken for done by what was left.
    beginWith("area_cleaning");
    EXPECT_FALSE(robot.has("AdvCleanCompleteEnd"));
    EXPECT_TRUE(robot.notAsked("AdvRestartCleaning"));
    robot.tick(15);
    EXPECT_TRUE(robot.asked("AdvRestartCleaning"));
}

TEST_F(EndOfTask, ThatWasASearchForTheDockMakesNoLogOfAClean)
{
    robot.set("generate_points=1 SFC_trapped");
    beginWith("search_charge");
    EXPECT_TRUE(robot.keysAre("task_state=init MockCleaningLog=true -generate_points -SFC_trapped"));
    robot.tick(15);
    EXPECT_FALSE(robot.has("MockCleaningLog"));
    EXPECT_TRUE(robot.asked("AdvRestartCleaning"));
}

}  // namespace
}  // namespace vemra::test
