#include "support/supervised_robot.h"

namespace vemra::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Update and set-up of the Wi-Fi, each by itself; requests are only written down.
class ServiceMode : public testing::Test
{
protected:
    ServiceMode() : robot({"OTAModeDealIndex", "SetWIFIModeIndex"})
    {
        robot.obeys_requests = false;
        robot.tree("AdvCleanComplete").succeeds();
        robot.tree("SearchChargeEnding").succeeds();
        robot.set("dust_left_time", 700);
    }

    SupervisedRobot robot;
};

TEST_F(ServiceMode, UpdateClosesTheTaskAndHoldsTheEmptying)
{
    robot.on_charger = true;
    robot.set("task_state", "cleaning");
    robot.set("dust_handle", "");
    robot.start("OTAModeDealIndex");
    robot.tick(5);
    EXPECT_TRUE(robot.started(1, "AdvCleanComplete"));
    EXPECT_TRUE(robot.asked("Led_Mode_Set", {{"LedMode", "BUTTON_LED_OTA"}}));
    EXPECT_TRUE(robot.asked("DustContrlSet", {{"dust_status", "DUST_PAUSE"}, {"time_set", "700"}}));
    EXPECT_FALSE(robot.has("dust_handle"));
    EXPECT_EQ(robot.key("robot_status"), "clean_ota");
    EXPECT_TRUE(robot.askedNow("StopModeDeal"));

    robot.set("task_state", "search_charge");
    robot.set("annoy_ota", "");
    robot.start("OTAModeDealIndex");
    robot.tick(5);
    EXPECT_TRUE(robot.asked("SearchChargeEnding"));
    EXPECT_TRUE(robot.notAsked("AdvCleanComplete"));
    EXPECT_TRUE(robot.notAsked("Led_Mode_Set")) << "in quiet hours without a light";
    EXPECT_FALSE(robot.has("annoy_ota"));

    robot.on_charger = false;
    robot.set("task_state", "init");
    robot.start("OTAModeDealIndex");
    robot.tick(5);
    EXPECT_TRUE(robot.notAsked("DustContrlSet"));
    EXPECT_TRUE(robot.notAsked("SearchChargeEnding"));
}

TEST_F(ServiceMode, WifiSetUpShowsTheBatteryInItsLight)
{
    const std::vector<std::tuple<bool, int, std::string>> lights = {
        {true, 14, "BUTTON_LED_SetWifiPassword_Charging_Lowpower"},
        {true, 15, "BUTTON_LED_SetWifiPassword_Charging"},
        {true, 98, "BUTTON_LED_SetWifiPassword_Charging"},
        {true, 99, "BUTTON_LED_SetWifiPassword_ChargDone"},
        {false, 50, "BUTTON_LED_SetWifiPassword_Normal"},
    };
    for (const auto& [docked, percent, light] : lights) {
        robot.on_charger = docked;
        robot.battery = percent;
        robot.start("SetWIFIModeIndex");
        robot.tick(2);
        EXPECT_TRUE(robot.asked("Led_Mode_Set", {{"LedMode", light}})) << percent;
        EXPECT_TRUE(robot.started(1, "Led_Mode_Set"));
    }
    EXPECT_EQ(robot.key("robot_status"), "clean_wifi_conneting");
}

TEST_F(ServiceMode, WifiSetUpEndsInStandbyWithTheAnswerOrWithoutOne)
{
    robot.start("SetWIFIModeIndex");
    robot.tick(300);
    EXPECT_THAT(robot.requests(), IsEmpty());
    robot.tick(5);
    EXPECT_THAT(robot.requests(), ElementsAre("StandbyMode"));

    for (const char* cause : {"DoesAlreadyGetWIFIRes", "RobotTimerLongerThan_s"}) {
        robot.leaf(cause).succeeds();
        robot.forgetRequests();
        robot.start("SetWIFIModeIndex");
        robot.tick(3);
        EXPECT_THAT(robot.requests(), testing::Contains("StandbyMode")) << cause;
        robot.leaf(cause).fails();
    }
}

TEST(Laser, SpinsOnlyInModesThatMove)
{
    SupervisedRobot robot;
    for (const auto& [mode, tree] : modeTrees()) {
        const bool rests = mode == "StandbyMode" || mode == "ErrRepotMode" || mode == "PauseAndStopMode" ||
                           mode == "ChargingMode" || mode == "OtaModeMode" || mode == "SleepMode" ||
                           mode == "WIFISetMode" || mode == "PowerOffMode";
        robot.mode = mode;
        robot.start("LDS_CTRL");
        robot.tick();
        EXPECT_TRUE(robot.started(1, "LDS_Switch", {{"state", rests ? "false" : "true"}})) << mode;
    }
}

}  // namespace
}  // namespace vemra::test
