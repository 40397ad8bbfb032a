#include "support/scripted_robot.h"

namespace vemra::test {
namespace {

/// A plan of vector segments or bridges; the goal stands at 1000 mm.
class PlanWalk : public testing::Test
{
protected:
    PlanWalk()
    {
        robot.pointsOnALine();
        robot.set("navi_target_point=1000 current_pose=0 current_coord=0 navigation_path_segments=plan");
        robot.set("navigation_path=path bump_dir=Left");
    }

    void planOf(std::initializer_list<NodeStatus> left) { robot.leaf("CheckPathSegment").inTurn(left); }

    /// Each run of the planner or of a bridge brings the robot to `at` and ends so.
    static Answer::Function bringsTo(int at, NodeStatus result)
    {
        return [at, result](const Moment& now) {
            now.set("current_pose", at);
            now.set("current_coord", at);
            return result;
        };
    }

    /// How many segments were asked for when the planner gave up at `pose` and the segment ended at 500.
    int segmentsAfterGivingUpAt(int pose)
    {
        robot.leaf("PathSegIsVector").succeeds();
        robot.set("navi_path_target", 500);
        robot.leaf("DwaLocalPlanner").decides(bringsTo(pose, FAILURE));
        planOf({SUCCESS, FAILURE});
        robot.start("GotoPoint");
        EXPECT_EQ(robot.finish(100), FAILURE) << "it is not at the goal";
        EXPECT_TRUE(robot.asked("Stop"));
        return robot.transcript().starts("CheckPathSegment", {});
    }

    /// The same after a bridge that was crossed from 100 to `pose`.
    int segmentsAfterCrossingTo(int pose)
    {
        robot.set("current_coord=100 current_pose=100");
        robot.leaf("PathSegIsVector").fails();
        robot.tree("CrossBridge").decides(bringsTo(pose, SUCCESS));
        planOf({SUCCESS, FAILURE});
        robot.start("GotoPoint");
        EXPECT_EQ(robot.finish(100), FAILURE);
        return robot.transcript().starts("CheckPathSegment", {});
    }

    ScriptedRobot robot;
};

TEST_F(PlanWalk, ThatBreaksOffWithin110MmOr220BeforeATrialBridgeHasDoneItsSegment)
{
    EXPECT_EQ(segmentsAfterGivingUpAt(395), 2);
    EXPECT_EQ(segmentsAfterGivingUpAt(385), 1);
    robot.set("trial_bridge_next_to_this_vector", "true");
    EXPECT_EQ(segmentsAfterGivingUpAt(285), 2);
    EXPECT_EQ(segmentsAfterGivingUpAt(275), 1);
}

TEST_F(PlanWalk, ThatBreaksOffNearItsEndStillMustStandAtTheGoal)
{
    robot.leaf("PathSegIsVector").succeeds();
    robot.set("navi_path_target", 1000);
    robot.leaf("DwaLocalPlanner").decides(bringsTo(895, FAILURE));
    planOf({SUCCESS, FAILURE});
    robot.start("GotoPoint");
    EXPECT_EQ(robot.finish(100), FAILURE);
    robot.leaf("DwaLocalPlanner").decides(bringsTo(905, FAILURE));
    planOf({SUCCESS, FAILURE});
    EXPECT_EQ(robot.finish(100), SUCCESS);
}

TEST_F(PlanWalk, GivesTheRestUpAfter300MmOfBridge)
{
    EXPECT_EQ(segmentsAfterCrossingTo(390), 2);
    EXPECT_TRUE(robot.asked("UpdateBridgeCost"));
    EXPECT_EQ(segmentsAfterCrossingTo(410), 1) << "the plan is stale";
    EXPECT_TRUE(robot.asked("UpdateBridgeCost"));
    EXPECT_FALSE(robot.has("cross_bridge_start_point"));

    robot.set("step_bridge_valid", "");
    EXPECT_EQ(segmentsAfterCrossingTo(390), 2);
    EXPECT_TRUE(robot.notAsked("UpdateBridgeCost")) << "a step keeps its own record";
    EXPECT_FALSE(robot.has("step_bridge_valid"));
}

}  // namespace
}  // namespace vemra::test
