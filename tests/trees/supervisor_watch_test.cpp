#include "support/supervised_robot.h"

namespace vemra::test {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

TEST(HealthCheck, WaitsFourTicksBehindACommandAndLeavesRestingModesAlone)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.enterMode("AutoCleanMode");
    robot.forgetRequests();
    robot.set("HealthDelay", "true");
    robot.errors = {"GESTURE"};
    robot.tick(4);
    EXPECT_THAT(robot.requests(), IsEmpty());
    robot.tick();
    EXPECT_THAT(robot.requests(), ElementsAre("ErrRepotMode"));

    for (const char* mode : {"ChargingMode", "SleepMode", "WIFISetMode", "StandbyMode"}) {
        robot.errors.clear();
        robot.enterMode(mode);
        robot.forgetRequests();
        robot.errors = {"GESTURE"};
        robot.tick(10);
        EXPECT_THAT(robot.requests(), IsEmpty()) << mode;
    }
}

TEST(LandingOnTheDock, PlaysTheChargeTuneOnceAfterAHundredTicks)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.on_charger = true;
    robot.tick(6);
    EXPECT_THAT(robot.requests(), ElementsAre("StandbyMode", "ChargingMode"));
    EXPECT_TRUE(robot.askedNow("StopChargingIndex"));
    EXPECT_TRUE(robot.has("just_on_charger"));
    robot.tick(90);
    EXPECT_THAT(robot.music(), Not(Contains("47")));
    robot.tick(30);
    EXPECT_THAT(robot.music(), ElementsAre("47"));
    robot.tick(500);
    EXPECT_THAT(robot.music(), ElementsAre("47"));

    robot.on_charger = false;
    robot.tick(99);
    EXPECT_TRUE(robot.has("just_on_charger"));
    robot.tick(5);
    EXPECT_FALSE(robot.has("just_on_charger"));
    robot.set("charge_voice_disable", "true");
    robot.on_charger = true;
    robot.tick(150);
    EXPECT_THAT(robot.music(), ElementsAre("47")) << "silenced for this landing";
    EXPECT_EQ(robot.key("charge_voice_disable"), "false");
}

TEST(LandingOnTheDock, ChangesNoModeThatWorksOrForbidsIt)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.enterMode("AutoCleanMode");
    robot.forgetRequests();
    robot.on_charger = true;
    robot.tick(20);
    EXPECT_THAT(robot.requests(), IsEmpty());
    robot.set("not_change_mode", "");
    robot.enterMode("PauseAndStopMode");
    robot.tick(20);
    EXPECT_THAT(robot.requests(), IsEmpty());
    robot.erase("not_change_mode");
    robot.tick(2);
    EXPECT_THAT(robot.requests(), Contains("ChargingMode"));
}

TEST(LowBattery, PowersOffBelowOnePercentOffTheDock)
{
    SupervisedRobot robot;
    robot.battery = 1;
    robot.powerOn();
    robot.forgetRequests();
    robot.tick(50);
    EXPECT_THAT(robot.requests(), IsEmpty());
    robot.battery = 0;
    robot.tick(7);
    EXPECT_THAT(robot.requests(), testing::AllOf(Not(IsEmpty()), Each("PowerOffMode")));
    EXPECT_TRUE(robot.askedNow("PowerOffModeIndex"));

    SupervisedRobot docked;
    docked.battery = 0;
    docked.on_charger = true;
    docked.powerOn();
    docked.tick(50);
    EXPECT_THAT(docked.requests(), Each("ChargingMode"));
}

TEST(Warnings, OfAPlaceThatCannotBeReachedSendTheCleaningRobotHome)
{
    SupervisedRobot robot;
    robot.powerOn();
    robot.warnings = {"CANNOTREACH_VIRTUALWALLSTUCK"};
    robot.tick(20);
    EXPECT_THAT(robot.music(), IsEmpty()) << "not while it stands by";
    robot.warnings.clear();
    robot.enterMode("DrawAreaCleanMode");
    robot.warnings = {"CANNOTREACH_VIRTUALWALLSTUCK"};
    robot.tick(5);
    EXPECT_THAT(robot.music(), Contains("150"));
    EXPECT_THAT(robot.requests(), Contains("BackHomeMode"));
}

TEST(Warnings, OfLaserAndMemoryAreToldOncePerSpell)
{
    for (const auto& [code, number] :
         std::vector<std::pair<std::string, std::string>>{{"HEAP_CHECK", "75"}, {"I_LDS_ERROR", "0"}}) {
        SupervisedRobot robot;
        robot.powerOn();
        robot.warnings = {code};
        robot.tick(20);
        EXPECT_THAT(robot.music(), ElementsAre(number));
        robot.warnings.clear();
        robot.tick(2);
        robot.warnings = {code};
        robot.tick(20);
        EXPECT_THAT(robot.music(), ElementsAre(number, number));
    }
}

}  // namespace
}  // namespace vemra::test
