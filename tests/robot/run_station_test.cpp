#include <gmock/gmock.h>

#include "robot/robot_run.h"

namespace vemra::robot {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kHasCleaned = "battery: 60, keys: {DustTimesSet: 0, Have_Clean_Before_AutoDust: \"\"}";

TEST(Emptying, GoesOnLongerAfterABlockAndIsInErrorForAnOpenCapAndABlockThatStays)
{
    RobotRun run = RobotRun::ofFile("emptying_with_a_block.yaml");
    run.play();
    const auto runs = run.frames(LogKind::Custom, "emptying runs");
    const auto done = run.frames(LogKind::Custom, "emptying stops: done");
    ASSERT_GE(runs.size(), 2U);
    ASSERT_GE(done.size(), 2U);
    EXPECT_THAT(run.texts(LogKind::Message, 600, 630), Contains("1 continue dust..."));
    // 10 s that were ordered, 10 s more for going on, and the time in which no air flowed (600 to 750).
    EXPECT_NEAR(static_cast<double>(done[0] - runs[0]), 1000 + 150, 2);
    EXPECT_THAT(run.texts(LogKind::Mode, 0, done[0]), ElementsAre("ChargingMode")) << "no error";

    EXPECT_THAT(run.texts(LogKind::Mode, 2300, 2599), ElementsAre("ErrRepotMode", "ChargingMode"));
    EXPECT_THAT(run.texts(LogKind::Music, 2300, 2310), ElementsAre("101"));
    EXPECT_THAT(run.texts(LogKind::Message, 2600, 2600), Contains("restart dust..."));
    EXPECT_NEAR(static_cast<double>(done[1]), 2600 + (500 - 170), 2) << "what was left of it";

    EXPECT_NEAR(static_cast<double>(run.first(LogKind::Error, "station: DUST_BLOCK raised")), 4800 + 500, 2);
    EXPECT_THAT(run.texts(LogKind::Music, 5250, 5350), ElementsAre("102"));
    EXPECT_THAT(run.texts(LogKind::Mode, 5250, 5350), ElementsAre("ErrRepotMode", "ChargingMode"));
}

TEST(Emptying, DoesNotBeginWithoutABagInQuietHoursOrWithoutInfrared)
{
    RobotRun no_bag(RobotRun::scenario(kHasCleaned, {"at: 1s, station: {bag: false}"}));
    RobotRun quiet(RobotRun::scenario(std::string(kHasCleaned) + ", annoy: {from: 0, to: 40s}", {}));
    RobotRun no_link(RobotRun::scenario("", {"at: 5s, station: {link: false}", "at: 10s, empty_now: true"}));
    for (RobotRun* run : {&no_bag, &quiet, &no_link}) {
        run->play();
        EXPECT_THAT(run->frames(LogKind::Custom, "emptying runs"), IsEmpty());
    }
    EXPECT_THAT(no_bag.texts(LogKind::Music), Contains("101"));
    EXPECT_THAT(no_bag.texts(LogKind::Mode), Contains("ErrRepotMode"));
    EXPECT_THAT(quiet.texts(LogKind::StationLight), Contains("STATTON_LED_WhiteOff"));
    EXPECT_THAT(no_link.texts(LogKind::Music, 500), IsEmpty()) << "dropped in silence";
}

TEST(Emptying, EndsWhenTheRobotIsTakenAway)
{
    RobotRun run(RobotRun::scenario(kHasCleaned, {"at: 10s, carry_to: [1.2, 3.2, 0]"}));
    run.play();
    EXPECT_THAT(run.frames(LogKind::Custom, "emptying runs"), SizeIs(1));
    EXPECT_THAT(run.texts(LogKind::Custom, 500, 501), Contains(testing::StartsWith("emptying stops")));
    EXPECT_THAT(run.texts(LogKind::Message, 500, 501), Contains("dust init."));
}

}  // namespace
}  // namespace vemra::robot
