#include "support/supervised_robot.h"

namespace vemra::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

/// One tree of a mode by itself; requests are only written down.
class RestingMode : public testing::Test
{
protected:
    RestingMode()
        : robot({"StandbyModeIndex", "StopModeIndex", "StopChargingIndex", "SleepModeDealIndex",
                 "PowerOffModeIndex"})
    {
        robot.obeys_requests = false;
        robot.set("task_state", "init");
        robot.set("task_type", "Idle");
        robot.set("LastRobotMode", 3);
        robot.tree("AdvCleanComplete").succeeds();
        robot.tree("SearchChargeEnding").succeeds();
    }

    /// Enters the mode with its tree and ticks.
    void enter(const std::string& mode, const std::string& tree, int frames)
    {
        robot.mode = mode;
        robot.forgetRequests();
        robot.start(tree);
        robot.tick(frames);
    }

    SupervisedRobot robot;
};

TEST_F(RestingMode, PauseWithoutATaskIsAStandbyAndAStandbyWithOneAPause)
{
    enter("PauseAndStopMode", "StopModeIndex", 1);
    EXPECT_THAT(robot.requests(), ElementsAre("StandbyMode"));

    robot.set("task_state", "cleaning");
    enter("PauseAndStopMode", "StopModeIndex", 20);
    EXPECT_THAT(robot.requests(), IsEmpty());
    EXPECT_EQ(robot.key("robot_status"), "clean_task_pause");
    EXPECT_TRUE(robot.askedNow("StopModeDeal"));

    enter("StandbyMode", "StandbyModeIndex", 20);
    EXPECT_THAT(robot.requests(), Contains("PauseAndStopMode"));
    robot.set("task_state", "init");
    enter("StandbyMode", "StandbyModeIndex", 20);
    EXPECT_THAT(robot.requests(), IsEmpty());
    EXPECT_EQ(robot.key("robot_status"), "clean_nontask");
    EXPECT_TRUE(robot.asked("SetCleanSystem", {{"Fan", "0"}}));
}

TEST_F(RestingMode, LightsTellALowBatteryBelowFifteenPercent)
{
    robot.battery = 15;
    enter("StandbyMode", "StandbyModeIndex", 20);
    EXPECT_TRUE(robot.askedNow("Led_Mode_Set", {{"LedMode", "BUTTON_LED_Standby"}}));
    robot.battery = 14;
    enter("StandbyMode", "StandbyModeIndex", 20);
    EXPECT_TRUE(robot.askedNow("Led_Mode_Set", {{"LedMode", "BUTTON_LED_Standby_LowPower"}}));
    EXPECT_EQ(robot.key("robot_status"), "clean_lowp_standby");
    robot.set("task_state", "area_cleaning");
    enter("PauseAndStopMode", "StopModeIndex", 20);
    EXPECT_TRUE(robot.askedNow("Led_Mode_Set", {{"LedMode", "BUTTON_LED_Pause_LowPower"}}));
    EXPECT_EQ(robot.key("robot_status"), "clean_lowp_pause");
}

TEST_F(RestingMode, PauseEndsASpotCleaningAndHoldsOneGoneForPower)
{
    robot.set("task_state", "part_cleaning");
    enter("PauseAndStopMode", "StopModeIndex", 5);
    EXPECT_TRUE(robot.started(1, "AdvCleanComplete"));
    EXPECT_EQ(robot.key("task_type"), "Idle");

    for (const char* state : {"lowpower", "zone_lowpower", "area_lowpower", "point_lowpower"}) {
        robot.set("task_state", state);
        enter("PauseAndStopMode", "StopModeIndex", 5);
        EXPECT_EQ(robot.key("task_state"), std::string(state) + "_pause");
        EXPECT_TRUE(robot.notAsked("AdvCleanComplete"));
    }

    robot.set("task_state", "cleaning");
    robot.set("ForceStandby", "true");
    enter("StandbyMode", "StandbyModeIndex", 20);
    EXPECT_TRUE(robot.asked("AdvCleanComplete")) << "the app closes the task";
    EXPECT_FALSE(robot.has("ForceStandby"));
    EXPECT_THAT(robot.requests(), Not(Contains("PauseAndStopMode")));
}

TEST_F(RestingMode, SleepsAfterThirtyThousandTicks)
{
    for (const auto& [mode, tree, state] : {std::tuple("StandbyMode", "StandbyModeIndex", "init"),
                                            std::tuple("PauseAndStopMode", "StopModeIndex", "cleaning")}) {
        robot.set("task_state", state);
        robot.mode = mode;
        robot.start(tree);
        robot.forgetRequests();
        robot.tickUntil("StopModeDeal", {}, 20);
        const int first = robot.frame();
        robot.tick(first + 29999 - robot.frame());
        EXPECT_THAT(robot.requests(), IsEmpty()) << tree;
        robot.tick(2);
        EXPECT_THAT(robot.requests(), ElementsAre("SleepMode")) << tree;
        EXPECT_TRUE(robot.asked("GetWheelsDropStateBeforeSleep"));
    }
}

TEST_F(RestingMode, SleepEndsOnTheWheelsTheAppOrAKick)
{
    for (const char* cause : {"DoesReceiveFindRobot", "DoesWheelsChangedWhenSleep"}) {
        enter("SleepMode", "SleepModeDealIndex", 20);
        EXPECT_TRUE(robot.asked("Led_Mode_Set", {{"LedMode", "BUTTON_LED_OFF"}}));
        EXPECT_EQ(robot.key("robot_status"), "clean_sleep_done");
        EXPECT_TRUE(robot.notAsked("BackToLastRobotMode"));
        robot.leaf(cause).succeeds();
        robot.tick();
        EXPECT_TRUE(robot.asked("BackToLastRobotMode")) << cause;
        robot.leaf(cause).fails();
    }
    robot.set("kicked", "false");
    robot.set("annoy_active_tick", 5);
    enter("SleepMode", "SleepModeDealIndex", 20);
    EXPECT_TRUE(robot.notAsked("BackToLastRobotMode"));
    EXPECT_NE(robot.key("annoy_active_tick"), "5") << "the quiet time is counted";
    robot.set("kicked", "true");
    robot.quiet_hours = true;
    robot.tick(5);
    EXPECT_TRUE(robot.notAsked("BackToLastRobotMode")) << "not in quiet hours";
    robot.quiet_hours = false;
    robot.tick();
    EXPECT_TRUE(robot.asked("BackToLastRobotMode"));
}

TEST_F(RestingMode, SleepOffTheDockTurnsIntoPowerOff)
{
    robot.battery = 10;
    enter("SleepMode", "SleepModeDealIndex", 20);
    EXPECT_THAT(robot.requests(), IsEmpty());
    robot.leaf("RobotTimerLongerThan_s").where("long_s", "43200").succeeds();
    robot.tick();
    EXPECT_THAT(robot.requests(), Contains("PowerOffMode")) << "after twelve hours";
    EXPECT_EQ(robot.key("update_offline_map_flag"), "1");

    robot.on_charger = true;
    enter("SleepMode", "SleepModeDealIndex", 20);
    EXPECT_THAT(robot.requests(), IsEmpty()) << "never on the dock";
    EXPECT_TRUE(robot.asked("RobotTimer_s_Init"));

    robot.on_charger = false;
    robot.leaf("RobotTimerLongerThan_s").fails();
    robot.erase("longtimepoweroff");
    robot.battery = 9;
    enter("SleepMode", "SleepModeDealIndex", 20);
    EXPECT_THAT(robot.requests(), Contains("PowerOffMode"));

    enter("PowerOffMode", "PowerOffModeIndex", 200);
    EXPECT_TRUE(robot.asked("PowerOffModeDeal"));
    EXPECT_TRUE(robot.notAsked("SetMusicPlayPara")) << "in silence";
}

TEST_F(RestingMode, PowerOffSaysGoodbyeAndClosesTheTask)
{
    enter("PowerOffMode", "PowerOffModeIndex", 49);
    EXPECT_THAT(robot.music(), ElementsAre("200"));
    EXPECT_TRUE(robot.notAsked("PowerOffModeDeal"));
    robot.tick(105);
    EXPECT_TRUE(robot.askedNow("PowerOffModeDeal"));
    EXPECT_TRUE(robot.notAsked("AdvCleanComplete"));

    robot.set("task_state", "area_cleaning");
    robot.set("station_info_save", "");
    robot.battery = 1;
    enter("PowerOffMode", "PowerOffModeIndex", 400);
    EXPECT_THAT(robot.music(), ElementsAre("200", "21", "200"));
    EXPECT_TRUE(robot.inOrder({{"AdvCleanComplete", {}}, {"CleanInfoSave", {}}, {"PowerOffModeDeal", {}}}));

    robot.set("task_state", "search_charge");
    robot.battery = 50;
    enter("PowerOffMode", "PowerOffModeIndex", 200);
    EXPECT_TRUE(robot.asked("SearchChargeEnding"));
    EXPECT_TRUE(robot.notAsked("AdvCleanComplete"));
}

TEST_F(RestingMode, ChargingResumesATaskOnceThereIsPowerForIt)
{
    const std::vector<std::pair<std::string, std::string>> resumed = {
        {"lowpower", "AutoCleanMode"},
        {"zone_lowpower", "DrawAreaCleanMode"},
        {"area_lowpower", "SelectAreaCleanMode"},
        {"point_lowpower", "SelectPointCleanMode"},
    };
    robot.on_charger = true;
    robot.leaf("DoesRobotBreakPointEnable").succeeds();
    robot.leaf("BreakPointElecCalculate").writes("Elec_BreakPoint", 60);
    for (const auto& [state, mode] : resumed) {
        robot.set("task_state", state);
        robot.battery = 59;
        enter("ChargingMode", "StopChargingIndex", 30);
        EXPECT_THAT(robot.requests(), IsEmpty()) << state;
        robot.battery = 60;
        robot.tick();
        EXPECT_THAT(robot.requests(), Contains(mode));
        robot.battery = 59;
        enter("SleepMode", "SleepModeDealIndex", 30);
        EXPECT_THAT(robot.requests(), IsEmpty()) << state;
        robot.battery = 60;
        robot.tick();
        EXPECT_THAT(robot.requests(), Contains(mode)) << "out of its sleep";
    }
    robot.quiet_hours = true;
    enter("ChargingMode", "StopChargingIndex", 30);
    EXPECT_THAT(robot.requests(), IsEmpty()) << "not in quiet hours";
    robot.quiet_hours = false;
    robot.leaf("IsError_Box").succeeds();
    robot.tick(30);
    EXPECT_THAT(robot.requests(), IsEmpty()) << "not without a dust box";
    robot.leaf("IsError_Box").fails();
    robot.set("mop_is_dirty", "");
    robot.tick(30);
    EXPECT_THAT(robot.requests(), IsEmpty()) << "not with a dirty mop";
    robot.erase("mop_is_dirty");
    robot.tick(2);
    EXPECT_THAT(robot.requests(), Contains("SelectPointCleanMode"));
}

TEST_F(RestingMode, ChargingClosesATaskThatMayNotBeResumed)
{
    robot.on_charger = true;
    robot.set("task_state", "area_lowpower");
    robot.set("task_type", "AreaClean");
    enter("ChargingMode", "StopChargingIndex", 30);
    EXPECT_TRUE(robot.started(1, "AdvCleanComplete"));
    EXPECT_EQ(robot.key("task_state"), "init");
    EXPECT_EQ(robot.key("task_type"), "Idle");
    EXPECT_THAT(robot.requests(), IsEmpty()) << "and stays on the dock";

    robot.set("task_state", "zone_lowpower");
    enter("SleepMode", "SleepModeDealIndex", 5);
    EXPECT_TRUE(robot.asked("AdvCleanComplete"));
    EXPECT_EQ(robot.key("task_state"), "init");

    robot.leaf("DoesRobotBreakPointEnable").succeeds();
    robot.leaf("BreakPointElecCalculate").writes("Elec_BreakPoint", 100);
    for (const std::string state : {"lowpower", "zone_lowpower", "area_lowpower", "point_lowpower"}) {
        robot.set("task_state", state + "_pause");
        robot.set("breakpoint_getcharger", "");
        robot.set("moved_during_pause", "false");
        enter("ChargingMode", "StopChargingIndex", 30);
        EXPECT_EQ(robot.key("task_state"), state) << "it may go on";
    }
    robot.set("task_state", "area_lowpower_pause");
    robot.set("moved_during_pause", "true");
    enter("ChargingMode", "StopChargingIndex", 30);
    EXPECT_TRUE(robot.asked("AdvCleanComplete")) << "it was carried about";
}

TEST_F(RestingMode, KnockedOffTheDockGoesHomeByItself)
{
    robot.set("IMU_Changed", "false");
    robot.on_charger = true;
    enter("ChargingMode", "StopChargingIndex", 30);
    robot.leaf("DoesIMUDetectMoveLast2S").succeeds();
    robot.tick(2);
    robot.on_charger = false;
    robot.tick(249);
    EXPECT_THAT(robot.requests(), IsEmpty());
    robot.tick(5);
    EXPECT_THAT(robot.requests(), Contains("BackHomeMode"));
    EXPECT_EQ(robot.key("kicked"), "true");

    robot.leaf("DoesIMUDetectMoveLast2S").fails();
    robot.on_charger = true;
    enter("ChargingMode", "StopChargingIndex", 30);
    robot.on_charger = false;
    robot.tick(254);
    EXPECT_THAT(robot.requests(), Contains("StandbyMode")) << "nothing felt, no signal";

    robot.on_charger = true;
    enter("ChargingMode", "StopChargingIndex", 30);
    robot.on_charger = false;
    robot.leaf("DoesWheelsDrop").succeeds();
    robot.tick(3);
    EXPECT_THAT(robot.requests(), Contains("StandbyMode")) << "lifted off by somebody";
}

TEST_F(RestingMode, KnockedOffTheDockInQuietHoursSleepsOnlyAfterALongRest)
{
    robot.quiet_hours = true;
    robot.leaf("DoesRobotGetChargerSig").succeeds();
    for (const auto& [rest, mode] : {std::pair(100, "BackHomeMode"), std::pair(30100, "SleepMode")}) {
        robot.on_charger = true;
        enter("ChargingMode", "StopChargingIndex", rest);
        robot.forgetRequests();
        robot.on_charger = false;
        robot.tick(255);
        EXPECT_THAT(robot.requests(), Contains(mode)) << rest;
    }
}

TEST_F(RestingMode, ChargingGoesBackToTheWorkThatTheStationInterrupted)
{
    robot.on_charger = true;
    for (const auto& [type, mode] :
         std::vector<std::pair<std::string, std::string>>{{"AutoClean", "AutoCleanMode"},
                                                          {"ZoneClean", "DrawAreaCleanMode"},
                                                          {"AreaClean", "SelectAreaCleanMode"},
                                                          {"PointClean", "SelectPointCleanMode"}}) {
        robot.set("need_back_station", "");
        robot.set("task_type", type);
        robot.set("task_state", "cleaning");
        robot.set("LastRobotMode", 14);
        enter("ChargingMode", "StopChargingIndex", 50);
        EXPECT_THAT(robot.requests(), IsEmpty()) << type;
        robot.tick(70);
        EXPECT_THAT(robot.requests(), Contains(mode));
        EXPECT_EQ(robot.key("continue_work"), "clean_none");
    }
}

TEST_F(RestingMode, FullBatterySleepsOnTheDock)
{
    robot.on_charger = true;
    robot.battery = 99;
    enter("ChargingMode", "StopChargingIndex", 600);
    EXPECT_EQ(robot.key("robot_status"), "clean_charging");
    EXPECT_THAT(robot.requests(), IsEmpty());
    robot.battery = 100;
    robot.tick(499);
    EXPECT_EQ(robot.key("robot_status"), "clean_charge_done");
    EXPECT_THAT(robot.requests(), IsEmpty());
    robot.tick(5);
    EXPECT_THAT(robot.requests(), Contains("SleepMode"));
}

}  // namespace
}  // namespace vemra::test
