#include <gmock/gmock.h>

#include "robot/robot_run.h"

namespace vemra::robot {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

// What a person notices in the two seconds after something happened.
struct Noticed
{
    std::vector<std::string> modes;
    std::vector<std::string> music;
};

Noticed after(const RobotRun& run, int seconds)
{
    const auto frame = static_cast<std::uint64_t>(seconds) * 50;
    return {run.texts(LogKind::Mode, frame, frame + 100), run.texts(LogKind::Music, frame, frame + 100)};
}

TEST(ChildLock, RefusesAtRestStopsOnTheWayAndIsTakenOffAtThePanel)
{
    RobotRun run = RobotRun::ofFile("child_lock.yaml");
    run.play();
    for (const int at : {10, 15, 20, 90}) {
        EXPECT_THAT(after(run, at).modes, IsEmpty()) << at;
        EXPECT_THAT(after(run, at).music, ElementsAre("118")) << at;
    }
    EXPECT_THAT(after(run, 40).modes, testing::Contains("PauseAndStopMode"));
    EXPECT_THAT(after(run, 40).music, ElementsAre("11"));
    EXPECT_THAT(after(run, 50).music, ElementsAre("117"));
    EXPECT_THAT(after(run, 60).modes, ElementsAre("BackHomeMode"));
    EXPECT_THAT(after(run, 80).music, ElementsAre("116"));
    EXPECT_THAT(after(run, 100).music, ElementsAre("117"));
}

TEST(TimedOrder, DoesInEachModeWhatItMayThere)
{
    RobotRun run = RobotRun::ofFile("timed_orders.yaml");
    run.play();
    EXPECT_THAT(after(run, 10).modes, ElementsAre("AutoCleanMode")) << "standing by";
    EXPECT_THAT(after(run, 20).music, ElementsAre("9")) << "the task runs already";
    EXPECT_THAT(after(run, 20).modes, IsEmpty());
    for (const int barred : {35, 45, 55, 65, 75, 82}) {
        EXPECT_THAT(after(run, barred).modes, IsEmpty()) << barred;
        EXPECT_THAT(after(run, barred).music, IsEmpty()) << barred;
    }
    EXPECT_THAT(after(run, 110).modes, ElementsAre("DrawAreaCleanMode")) << "a paused area";
    EXPECT_THAT(after(run, 125).modes, Contains("SelectAreaCleanMode")) << "in error";
    EXPECT_THAT(after(run, 155).modes, IsEmpty());
    EXPECT_THAT(run.texts(LogKind::TaskState, 7750, 7760), ElementsAre("lowpower")) << "charging";
    EXPECT_THAT(after(run, 165).modes, IsEmpty());
    EXPECT_THAT(after(run, 165).music, ElementsAre("25")) << "too little power";
    EXPECT_FALSE(run.robot->blackboard().contains("OrderAutoClean")) << "no order is left over";
}

TEST(Keys, StartUnderFifteenPercentOnlyComplains)
{
    RobotRun run(RobotRun::scenario("on_dock: false, battery: 14", {"at: 10s, key: start"}));
    run.play();
    EXPECT_THAT(after(run, 10).modes, IsEmpty());
    EXPECT_THAT(after(run, 10).music, ElementsAre("20"));
}

TEST(Keys, AreTakenOneAfterTheOther)
{
    RobotRun run(RobotRun::scenario(
        "on_dock: false", {"at: 10s, key: start", "at: 10s, key: start", "at: 20s, key: key1_long"}));
    run.play();
    EXPECT_THAT(run.texts(LogKind::Mode), ElementsAre("StandbyMode", "AutoCleanMode", "PauseAndStopMode",
                                                      "StandbyMode", "PowerOffMode"));
    EXPECT_TRUE(run.robot->over());
}

TEST(Sleep, IsLeftByOtherKeysThanSetUpAndByTheApp)
{
    const auto modes = [](const std::string& wake) {
        // Full on the dock, the robot falls asleep at once.
        RobotRun run(RobotRun::scenario("battery: 100", {"at: 30s, " + wake}));
        run.play();
        EXPECT_THAT(run.texts(LogKind::Mode, 0, 1499), ElementsAre("ChargingMode", "SleepMode"));
        return run.texts(LogKind::Mode, 1500, 1600);
    };
    EXPECT_THAT(modes("key: start"), ElementsAre("ChargingMode"));
    EXPECT_THAT(modes("find_robot: true"), ElementsAre("ChargingMode"));
    EXPECT_THAT(modes("key: reset"), IsEmpty());
}

TEST(SelfTest, OfTheBoardRetriesAFailedTestAndEndsInStandby)
{
    RobotRun run(RobotRun::scenario(
        "on_dock: false",
        {"at: 5s, self_test: board", "at: 6s, error: I_FAN_SPEED", "at: 20s, clear_error: I_FAN_SPEED"}));
    run.play();
    EXPECT_GT(run.frames(LogKind::Custom, "RobotSelfTest_Fan failed").size(), 5U);
    EXPECT_NEAR(static_cast<double>(run.first(LogKind::Custom, "RobotSelfTest_Fan passed")), 1000, 30);
    EXPECT_THAT(run.texts(LogKind::Mode), ElementsAre("StandbyMode", "SelfTestMode", "StandbyMode"));
}

}  // namespace
}  // namespace vemra::robot
