#include "support/supervised_robot.h"

namespace vemra::test {
namespace {

/// The robot stands by, and what follows is a command.
struct Command : testing::Test
{
    Command()
    {
        robot.powerOn();
        robot.obeys_requests = false;
    }

    void in(const std::string& mode)
    {
        if (mode != robot.mode)
            robot.enterMode(mode);
        robot.forgetRequests();
        robot.forget();
    }
    /// What was asked for by one press of a key, in this mode.
    std::vector<std::string> pressed(const std::string& key, const std::string& mode)
    {
        in(mode);
        robot.press(key);
        robot.tick();
        return robot.requests();
    }
    std::vector<std::string> commanded(const std::string& command, const std::string& mode)
    {
        in(mode);
        robot.command(command);
        robot.tick();
        return robot.requests();
    }

    SupervisedRobot robot;
};

constexpr const char* kStart = "Is_Key1_Click";
constexpr const char* kHome = "Is_Key2_Click";

// The kinds of tasks: mode, type, and how their states begin.
constexpr std::tuple<const char*, const char*, const char*> kKinds[] = {
    {"DrawAreaCleanMode", "ZoneClean", "zone_"},
    {"SelectAreaCleanMode", "AreaClean", "area_"},
    {"SelectPointCleanMode", "PointClean", "point_"},
    {"AutoCleanMode", "AutoClean", ""}};
constexpr const char* kOpen[] = {"cleaning", "lowpower", "lowpower_pause"};

TEST_F(Command, ToStartResumesTheOpenKindOfTask)
{
    const auto started = [this](const std::string& state, const std::string& type) {
        robot.set("task_state=" + state + " task_type=" + type);
        auto by_key = pressed(kStart, "PauseAndStopMode");
        EXPECT_EQ(robot.key("start_clean_method_key"), "1");
        EXPECT_EQ(commanded("AutoCleanMode", "PauseAndStopMode"), by_key) << state << " by the app";
        return by_key;
    };
    for (const auto& [mode, type, prefix] : kKinds) {
        for (const char* state : kOpen)
            EXPECT_THAT(started(std::string(prefix) + state, "Idle"), ElementsAre(mode)) << state;
        EXPECT_THAT(started("precleaning", type), ElementsAre(mode)) << type;
    }
    EXPECT_THAT(started("init", "Idle"), ElementsAre("AutoCleanMode"));
    EXPECT_THAT(started("map_cleaning", "Idle"), ElementsAre("FastMapBuildMode"));
    EXPECT_THAT(started("precleaning", "MapClean"), ElementsAre("FastMapBuildMode"));
    robot.set("last_clean_mode", "FastMapBuildMode");
    EXPECT_THAT(started("completing", "Idle"), ElementsAre("FastMapBuildMode"));
    robot.set("last_clean_mode", "AutoCleanMode");
    EXPECT_THAT(started("completing", "Idle"), ElementsAre("AutoCleanMode"));
}

TEST_F(Command, OfTheHomeKeySendsTheRobotHomeUnlessItIsThere)
{
    EXPECT_THAT(pressed(kHome, "StandbyMode"), ElementsAre("BackHomeMode"));
    EXPECT_EQ(robot.key("start_backhome_method_key"), "2");
    robot.set("-start_backhome_method_key start_backhome_method_app=1 task_state=completing");
    robot.set("last_clean_mode=FastMapBuildMode");
    EXPECT_THAT(pressed(kHome, "StandbyMode"), ElementsAre("BackHomeMode"));
    EXPECT_FALSE(robot.has("start_backhome_method_key")) << "the app was first";
    EXPECT_EQ(robot.key("FastMapCleanCancleFlag"), "true");
    robot.on_charger = true;
    EXPECT_THAT(commanded("BackHomeMode", "ChargingMode"), IsEmpty());
}

TEST_F(Command, OfTheAppAsksForItsMode)
{
    const std::vector<std::tuple<std::string, std::string, std::string>> cleanings = {
        {"AutoCleanMode", "start_clean_method_app", "3"},
        {"SelectAreaCleanMode", "start_clean_method_app", "4"},
        {"DrawAreaCleanMode", "start_clean_method_app", "5"},
        {"BackHomeMode", "start_backhome_method_app", "1"},
    };
    for (const auto& [mode, key, value] : cleanings) {
        EXPECT_THAT(commanded(mode, "StandbyMode"), ElementsAre(mode));
        EXPECT_EQ(robot.key(key), value) << mode;
    }
    EXPECT_THAT(commanded("PauseAndStopMode", "AutoCleanMode"), ElementsAre("PauseAndStopMode"));
    EXPECT_THAT(commanded("StandbyMode", "AutoCleanMode"), ElementsAre("StandbyMode"));
    EXPECT_EQ(robot.music().back(), "11");
    EXPECT_EQ(robot.key("ForceStandby"), "true");

    for (const char* mode : {"OtaModeMode", "PowerOffMode", "FactoryMode"})
        EXPECT_THAT(commanded("AutoCleanMode", mode), IsEmpty()) << mode;
    robot.battery = 14;
    for (const char* mode : {"AutoCleanMode", "SelectAreaCleanMode", "DrawAreaCleanMode",
                             "SelectPointCleanMode", "FastMapBuildMode"}) {
        EXPECT_THAT(commanded(mode, "PauseAndStopMode"), IsEmpty()) << mode;
        EXPECT_EQ(robot.music().back(), "20") << mode;
    }
}

TEST_F(Command, OfATimerTakesUpTheOpenTaskFromAPause)
{
    for (const auto& [mode, type, prefix] : kKinds)
        for (const char* state : kOpen) {
            robot.set(std::string("OrderAutoClean task_state=") + prefix + state);
            EXPECT_THAT(commanded("AutoCleanMode", "PauseAndStopMode"), Contains(mode)) << prefix << state;
        }
}

}  // namespace
}  // namespace vemra::test
