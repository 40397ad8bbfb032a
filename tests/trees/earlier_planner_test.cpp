#include "support/scripted_robot.h"

namespace vemra::test {
namespace {

TEST(SwitchLineTurn, BacksOffOnceFromWhatTheArcTouches)
{
    ScriptedRobot robot;
    robot.set("current_yaw_deg", 0.0);
    robot.leaf("CalcSwitchLineTurnParam").decides([n = 0](const Moment& now) mutable {
        now.set("turn_radius", 300);
        now.set("turn_angle", n++ == 0 ? 180 : 90);
        return SUCCESS;
    });
    robot.leaf("Rotate").decides([](const Moment& now) {
        now.set("current_yaw_deg", 100.0);
        return RUNNING;
    });
    robot.succeed("CheckClifBump | Back2cm");
    robot.start("SwitchLineTurn");
    EXPECT_EQ(robot.finish(20), FAILURE);
    EXPECT_TRUE(robot.started(1, "Back2cm"));
    EXPECT_TRUE(robot.notAsked("TurnAround"));
}

}  // namespace
}  // namespace vemra::test
