#include <algorithm>
#include <nlohmann/json.hpp>

#include "leaves/contract.h"
#include "robot/robot_run.h"

namespace vemra::robot {
namespace {

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
        std::vector<std::string> lines = test::linesOf(text);
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

TEST(Run, TheRobotsModesAreThoseThatTreesKnow)
{
    std::vector<std::string_view> modes;
    for (int number = 1; const auto mode = modeFromNumber(number); ++number)
        modes.emplace_back(toText(*mode));
    const leaf::PortContract& port = leaf::find("RobotModeAdjugement")->ports.front();
    EXPECT_THAT(port.values, UnorderedElementsAreArray(modes));
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
    EXPECT_TRUE(blocked(10, first));
    EXPECT_FALSE(blocked(20, first)) << "there is one such thing";
    EXPECT_TRUE(blocked(20, second));
    EXPECT_FALSE(blocked(30, second));
}

TEST(Run, TellsWhichLeavesHaveNobodyBehindThem)
{
    RobotRun turning(RobotRun::scenario("on_dock: false", {}, "1s"),
                     [](RobotSetup& setup) { setup.tree = "SwitchLineTurn"; });
    turning.play();
    EXPECT_TRUE(
        turning.robot->report()["leaves_without_service"].contains("CalcSwitchLineFollowWallDirection"));
}

// One line of the scenario, held against a minute on the dock: charging from frame 20 on, music 47 in frame
// 139, standing by six seconds after somebody carried it out of the dock's hearing at 20 s.
struct Expected : testing::Test
{
    static std::string unmet(const std::string& at, const std::string& expect)
    {
        RobotRun run(RobotRun::scenario(
            "", {"at: 20s, carry_to: [8, 5.5, 0]", "at: " + at + ", expect: {" + expect + "}"}));
        run.play();
        EXPECT_EQ(run.robot->openExpectations(), 0U);
        std::string lines;
        for (const Unmet& one : run.robot->unmet())
            lines += std::to_string(one.line) + " " + std::to_string(one.frame) + " " + one.text;
        EXPECT_EQ(run.robot->report()["expectations"]["unmet"], run.robot->unmet().size());
        return lines;
    }
};

TEST_F(Expected, AStateIsThereAtOnceOrWithinItsTime)
{
    EXPECT_EQ(unmet("20", "mode: ChargingMode, docked: true, powered_off: false"), "");
    EXPECT_EQ(unmet("0", "mode: ChargingMode, task_state: init, within: 20"), "");
    EXPECT_THAT(unmet("0", "mode: ChargingMode, within: 19"),
                Eq("6 19 expected {mode: ChargingMode, within: 19}: mode was none"));
    EXPECT_THAT(unmet("10s", "mode: StandbyMode, docked: false"),
                HasSubstr("6 500 expected {mode: StandbyMode, docked: false}: mode was ChargingMode, "
                          "docked was true"));
    EXPECT_THAT(unmet("0", "mode: StandbyMode, docked: true"), Not(IsEmpty())) << "never both in one frame";
    EXPECT_THAT(unmet("30s", "keys: {task_state: cleaning, nothing: x}, absent: [task_state]"),
                HasSubstr("task_state was init, there was no key nothing, there was a key task_state"));
    EXPECT_EQ(unmet("10s", "place: [3, 3.6], mm: 100"), "");
    EXPECT_THAT(unmet("10s", "place: [3, 3], mm: 100"), HasSubstr("stood at [3.00, 3.62], 625 mm away"));
    EXPECT_THAT(unmet("10s", "coverage: 1"), HasSubstr("0.0 % of the floor was swept"));
    EXPECT_THAT(unmet("10s", "error: BRUSH"), HasSubstr("no error BRUSH, but none"));
}

TEST_F(Expected, WhatIsToldComesInItsTimeAsOftenAsIsSaid)
{
    EXPECT_EQ(unmet("0", "music: [47]"), "");
    EXPECT_EQ(unmet("139", "music: [47], within: 0"), "");
    EXPECT_THAT(unmet("140", "music: [47]"), HasSubstr("6 2999 expected {music: [47]}: music was none"));
    EXPECT_EQ(unmet("0", "modes: [ChargingMode, StandbyMode]"), "");
    EXPECT_THAT(unmet("0", "modes: [ChargingMode]"), HasSubstr("modes was ChargingMode, StandbyMode"));
    EXPECT_EQ(unmet("0", "modes: [ChargingMode], within: 20s"), "");
    EXPECT_EQ(unmet("0", "message: Robot Detect Charger"), "");
    EXPECT_THAT(unmet("10s", "message: Robot Detect Charger, within: 1s"),
                HasSubstr("6 550 expected {message: Robot Detect Charger, within: 1s}: it was not told"));
    EXPECT_EQ(unmet("0", "told: off the dock, times: 1"), "");
    EXPECT_THAT(unmet("0", "told: off the dock, times: 0"), HasSubstr("it came 1 times"));
}

TEST_F(Expected, NeverIsSaidOfAStateAndOfWhatIsTold)
{
    EXPECT_EQ(unmet("0", "never: {mode: StandbyMode}, within: 20s"), "");
    EXPECT_THAT(unmet("0", "never: {mode: StandbyMode}"), HasSubstr("6 1251 expected"));
    EXPECT_THAT(unmet("0", "never: {told: off the dock}"), HasSubstr("6 1000 expected"));
    EXPECT_EQ(unmet("0", "never: {mode: StandbyMode, docked: true}"), "") << "not at the same time";
}

TEST(Expectation, OfARobotThatIsOffIsHeldAgainstWhatItIs)
{
    RobotRun off(
        RobotRun::scenario("on_dock: false", {"at: 5s, battery: 0.5", "at: 50s, expect: {powered_off: true}",
                                              "at: 50s, expect: {mode: StandbyMode}"}));
    off.play();
    ASSERT_EQ(off.robot->unmet().size(), 1U);
    EXPECT_THAT(off.robot->unmet()[0].text, HasSubstr("mode was PowerOffMode"));
}

}  // namespace
}  // namespace vemra::robot
