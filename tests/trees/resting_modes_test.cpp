#include "trees/resting_mode.h"

namespace vemra::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

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

    robot.set("task_state=cleaning ForceStandby=true");
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
        enter("SleepMode", "SleepModeDealIndex", 20);
        EXPECT_TRUE(robot.asked("Led_Mode_Set LedMode=BUTTON_LED_OFF"));
        EXPECT_EQ(robot.key("robot_status"), "clean_sleep_done");
        EXPECT_TRUE(robot.notAsked("BackToLastRobotMode"));
        robot.leaf(cause).succeeds();
        robot.tick();
        EXPECT_TRUE(robot.asked("BackToLastRobotMode")) << cause;
        robot.leaf(cause).fails();
    }
    robot.set("kicked=false annoy_active_tick=5");
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
    robot.leaf("RobotTimerLongerThan_s long_s=43200").succeeds();
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

    robot.set("task_state=area_cleaning station_info_save");
    robot.battery = 1;
    enter("PowerOffMode", "PowerOffModeIndex", 400);
    EXPECT_THAT(robot.music(), ElementsAre("200", "21", "200"));
    EXPECT_TRUE(robot.inOrder("AdvCleanComplete | CleanInfoSave | PowerOffModeDeal"));

    robot.set("task_state", "search_charge");
    robot.battery = 50;
    enter("PowerOffMode", "PowerOffModeIndex", 200);
    EXPECT_TRUE(robot.asked("SearchChargeEnding"));
    EXPECT_TRUE(robot.notAsked("AdvCleanComplete"));
}

TEST_F(RestingMode, UpdateClosesTheTaskAndHoldsTheEmptying)
{
    robot.on_charger = true;
    robot.set("dust_left_time=700 task_state=cleaning dust_handle");
    enter("OtaModeMode", "OTAModeDealIndex", 5);
    EXPECT_TRUE(robot.started(1, "AdvCleanComplete"));
    EXPECT_TRUE(robot.asked("Led_Mode_Set LedMode=BUTTON_LED_OTA"));
    EXPECT_TRUE(robot.asked("DustContrlSet dust_status=DUST_PAUSE time_set=700"));
    EXPECT_TRUE(robot.keysAre("-dust_handle robot_status=clean_ota"));
    EXPECT_TRUE(robot.askedNow("StopModeDeal"));

    robot.set("task_state=search_charge annoy_ota");
    enter("OtaModeMode", "OTAModeDealIndex", 5);
    EXPECT_TRUE(robot.asked("SearchChargeEnding"));
    EXPECT_TRUE(robot.notAsked("AdvCleanComplete"));
    EXPECT_TRUE(robot.notAsked("Led_Mode_Set")) << "in quiet hours without a light";
    EXPECT_FALSE(robot.has("annoy_ota"));
}

}  // namespace
}  // namespace vemra::test
