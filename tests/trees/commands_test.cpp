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
    std::vector<std::string> pressed(const std::string& key, const std::string& mode,
                                     const std::string& value = "1")
    {
        in(mode);
        robot.press(key, value);
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

TEST_F(Command, OfTheStartKeyBelowFifteenPercentOnlySaysSo)
{
    robot.battery = 14;
    EXPECT_THAT(pressed(kStart, "StandbyMode"), IsEmpty());
    EXPECT_THAT(robot.music(), ElementsAre("20"));
    robot.battery = 15;
    EXPECT_THAT(pressed(kStart, "StandbyMode"), ElementsAre("AutoCleanMode"));
    EXPECT_EQ(robot.key("HealthDelay"), "true");
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
    robot.erase("start_backhome_method_key");
    robot.set("start_backhome_method_app", "1");
    robot.set("task_state", "completing");
    robot.set("last_clean_mode", "FastMapBuildMode");
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

TEST_F(Command, UnderTheChildLockPausesAndDoesNothingElse)
{
    robot.set("RobotChildLockStatus", 1);
    for (const char* key : {kStart, kHome}) {
        EXPECT_THAT(pressed(key, "StandbyMode"), IsEmpty()) << key;
        EXPECT_EQ(robot.music().back(), "118");
        EXPECT_THAT(pressed(key, "AutoCleanMode"), ElementsAre("PauseAndStopMode")) << key;
        EXPECT_EQ(robot.music().back(), "11");
    }
    pressed("Is_Key2_LongPressed", "StandbyMode", "6");
    EXPECT_EQ(robot.key("RobotChildLockStatus"), "1") << "not by this value";
    EXPECT_THAT(pressed("Is_Key2_LongPressed", "StandbyMode", "12"), IsEmpty());
    EXPECT_EQ(robot.key("RobotChildLockStatus"), "0");
    EXPECT_EQ(robot.music().back(), "117");
    EXPECT_THAT(pressed(kStart, "StandbyMode"), ElementsAre("AutoCleanMode"));
}

TEST_F(Command, OfAnyKeyButTwoWakesAndDoesNoMore)
{
    for (const char* value : {"1", "6", "12"}) {
        in("SleepMode");
        robot.press(kStart, value);
        robot.tick();
        EXPECT_TRUE(robot.asked("BackToLastRobotMode")) << value;
        EXPECT_THAT(robot.requests(), IsEmpty());
    }
    for (const char* value : {"3", "9"}) {
        pressed("Is_SetWIFIKey_Click", "SleepMode", value);
        EXPECT_TRUE(robot.notAsked("BackToLastRobotMode")) << value;
    }
}

TEST_F(Command, OfTheAppAsksForItsMode)
{
    EXPECT_THAT(commanded("AutoCleanMode", "StandbyMode"), ElementsAre("AutoCleanMode"));
    EXPECT_EQ(robot.key("start_clean_method_app"), "3");
    EXPECT_THAT(commanded("SelectAreaCleanMode", "StandbyMode"), ElementsAre("SelectAreaCleanMode"));
    EXPECT_EQ(robot.key("start_clean_method_app"), "4");
    EXPECT_THAT(commanded("DrawAreaCleanMode", "StandbyMode"), ElementsAre("DrawAreaCleanMode"));
    EXPECT_EQ(robot.key("start_clean_method_app"), "5");
    EXPECT_THAT(commanded("BackHomeMode", "StandbyMode"), ElementsAre("BackHomeMode"));
    EXPECT_EQ(robot.key("start_backhome_method_app"), "1");
    EXPECT_THAT(commanded("PauseAndStopMode", "AutoCleanMode"), ElementsAre("PauseAndStopMode"));
    robot.set("charge_voice_disable", "true");
    robot.set("start_from_charger_pose", "dock");
    EXPECT_THAT(commanded("StandbyMode", "AutoCleanMode"), ElementsAre("StandbyMode"));
    EXPECT_EQ(robot.key("charger_pose_cache"), "dock");
    EXPECT_EQ(robot.key("charge_voice_disable"), "false");
    EXPECT_EQ(robot.music().back(), "11");
    EXPECT_EQ(robot.key("ForceStandby"), "true");

    robot.battery = 14;
    for (const char* mode : {"AutoCleanMode", "SelectAreaCleanMode", "DrawAreaCleanMode",
                             "SelectPointCleanMode", "FastMapBuildMode"}) {
        EXPECT_THAT(commanded(mode, "PauseAndStopMode"), IsEmpty()) << mode;
        EXPECT_EQ(robot.music().back(), "20") << mode;
    }
    robot.battery = 80;
    for (const char* mode : {"OtaModeMode", "PowerOffMode", "FactoryMode"})
        EXPECT_THAT(commanded("AutoCleanMode", mode), IsEmpty()) << mode;
}

TEST_F(Command, OfAnUnknownKeyIsForgotten)
{
    EXPECT_THAT(pressed("", "StandbyMode"), IsEmpty());
    EXPECT_FALSE(robot.has("OloButton"));
    EXPECT_THAT(robot.music(), IsEmpty());
}

/// A timed order, of a cleaning of the whole home or of rooms.
class TimedOrder : public Command
{
protected:
    std::vector<std::string> ordered(const std::string& mode, const std::string& what = "AutoCleanMode")
    {
        in(mode);
        music_before_ = robot.music().size();
        robot.set("OrderAutoClean", "");
        robot.command(what);
        robot.tick();
        return robot.requests();
    }
    [[nodiscard]] std::vector<std::string> musicOfIt() const
    {
        return {robot.music().begin() + static_cast<std::ptrdiff_t>(music_before_), robot.music().end()};
    }

private:
    std::size_t music_before_ = 0;
};

TEST_F(TimedOrder, IsDroppedWithoutSoundInAModeThatWorks)
{
    for (const char* mode : {"DrawAreaCleanMode", "BackHomeMode", "RemoteCtrlMode", "WIFISetMode"})
        for (const char* what : {"AutoCleanMode", "SelectAreaCleanMode"}) {
            EXPECT_THAT(ordered(mode, what), IsEmpty()) << mode;
            EXPECT_THAT(musicOfIt(), IsEmpty()) << mode;
            EXPECT_FALSE(robot.has("OrderAutoClean")) << mode;
        }
    EXPECT_TRUE(robot.asked("RestoreCleanMode"));
}

TEST_F(TimedOrder, TakesUpTheOpenTaskFromAPauseAndWaitsForPower)
{
    for (const KindOfTask& kind : kindsOfTask())
        for (const std::string& state : kind.states) {
            robot.set("task_state", state);
            EXPECT_THAT(ordered("PauseAndStopMode"), Contains(kind.mode)) << state;
        }
    robot.battery = 14;
    for (const char* what : {"AutoCleanMode", "SelectAreaCleanMode"}) {
        EXPECT_THAT(ordered("StandbyMode", what), IsEmpty());
        EXPECT_THAT(musicOfIt(), ElementsAre("25"));
    }
}

TEST_F(TimedOrder, WithARegionToMergeRunsUnlessItRunsAlready)
{
    robot.leaf("NeedToMergeRegion").where("mode_order", "AutoCleanMode").succeeds();
    EXPECT_THAT(ordered("AutoCleanMode"), IsEmpty());
    EXPECT_THAT(musicOfIt(), ElementsAre("9"));
    EXPECT_FALSE(robot.has("OrderAutoClean"));

    robot.on_charger = true;
    robot.set("task_state", "zone_lowpower");
    EXPECT_THAT(ordered("ChargingMode"), IsEmpty());
    EXPECT_THAT(musicOfIt(), IsEmpty());
    EXPECT_EQ(robot.key("task_state"), "lowpower") << "it goes on as a cleaning of the home";

    robot.leaf("NeedToMergeRegion").where("mode_order", "SelectAreaCleanMode").succeeds();
    EXPECT_THAT(ordered("ChargingMode", "SelectAreaCleanMode"), IsEmpty());
    EXPECT_EQ(robot.key("task_state"), "area_lowpower");
    robot.on_charger = false;
    robot.set("task_state", "zone_cleaning");
    EXPECT_THAT(ordered("PauseAndStopMode", "SelectAreaCleanMode"), ElementsAre("SelectAreaCleanMode"));
    EXPECT_EQ(robot.key("task_state"), "area_cleaning");
}

}  // namespace
}  // namespace vemra::test
