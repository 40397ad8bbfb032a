#include "support/supervised_robot.h"

namespace vemra::test {
namespace {

/// One tree of a mode by itself; requests are only written down.
struct RestingMode : testing::Test
{
    RestingMode()
        : robot({"StandbyModeIndex", "StopModeIndex", "StopChargingIndex", "SleepModeDealIndex",
                 "PowerOffModeIndex", "OTAModeDealIndex", "SetWIFIModeIndex"})
    {
        robot.obeys_requests = false;
        robot.set("task_state=init task_type=Idle LastRobotMode=3");
        robot.succeed("AdvCleanComplete | SearchChargeEnding");
    }

    SupervisedRobot robot;
};

TEST_F(RestingMode, PauseEndsASpotCleaningAndHoldsOneGoneForPower)
{
    robot.set("task_state", "part_cleaning");
    robot.enter("PauseAndStopMode", "StopModeIndex", 5);
    EXPECT_TRUE(robot.started(1, "AdvCleanComplete"));
    EXPECT_EQ(robot.key("task_type"), "Idle");

    for (const char* state : {"lowpower", "zone_lowpower", "area_lowpower", "point_lowpower"}) {
        robot.set("task_state", state);
        robot.enter("PauseAndStopMode", "StopModeIndex", 5);
        EXPECT_EQ(robot.key("task_state"), std::string(state) + "_pause");
        EXPECT_TRUE(robot.notAsked("AdvCleanComplete"));
    }

    robot.set("task_state=cleaning ForceStandby=true");
    robot.enter("StandbyMode", "StandbyModeIndex", 20);
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
        robot.tickUntil("StopModeDeal", 20);
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
        robot.enter("SleepMode", "SleepModeDealIndex", 20);
        EXPECT_TRUE(robot.asked("Led_Mode_Set LedMode=BUTTON_LED_OFF"));
        EXPECT_EQ(robot.key("robot_status"), "clean_sleep_done");
        EXPECT_TRUE(robot.notAsked("BackToLastRobotMode"));
        robot.leaf(cause).succeeds();
        robot.tick();
        EXPECT_TRUE(robot.asked("BackToLastRobotMode")) << cause;
        robot.leaf(cause).fails();
    }
    robot.set("kicked=false annoy_active_tick=5");
    robot.enter("SleepMode", "SleepModeDealIndex", 20);
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
    robot.enter("SleepMode", "SleepModeDealIndex", 20);
    EXPECT_THAT(robot.requests(), IsEmpty());
    robot.leaf("RobotTimerLongerThan_s long_s=43200").succeeds();
    robot.tick();
    EXPECT_THAT(robot.requests(), Contains("PowerOffMode")) << "after twelve hours";
    EXPECT_EQ(robot.key("update_offline_map_flag"), "1");

    robot.on_charger = true;
    robot.enter("SleepMode", "SleepModeDealIndex", 20);
    EXPECT_THAT(robot.requests(), IsEmpty()) << "never on the dock";
    EXPECT_TRUE(robot.asked("RobotTimer_s_Init"));

    robot.on_charger = false;
    robot.leaf("RobotTimerLongerThan_s").fails();
    robot.erase("longtimepoweroff");
    robot.battery = 9;
    robot.enter("SleepMode", "SleepModeDealIndex", 20);
    EXPECT_THAT(robot.requests(), Contains("PowerOffMode"));

    robot.enter("PowerOffMode", "PowerOffModeIndex", 200);
    EXPECT_TRUE(robot.asked("PowerOffModeDeal"));
    EXPECT_TRUE(robot.notAsked("SetMusicPlayPara")) << "in silence";
}

TEST_F(RestingMode, PowerOffSaysGoodbyeAndClosesTheTask)
{
    robot.enter("PowerOffMode", "PowerOffModeIndex", 49);
    EXPECT_THAT(robot.music(), ElementsAre("200"));
    EXPECT_TRUE(robot.notAsked("PowerOffModeDeal"));
    robot.tick(105);
    EXPECT_TRUE(robot.askedNow("PowerOffModeDeal"));
    EXPECT_TRUE(robot.notAsked("AdvCleanComplete"));

    robot.set("task_state=area_cleaning station_info_save");
    robot.battery = 1;
    robot.enter("PowerOffMode", "PowerOffModeIndex", 400);
    EXPECT_THAT(robot.music(), ElementsAre("200", "21", "200"));
    EXPECT_TRUE(robot.inOrder("AdvCleanComplete | CleanInfoSave | PowerOffModeDeal"));

    robot.set("task_state", "search_charge");
    robot.battery = 50;
    robot.enter("PowerOffMode", "PowerOffModeIndex", 200);
    EXPECT_TRUE(robot.asked("SearchChargeEnding"));
    EXPECT_TRUE(robot.notAsked("AdvCleanComplete"));
}

TEST_F(RestingMode, UpdateClosesTheTaskAndHoldsTheEmptying)
{
    robot.on_charger = true;
    robot.set("dust_left_time=700 task_state=cleaning dust_handle");
    robot.enter("OtaModeMode", "OTAModeDealIndex", 5);
    EXPECT_TRUE(robot.started(1, "AdvCleanComplete"));
    EXPECT_TRUE(robot.asked("Led_Mode_Set LedMode=BUTTON_LED_OTA"));
    EXPECT_TRUE(robot.asked("DustContrlSet dust_status=DUST_PAUSE time_set=700"));
    EXPECT_TRUE(robot.keysAre("-dust_handle robot_status=clean_ota"));
    EXPECT_TRUE(robot.askedNow("StopModeDeal"));

    robot.set("task_state=search_charge annoy_ota");
    robot.enter("OtaModeMode", "OTAModeDealIndex", 5);
    EXPECT_TRUE(robot.asked("SearchChargeEnding"));
    EXPECT_TRUE(robot.notAsked("AdvCleanComplete"));
    EXPECT_TRUE(robot.notAsked("Led_Mode_Set")) << "in quiet hours without a light";
    EXPECT_FALSE(robot.has("annoy_ota"));
}

using ChargingMode = RestingMode;

TEST_F(ChargingMode, ResumesATaskOnceThereIsPowerForItUnlessItsClothIsDirty)
{
    robot.on_charger = true;
    robot.leaf("DoesRobotBreakPointEnable").succeeds();
    robot.leaf("BreakPointElecCalculate").writes("Elec_BreakPoint", 60);
    for (const auto& [state, wanted] : {std::pair{"lowpower", "AutoCleanMode"},
                                        {"zone_lowpower", "DrawAreaCleanMode"},
                                        {"area_lowpower", "SelectAreaCleanMode"},
                                        {"point_lowpower", "SelectPointCleanMode"}})
        for (const auto& [mode, tree] :
             {std::pair{"ChargingMode", "StopChargingIndex"}, {"SleepMode", "SleepModeDealIndex"}}) {
            robot.set("mop_is_dirty");
            robot.set("task_state", state);
            robot.battery = 60;
            robot.enter(mode, tree, 30);
            EXPECT_THAT(robot.requests(), IsEmpty()) << state;
            robot.set("-mop_is_dirty");
            robot.battery = 59;
            robot.tick(2);
            EXPECT_THAT(robot.requests(), IsEmpty()) << state;
            robot.battery = 60;
            robot.tick();
            EXPECT_THAT(robot.requests(), Contains(wanted)) << mode;
        }
}

TEST_F(ChargingMode, ClosesATaskThatMayNotBeResumed)
{
    robot.on_charger = true;
    robot.set("task_state=area_lowpower task_type=AreaClean");
    robot.enter("ChargingMode", "StopChargingIndex", 30);
    EXPECT_TRUE(robot.started(1, "AdvCleanComplete"));
    EXPECT_TRUE(robot.keysAre("task_state=init task_type=Idle"));
    EXPECT_THAT(robot.requests(), IsEmpty()) << "and stays on the dock";

    robot.leaf("DoesRobotBreakPointEnable").succeeds();
    robot.leaf("BreakPointElecCalculate").writes("Elec_BreakPoint", 100);
    for (const std::string state : {"lowpower", "zone_lowpower", "area_lowpower", "point_lowpower"}) {
        robot.set("task_state", state + "_pause");
        robot.set("breakpoint_getcharger moved_during_pause=false");
        robot.enter("ChargingMode", "StopChargingIndex", 30);
        EXPECT_EQ(robot.key("task_state"), state) << "it may go on";
    }
    robot.set("task_state=area_lowpower_pause moved_during_pause=true");
    robot.enter("ChargingMode", "StopChargingIndex", 30);
    EXPECT_TRUE(robot.asked("AdvCleanComplete")) << "it was carried about";
}

TEST_F(ChargingMode, KnockedOffTheDockGoesHomeByItself)
{
    robot.set("IMU_Changed", "false");
    robot.on_charger = true;
    robot.enter("ChargingMode", "StopChargingIndex", 30);
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
    robot.enter("ChargingMode", "StopChargingIndex", 30);
    robot.on_charger = false;
    robot.tick(254);
    EXPECT_THAT(robot.requests(), Contains("StandbyMode")) << "nothing felt, no signal";

    robot.on_charger = true;
    robot.enter("ChargingMode", "StopChargingIndex", 30);
    robot.on_charger = false;
    robot.leaf("DoesWheelsDrop").succeeds();
    robot.tick(3);
    EXPECT_THAT(robot.requests(), Contains("StandbyMode")) << "lifted off by somebody";
}

TEST_F(ChargingMode, GoesBackToTheWorkThatTheStationInterrupted)
{
    robot.on_charger = true;
    for (const auto& [type, mode] :
         std::vector<std::pair<std::string, std::string>>{{"AutoClean", "AutoCleanMode"},
                                                          {"ZoneClean", "DrawAreaCleanMode"},
                                                          {"AreaClean", "SelectAreaCleanMode"},
                                                          {"PointClean", "SelectPointCleanMode"}}) {
        robot.set("need_back_station", "");
        robot.set("task_type", type);
        robot.set("task_state=cleaning LastRobotMode=14");
        robot.enter("ChargingMode", "StopChargingIndex", 50);
        EXPECT_THAT(robot.requests(), IsEmpty()) << type;
        robot.tick(70);
        EXPECT_THAT(robot.requests(), Contains(mode));
        EXPECT_EQ(robot.key("continue_work"), "clean_none");
    }
}

}  // namespace
}  // namespace vemra::test
