#include "support/scripted_robot.h"

namespace vemra::test {
namespace {

TEST(ScriptedRobotTool, RefusesNamesThatCannotBeAskedFor)
{
    ScriptedRobot robot;
    EXPECT_THROW(robot.leaf("Somersault"), std::invalid_argument);
    EXPECT_THROW(robot.leaf("Delay"), std::invalid_argument) << "the runtime's own";
    EXPECT_THROW(robot.tree("Somersault"), std::invalid_argument);
    EXPECT_THROW((void)robot.notAsked("Somersault"), std::invalid_argument);
    EXPECT_THROW((void)robot.notAsked("Rotate angle=90"), std::invalid_argument);
    EXPECT_THROW((void)robot.asked("Escape"), std::invalid_argument) << "not replaced";
    EXPECT_THROW(robot.start("Somersault"), BT::BehaviorTreeException);
    robot.leaf("CheckClifBump").runs();
    EXPECT_THROW(robot.run("NaviOnePointProc"), std::logic_error) << "a condition answers at once";
}

TEST(ScriptedRobotTool, TellsRunsHaltsAndPortsApart)
{
    ScriptedRobot robot;
    robot.tree("Escape").succeeds();
    robot.set("navi_target_point", 10);
    robot.leaf("NaviOnePoint").succeedsAfter(3);
    EXPECT_EQ(robot.run("NaviOnePointProc", 3), RUNNING);
    EXPECT_EQ(robot.tick(), SUCCESS);
    EXPECT_TRUE(robot.started(1, "NaviOnePoint target_point=10"));
    EXPECT_FALSE(robot.halted("NaviOnePoint"));
    EXPECT_TRUE(robot.halted("TemporarilyDisableSensor"));
    EXPECT_EQ(robot.framesOf("NaviOnePoint"), 4);
    EXPECT_TRUE(robot.started(4, "Escape")) << "a guard, entered in each frame";

    robot.tick(2);
    robot.set("navi_target_point", 20);
    robot.tick();
    EXPECT_TRUE(robot.started(2, "NaviOnePoint"));
    EXPECT_TRUE(robot.asked("NaviOnePoint target_point=20"));
    EXPECT_FALSE(robot.asked("NaviOnePoint target_point=30"));
    robot.halt();
    EXPECT_TRUE(robot.halted("NaviOnePoint"));
    EXPECT_TRUE(robot.inOrder("Escape | NaviOnePoint | Escape | NaviOnePoint"));
    EXPECT_FALSE(robot.inOrder("NaviOnePoint | NaviOnePoint | NaviOnePoint"));

    const auto failure = robot.started(5, "NaviOnePoint target_point=20");
    EXPECT_FALSE(failure);
    EXPECT_THAT(failure.message(), HasSubstr("was started 0 times, not 5"));
    EXPECT_THAT(failure.message(), HasSubstr("  1-4: NaviOnePoint target_point=\"10\" -> SUCCESS"));
    EXPECT_THAT(failure.message(), HasSubstr("target_point=\"20\" -> RUNNING, halted in 7"));
}

}  // namespace
}  // namespace vemra::test
