#include "support/supervised_robot.h"

namespace vemra::test {
namespace {

/// The robot charges, and its station can empty it.
struct Station : testing::Test
{
    Station()
    {
        robot.on_charger = true;
        robot.powerOn();
        robot.set("dust_switch=true dust_left_time=10000 dust_number=0 handle_dust_numbers=0");
        robot.set("clean_done_time=5 DustTimesSet=3");
        robot.leaf("DustTimeHandle").succeedsAfter(100);
        robot.leaf("SetDustTime").decides([](const Moment& now) {
            now.set("dust_left_time", std::stoi(now.port("time")));
            return SUCCESS;
        });
        robot.tick(130);  // the charge tune is over
        robot.forget();
        robot.forgetRequests();
    }

    void landAfterCleaning() { robot.set("Have_Clean_Before_AutoDust dust_handle"); }

    SupervisedRobot robot;
};

constexpr const char* kRun = "DustContrlSet dust_status=DUST_START time_set=10000";
constexpr const char* kQuit = "DustContrlSet dust_status=DUST_QUIT";

TEST_F(Station, CountsItsRunsUpToAThousand)
{
    robot.set("dust_number", 1001);
    landAfterCleaning();
    robot.leaf("NeedLongDustHandle").succeeds();
    robot.tick(240);
    EXPECT_EQ(robot.key("dust_number"), "1");
    EXPECT_TRUE(robot.asked("SetDustTime time=20000"));
}

TEST_F(Station, WaitsUntilThereWereMoreCleaningsThanItsSetting)
{
    robot.set("clean_done_time", 2);
    landAfterCleaning();
    robot.tick(2);
    EXPECT_EQ(robot.key("clean_done_time"), "3") << "not above the three that are set";
    EXPECT_FALSE(robot.has("dust_handle"));
    EXPECT_TRUE(robot.asked("CleanInfoSave"));
    robot.tick(400);
    EXPECT_TRUE(robot.notAsked(kRun));

    landAfterCleaning();
    robot.tick(340);
    EXPECT_TRUE(robot.started(1, kRun));
    EXPECT_EQ(robot.music().back(), "110");
    robot.tick(120);
    EXPECT_TRUE(robot.inOrder("SetDustTime | " + std::string(kRun) + " | DustTimeHandle | " + kQuit));
    EXPECT_TRUE(robot.keysAre("dust_number=1 clean_done_time=0 -Have_dust_task -dust_delay_start"));
    robot.set("dust_switch", "false");
    landAfterCleaning();
    robot.tick(2);
    EXPECT_FALSE(robot.has("dust_handle")) << "switched off";

    robot.set("dust_switch=true dust_handle");
    robot.tick(2);
    EXPECT_FALSE(robot.has("dust_handle")) << "no cleaning since the last landing";
}

TEST_F(Station, EmptiesOnDemandAndDropsItWhenTheLinkIsLostForTwentyTries)
{
    robot.set("APPDustHandle", "true");
    robot.tick(140);
    EXPECT_TRUE(robot.started(1, kRun));
    EXPECT_EQ(robot.key("handle_dust_numbers"), "1");
    robot.tick(110);
    EXPECT_TRUE(robot.asked(kQuit));
    EXPECT_FALSE(robot.has("APPDustHandle"));

    robot.leaf("IsInfraredConnect").fails();
    robot.set("APPDustHandle", "true");
    robot.tick(19);
    robot.leaf("IsInfraredConnect").succeeds();
    robot.tick(3);
    EXPECT_EQ(robot.key("handle_dust_numbers"), "2") << "the twentieth try reached it";
    robot.tick(300);

    const auto tunes = robot.music().size();
    robot.leaf("IsInfraredConnect").fails();
    robot.set("APPDustHandle", "true");
    robot.tick(21);
    robot.leaf("IsInfraredConnect").succeeds();
    robot.tick(300);
    EXPECT_TRUE(robot.keysAre("handle_dust_numbers=2 -APPDustHandle"));
    EXPECT_EQ(robot.music().size(), tunes) << "without a sound";
}

}  // namespace
}  // namespace vemra::test
