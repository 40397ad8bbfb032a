#include "support/supervised_robot.h"

namespace vemra::test {
namespace {

// --- off the dock -------------------------------------------------------------------------------

/// Backs off the dock; places are millimetres on a line, and the robot has come so far.
struct Detach : RobotOnALine
{
    Detach()
    {
        robot.set("current_yaw_deg=90.0 current_odom=0");
        robot.leaf("DetachNode").runs();
        robot.succeed("NotTrapped | IfOnAPlane | Escape");
    }

    void leaveDock() { robot.runUntil("PreAutoOnCharger", "DetachNode"); }
};

TEST_F(Detach, EndsHalfAMetreOff)
{
    leaveDock();
    robot.set("current_odom", -499);
    robot.tick(3);
    EXPECT_TRUE(robot.askedNow("DetachNode back_speed=-160"));
    robot.set("current_odom", -500);
    EXPECT_EQ(robot.finish(5), SUCCESS);
    EXPECT_TRUE(robot.halted("DetachNode"));
    EXPECT_TRUE(robot.keysAre("infrared_calibration_finished back_origin_yaw=90"));
    EXPECT_TRUE(robot.notAsked("Rotate"));
}

TEST_F(Detach, ThatGetsNowhereEndsAfterFifteenSecondsAndTheTaskGoesOn)
{
    leaveDock();
    EXPECT_EQ(robot.finish(900), SUCCESS);
    EXPECT_EQ(robot.framesOf("DetachNode back_speed=-160"), 750);
    EXPECT_TRUE(robot.has("infrared_calibration_finished"));
}

TEST_F(Detach, CalibratesTheReceiversBetweenAQuarterAndHalfAMetre)
{
    for (const auto& [mm, calibrates] : {std::pair{-250, false}, {-251, true}, {-499, true}, {-500, false}}) {
        robot.set("-need_infrared_calibration current_odom=0");
        leaveDock();
        robot.set("current_odom", mm);
        robot.tick();
        EXPECT_EQ(robot.has("need_infrared_calibration"), calibrates) << mm;
    }
}

TEST_F(Detach, ARobotThatLeansBacksOnUntilItIsLevelOrIsKnownToLean)
{
    // It is level after so many further frames.
    for (const auto& [level_after, leans] :
         {std::pair{40, false}, {120, false}, {145, false}, {1000, true}}) {
        robot.erase("robot_leans_charger");
        robot.leaf("IfOnAPlane").decides([this, level_after = level_after](const Moment&) {
            return robot.framesOf("DetachNode back_speed=-80") >= level_after ? SUCCESS : FAILURE;
        });
        robot.set("current_odom", 0);
        leaveDock();
        robot.set("current_odom", -500);
        EXPECT_EQ(robot.finish(400), SUCCESS);
        EXPECT_EQ(robot.has("robot_leans_charger"), leans) << level_after;
    }
}

TEST_F(Detach, AHeadingThatTheEscapeTurnedIsTakenUpAgain)
{
    robot.leaf("NotTrapped").fails();
    robot.set("detach_origin_yaw", 10);
    leaveDock();
    robot.set("current_odom", -500);
    EXPECT_EQ(robot.finish(5), SUCCESS);
    EXPECT_TRUE(robot.asked("Rotate angle_deg=90 false_relative_true_absolute=true | ModifyYaw"));
}

/// Where a task begins.
struct LeaveDock : testing::Test
{
    LeaveDock()
    {
        robot.succeed("EscapeCoat | PreAutoOnCharger");
        robot.set("current_odom=3 current_pose=4 robot_moved=false");
        robot.leaf("GoBackwards").runs();
    }

    std::optional<std::string> startFromCharger(const std::string& stage)
    {
        robot.set("task_state", stage);
        EXPECT_EQ(robot.finish("AdvPreAutoOnCharger", 400), SUCCESS);
        return robot.key("start_from_charger");
    }

    ScriptedRobot robot;
};

TEST_F(LeaveDock, OnItTheStoredMapIsOfferedAndTheOdometryNoted)
{
    robot.leaf("GotCharger").succeeds();
    EXPECT_EQ(startFromCharger("init"), "true");
    EXPECT_TRUE(robot.inOrder("UpdateReuseAppMap mode=on_charger | SlamPrestart | PreAutoOnCharger"));
    EXPECT_EQ(robot.key("odom_pos_before"), "3");
    EXPECT_FALSE(robot.has("on_charger_pose")) << "no map is stored";
    EXPECT_TRUE(robot.has("clean_start_vw_check"));

    robot.leaf("IsReuseInfoExist").succeeds();
    robot.leaf("GotCharger").fails();
    robot.set("just_on_charger", "");
    EXPECT_EQ(startFromCharger("cleaning"), "true");
    EXPECT_TRUE(robot.keysAre("on_charger_pose=4 reuse_from_charger=false"));
    EXPECT_TRUE(robot.notAsked("UpdateReuseAppMap"));
}

TEST_F(LeaveDock, OffItItsPoseIsKeptWhereNobodyMovedTheRobotSince)
{
    // Noted at the start, noted by another mode, moved since, the stage; and what is kept.
    for (const bool near : {false, true})
        for (const auto& [noted, fake, moved, stage, kept] :
             {std::tuple{"true", false, "false", "init", "true"},
              {"true", false, "false", "cleaning", "false"},
              {"false", true, "false", "cleaning", "true"},
              {"true", true, "true", "init", "false"},
              {"false", false, "false", "init", "false"}}) {
            robot.leaf("DoesRobotGetChargerSigCheck").gives(near);
            robot.set("record_charge_pose_start", noted);
            robot.set("robot_moved", moved);
            robot.set(fake ? "from_charge_fake_flag" : "-from_charge_fake_flag");
            EXPECT_EQ(startFromCharger(stage), kept) << stage << ' ' << fake << moved;
            EXPECT_EQ(robot.framesOf("GoBackwards"), near ? 300 : 0);
            EXPECT_EQ(robot.key("rotate_target_angle"), "0");
            EXPECT_TRUE(robot.notAsked("PreAutoOnCharger"));
        }
}

TEST_F(LeaveDock, MovedWhileItWaitedForChargeItMustFindItsPlace)
{
    for (const auto& [stage, moved] : {std::pair{"area_lowpower", true}, {"cleaning", false}}) {
        robot.set("moved_during_lowpower -moved_during_pause");
        startFromCharger(stage);
        EXPECT_FALSE(robot.has("moved_during_lowpower"));
        EXPECT_EQ(robot.has("moved_during_pause"), moved) << stage;
        EXPECT_EQ(robot.has("moved_flag_for_calc_charger"), moved);
    }
}

TEST(DockPose, IsReckonedFromTheDriveOffOrForgotten)
{
    ScriptedRobot robot;
    robot.set("current_odom=3 start_from_charger=true start_from_charger_pose=5");
    const auto reckon = [&robot] { EXPECT_EQ(robot.finish("CalcChargerPositionOrNot", 3), SUCCESS); };
    reckon();
    EXPECT_TRUE(robot.asked("CalcChargerPosition out_charger_position=charger_position"));
    EXPECT_EQ(robot.key("odom_pos_after"), "3");

    robot.set("OdomAfterCopied=true current_odom=9");
    reckon();
    EXPECT_TRUE(robot.keysAre("odom_pos_after=3 -OdomAfterCopied")) << "noted before";

    robot.set("moved_flag_for_calc_charger", "");
    reckon();
    EXPECT_TRUE(robot.notAsked("CalcChargerPosition"));
    EXPECT_FALSE(robot.has("start_from_charger_pose"));

    robot.set("start_from_charger_pose=5 start_from_charger=false");
    reckon();
    EXPECT_FALSE(robot.has("start_from_charger_pose"));
}

// --- the cloth ----------------------------------------------------------------------------------

/// A task with a cloth, about to begin.
struct ClothAtStart : testing::Test
{
    ClothAtStart()
    {
        robot.obeys_requests = false;
        robot.mode = "AutoCleanMode";
        robot.set("use_mop=true start_from_charger=false task_state=precleaning marker_signal_type=None");
        robot.succeed("NotTrapped | Escape | AdvCleanComplete | GoChargingFullRoundTurn");
    }

    std::vector<std::string> judge()
    {
        robot.set("robot_indock=true -need_back_station");
        robot.forgetRequests();
        EXPECT_NE(robot.finish("CleanFromChargerJudgment", 300), RUNNING);
        EXPECT_FALSE(robot.has("robot_indock"));
        EXPECT_EQ(robot.has("need_back_station"),
                  robot.requests() == std::vector<std::string>{"BackHomeMode"});
        return robot.requests();
    }

    SupervisedRobot robot;
};

TEST_F(ClothAtStart, WithoutOneNothingIsAsked)
{
    robot.set("start_from_charger_pose=5 use_mop=false");
    EXPECT_THAT(judge(), IsEmpty());
    robot.erase("use_mop");
    EXPECT_THAT(judge(), IsEmpty());
}

TEST_F(ClothAtStart, GoesToTheStationFirstWhereItKnowsTheWayOrHearsTheDock)
{
    robot.set("reuse_cleaning", 1);
    EXPECT_THAT(judge(), ElementsAre("BackHomeMode"));
    EXPECT_EQ(robot.key("task_state"), "precleaning");
    robot.set("reuse_cleaning=0 start_from_charger_pose=5");
    EXPECT_THAT(judge(), ElementsAre("BackHomeMode"));
    EXPECT_TRUE(robot.notAsked("GoChargingFullRoundTurn"));

    robot.erase("start_from_charger_pose");
    robot.leaf("SignalTypeMatch").fails();
    EXPECT_THAT(judge(), ElementsAre("BackHomeMode"));
    EXPECT_TRUE(robot.asked("GoChargingFullRoundTurn"));
}

TEST_F(ClothAtStart, ThatHearsNoDockDoesNotBegin)
{
    robot.leaf("SignalTypeMatch").succeeds();
    for (const bool turned : {true, false}) {
        robot.erase("PushInfoApp");
        robot.tree("GoChargingFullRoundTurn").gives(turned);
        EXPECT_THAT(judge(), ElementsAre("StandbyMode"));
        EXPECT_TRUE(robot.has("PushInfoApp"));
        EXPECT_EQ(robot.music().back(), "112");
    }
    // Who began it from standby wants it here.
    robot.set("robot_standby_flag", "");
    EXPECT_THAT(judge(), IsEmpty());
    EXPECT_FALSE(robot.has("robot_standby_flag"));
}

TEST_F(ClothAtStart, ASelectionThatIsNowToBeMoppedKeepsItsInputForAfterTheVisit)
{
    for (const auto& [stage, input, flag] :
         {std::tuple{"area_cleaning", "Areas_Clean_Set_List_Ping", "no_flag"},
          {"zone_cleaning", "Draw_Area_Set_Ping", "reset_zone_cleaning"},
          {"point_cleaning", "Select_Point_Set_Ping", "reset_point_cleaning"}}) {
        robot.set("task_state", stage);
        robot.set(std::string("changed_mop_mode=1 ") + input + "_bak=kept " + flag + "_bak=too");
        EXPECT_THAT(judge(), ElementsAre("BackHomeMode"));
        EXPECT_TRUE(
            robot.keysAre(std::string("task_state=precleaning -") + input + "_bak " + input + "=kept"));
        EXPECT_TRUE(flag == std::string("no_flag") || robot.key(flag) == "too") << stage;
    }
    robot.set("task_state", "lowpower");
    EXPECT_THAT(judge(), ElementsAre("BackHomeMode"));
    EXPECT_EQ(robot.key("task_state"), "lowpower");
    robot.set("changed_mop_mode", "0");
    EXPECT_THAT(judge(), IsEmpty());
}

TEST_F(ClothAtStart, OnTheDockAChangeToMoppingClosesTheTask)
{
    robot.set("start_from_charger", "true");
    EXPECT_THAT(judge(), IsEmpty());
    robot.set("need_back_mode_changed", "");
    EXPECT_THAT(judge(), ElementsAre("BackHomeMode"));
    EXPECT_TRUE(robot.asked("AdvCleanComplete"));
    EXPECT_FALSE(robot.has("need_back_mode_changed"));
}

TEST(Cloth, OnACarpetTheWaterIsShutOffAndTheFanTurnedUp)
{
    ScriptedRobot robot;
    robot.set("water_box", "");
    EXPECT_EQ(robot.run("auto_cleanmode_set"), SUCCESS);
    EXPECT_FALSE(robot.has("close_water_box")) << "nobody looks out for carpet";
    robot.leaf("DoesRobotCheckCarpet").succeeds();
    robot.tick();
    EXPECT_TRUE(robot.has("close_water_box"));
    EXPECT_TRUE(robot.notAsked("RobotMotorPressPlusSet"));
    robot.leaf("DoesRobotCarpetPressEnable").succeeds();
    robot.erase("water_box");
    robot.tick();
    EXPECT_FALSE(robot.has("close_water_box"));
    EXPECT_TRUE(robot.asked("RobotMotorPressPlusSet"));
}

}  // namespace
}  // namespace vemra::test
