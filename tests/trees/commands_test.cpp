#include "support/supervised_robot.h"

namespace vemra::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

/// The robot stands by, and what follows is a command.
class Command : public testing::Test
{
protected:
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

struct KindOfTask
{
    std::string mode;
    std::string type;
    std::vector<std::string> states;
};

const std::vector<KindOfTask>& kindsOfTask()
{
    static const std::vector<KindOfTask> kinds = {
        {"DrawAreaCleanMode", "ZoneClean", {"zone_cleaning", "zone_lowpower", "zone_lowpower_pause"}},
        {"SelectAreaCleanMode", "AreaClean", {"area_cleaning", "area_lowpower", "area_lowpower_pause"}},
        {"SelectPointCleanMode", "PointClean", {"point_cleaning", "point_lowpower", "point_lowpower_pause"}},
        {"AutoCleanMode", "AutoClean", {"cleaning", "lowpower", "lowpower_pause"}},
    };
    return kinds;
}

TEST_F(Command, ToStartResumesTheOpenKindOfTask)
{
    const auto started = [this](const std::string& state, const std::string& type) {
        robot.set("task_state", state);
        robot.set("task_type", type);
        auto by_key = pressed(kStart, "PauseAndStopMode");
        EXPECT_EQ(robot.key("start_clean_method_key"), "1");
        EXPECT_EQ(commanded("AutoCleanMode", "PauseAndStopMode"), by_key) << state << " by the app";
        return by_key;
    };
    for (const KindOfTask& kind : kindsOfTask()) {
        for (const std::string& state : kind.states)
            EXPECT_THAT(started(state, "Idle"), ElementsAre(kind.mode)) << state;
        EXPECT_THAT(started("precleaning", kind.type), ElementsAre(kind.mode)) << kind.type;
    }
    EXPECT_THAT(started("init", "Idle"), ElementsAre("AutoCleanMode"));
    EXPECT_THAT(started("map_cleaning", "Idle"), ElementsAre("FastMapBuildMode"));
    EXPECT_THAT(started("precleaning", "MapClean"), ElementsAre("FastMapBuildMode"));
    robot.set("last_clean_mode", "FastMapBuildMode");
    EXPECT_THAT(started("completing", "Idle"), ElementsAre("FastMapBuildMode"));
    robot.set("last_clean_mode", "AutoCleanMode");
    EXPECT_THAT(started("completing", "Idle"), ElementsAre("AutoCleanMode"));
}

TEST_F(Command, OfAKeyInARunningModePauses)
{
    for (const char* mode : {"AutoCleanMode", "SelectAreaCleanMode", "BackHomeMode", "FastMapBuildMode"})
        for (const char* key : {kStart, kHome, "Is_Key2_LongPressed"})
            EXPECT_THAT(pressed(key, mode), ElementsAre("PauseAndStopMode")) << mode << " " << key;
    EXPECT_THAT(robot.music(), testing::Each("11"));
    EXPECT_TRUE(robot.asked("Stop"));
    EXPECT_THAT(pressed(kHome, "PartCleanMode"), ElementsAre("StandbyMode")) << "a spot is given up";
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
    EXPECT_THAT(pressed(kHome, "ChargingMode"), IsEmpty());
    EXPECT_THAT(robot.music(), Contains("18"));
    EXPECT_THAT(commanded("BackHomeMode", "ChargingMode"), IsEmpty());
}

TEST_F(Command, OfALongPressSwitchesOffOnlyAtRestAndOffTheDock)
{
    EXPECT_THAT(pressed("Is_Key1_LongPressed", "PauseAndStopMode"), ElementsAre("PowerOffMode"));
    EXPECT_THAT(pressed("Is_Key1_LongPressed", "AutoCleanMode"), IsEmpty());
    robot.on_charger = true;
    EXPECT_THAT(pressed("Is_Key1_LongPressed", "ChargingMode"), IsEmpty());
    EXPECT_THAT(robot.music(), Contains("19"));
    robot.on_charger = false;
    EXPECT_THAT(pressed("Is_Key2_LongPressed", "StandbyMode"), ElementsAre("PartCleanMode"));
    EXPECT_EQ(robot.key("start_clean_method_key"), "2");
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
    for (const KindOfTask& kind : kindsOfTask())
        for (const std::string& state : kind.states) {
            robot.set("task_state", state);
            robot.set("OrderAutoClean", "");
            EXPECT_THAT(commanded("AutoCleanMode", "PauseAndStopMode"), Contains(kind.mode)) << state;
        }
}

}  // namespace
}  // namespace vemra::test
