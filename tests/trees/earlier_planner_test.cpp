#include "support/scripted_robot.h"

namespace vemra::test {
namespace {

/// One line is found, and then the part is done.
class LinesFirst : public testing::Test
{
protected:
    LinesFirst()
    {
        robot.pointsOnALine();
        robot.set("current_pose", 0);
        robot.set("current_coord", 0);
        for (const char* key : {"current_subregion", "next_line_to_clean", "finish_point"})
            robot.set(key, 0);
        robot.set("start_point", 4000);
        robot.set("bump_dir", "None");
        robot.set("bump_dir_save", "None");
        robot.leaf("GridmapLimitCheck").succeeds();
        robot.leaf("RefineCurrentSubregion").inTurn({SUCCESS, FAILURE});
        robot.leaf("IsPointInRectangle").succeeds();
        robot.leaf("PlanNextLineForVslam").succeeds();
        robot.leaf("AwesomeSearch").succeeds();
        robot.tree("Back2cm").succeeds();
        robot.tree("FixOrientation").succeeds();
        robot.tree("NavigateFollowWall").fails();
    }

    ScriptedRobot robot;
};

TEST_F(LinesFirst, RunsALineWhoseStartItReached)
{
    robot.tree("NavigateProc").succeeds();
    robot.start("PlanInSubregion_GongFollow");
    EXPECT_EQ(robot.finish(30), SUCCESS);
    EXPECT_TRUE(robot.started(1, "FixOrientation"));
    EXPECT_EQ(robot.key("bump_dir_save"), "None");
}

TEST_F(LinesFirst, LeavesALineAloneWhoseStartItDidNotReach)
{
    robot.set("switch_line_bump_dir", "left");
    robot.tree("NavigateProc").fails();
    robot.start("PlanInSubregion_GongFollow");
    EXPECT_EQ(robot.finish(30), SUCCESS);
    EXPECT_TRUE(robot.started(1, "PlanNextLineForVslam"));
    EXPECT_TRUE(robot.notAsked("FixOrientation"));
    EXPECT_FALSE(robot.has("current_line")) << "nothing is noted of a line that was not run";
}

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
    robot.leaf("CheckClifBump").succeeds();
    robot.tree("Back2cm").succeeds();
    robot.start("SwitchLineTurn");
    EXPECT_EQ(robot.finish(20), FAILURE);
    EXPECT_TRUE(robot.started(1, "Back2cm"));
    EXPECT_TRUE(robot.notAsked("TurnAround"));
}

}  // namespace
}  // namespace vemra::test
