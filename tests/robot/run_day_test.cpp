#include <gmock/gmock.h>

#include "robot/robot_run.h"

namespace vemra::robot {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(DayOnTheDock, TheTreesLeadTheRobotFromPowerOnToPowerOff)
{
    RobotRun run = RobotRun::ofFile("day_on_the_dock.yaml");
    run.play();

    EXPECT_THAT(run.texts(LogKind::Mode),
                ElementsAre("ChargingMode", "StandbyMode", "PauseAndStopMode", "SleepMode",
                            "PauseAndStopMode", "StandbyMode", "PowerOffMode"));
    EXPECT_TRUE(run.said("Robot Detect Charger When Power On"));
    EXPECT_THAT(run.frames(LogKind::Music, "47"), testing::SizeIs(1)) << "the charge tune, once a landing";

    const std::uint64_t paused = run.first(LogKind::Light, "BUTTON_LED_Pause");
    const std::uint64_t asleep = run.first(LogKind::Mode, "SleepMode");
    EXPECT_EQ(asleep - paused, 30001U) << "30000 ticks of pause, and the change in the next frame";
    EXPECT_THAT(run.texts(LogKind::TaskState), ElementsAre("init", "cleaning", "init"));
    EXPECT_GT(run.frames(LogKind::TaskState, "init").back(), 37500U) << "kept through pause and sleep";

    EXPECT_TRUE(run.robot->over());
    EXPECT_THAT(run.texts(LogKind::Music, 45000), ElementsAre("21", "200"));
    EXPECT_FALSE(run.said("Err!!!!!!!  No This Mode"));
}

TEST(Run, SameFilesAndSeedGiveTheSameBytesInWhateverOrderTheServicesStand)
{
    const auto bytes = [](const std::function<void(RobotSetup&)>& adjust) {
        Scenario scenario = readScenario(VEMRA_SOURCE_DIR "/scenarios/timed_orders.yaml");
        return RobotRun(std::move(scenario), adjust).play().bytes();
    };
    const std::string once = bytes({});
    EXPECT_GT(once.size(), 10000U);
    EXPECT_EQ(once, bytes({}));
    // The log of one frame may be told in another order; each frame holds the same.
    const auto sorted = [](const std::string& text) {
        std::vector<std::string> lines;
        std::istringstream in(text);
        for (std::string line; std::getline(in, line);)
            lines.push_back(line);
        std::sort(lines.begin(), lines.end());
        return lines;
    };
    EXPECT_EQ(sorted(once), sorted(bytes([](RobotSetup& setup) {
                  setup.services = [](const RobotParts& parts, Knowledge& knowledge,
                                      const ScenarioStart& start) {
                      Services services = makeServices(parts, knowledge, start);
                      std::reverse(services.begin(), services.end());
                      return services;
                  };
              })));
}

TEST(StartUp, WaitsForTheBoardHoweverLongItTakes)
{
    RobotRun run(RobotRun::scenario("parameters_confirmed_after: 10s", {}));
    run.play();
    // Four sets, one after the other.
    EXPECT_GE(run.first(LogKind::Mode, "ChargingMode"), 4 * 500U);
    EXPECT_LE(run.first(LogKind::Mode, "ChargingMode"), 4 * 510U);
}

TEST(StartUp, ClearsAMapWhoseCheckIsNotZero)
{
    for (const char* check : {"0.5", "-1"}) {
        RobotRun run(RobotRun::scenario(std::string("on_dock: false, map: {check: ") + check + "}", {}));
        run.play();
        EXPECT_TRUE(run.said("at startup check reuse map_id return failed. clear map.")) << check;
        EXPECT_THAT(run.frames(LogKind::Custom, "map cleared"), testing::SizeIs(1)) << check;
        EXPECT_THAT(run.texts(LogKind::Mode), ElementsAre("StandbyMode")) << check;
    }
    RobotRun good(RobotRun::scenario("map: {check: 0}", {}));
    EXPECT_THAT(good.play().frames(LogKind::Custom, "map cleared"), IsEmpty());
}

TEST(Run, RefusesAPlaceOutsideTheHome)
{
    EXPECT_THAT(faultOf([] { RobotRun(RobotRun::scenario("", {"at: 1s, carry_to: [-50, 0, 0]"})); }),
                HasSubstr("run.yaml:5: \"carry_to\": expected a place"));
}

TEST(Run, AScenarioChangesTheHome)
{
    RobotRun run(RobotRun::scenario(
        "", {"at: 10, put_down: box, box_at: [1.5, 2.0, 1.9, 2.4]",
             "at: 20, put_down: box, box_at: [2.5, 2.0, 2.9, 2.4]", "at: 30, take_away: box"}));
    const auto blocked = [&run](std::uint64_t frame, PointMm point) {
        while (run.robot->frame() <= frame)
            run.robot->step();
        return run.robot->home().at(point) == CellState::Occupied;
    };
    constexpr PointMm first{1700, 2200};
    constexpr PointMm second{2700, 2200};
    EXPECT_FALSE(blocked(9, first));
    EXPECT_TRUE(blocked(10, first));
    EXPECT_FALSE(blocked(20, first)) << "there is one such thing";
    EXPECT_TRUE(blocked(20, second));
    EXPECT_FALSE(blocked(30, second));
}

TEST(Run, TellsWhichLeavesHaveNobodyBehindThem)
{
    RobotRun run(RobotRun::scenario("on_dock: false", {"at: 5s, app: back_home"}));
    run.play();
    const nlohmann::ordered_json report = run.robot->report();
    EXPECT_EQ(report["frames"], 3000);
    EXPECT_EQ(report["mode"], "BackHomeMode");
    EXPECT_FALSE(report["leaves_without_service"].contains("ChangeRobotModeTo"));
    EXPECT_TRUE(report["leaves_without_service"].contains("InDockField"));
    EXPECT_THAT(run.bytes(), HasSubstr("\n{\"report\":{"));
}

}  // namespace
}  // namespace vemra::robot
