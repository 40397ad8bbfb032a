#include <gmock/gmock.h>

#include <algorithm>

#include "robot/body_rig.h"

namespace vemra::robot {
namespace {

using BT::NodeStatus;

// The review of an obstacle, by the tree of the plug-in.
class Review : public testing::Test
{
protected:
    BodyRig rig{room(60, 60), {{1500, 1500}, {0}}};
    double least_yaw = 0;
    double most_yaw = 0;
    PointMm furthest;

    // One step of a wall follow's review; how the robot moved in it is kept.
    NodeStatus step()
    {
        rig.blackboard->set("current_draw_mode", "Default");
        const PointMm from = rig.at();
        least_yaw = most_yaw = rig.yaw();
        furthest = from;
        rig.enter("LaserReviewAction");
        NodeStatus status = NodeStatus::RUNNING;
        for (int i = 0; i < 2000 && status == NodeStatus::RUNNING; ++i) {
            status = rig.frame();
            least_yaw = std::min(least_yaw, rig.yaw());
            most_yaw = std::max(most_yaw, rig.yaw());
            if (distance(rig.at(), from) > distance(furthest, from)) {
                furthest = rig.at();
            }
        }
        rig.tree = {};
        rig.frames(20);
        return status;
    }
};

TEST_F(Review, ALowThingAheadIsLookedAtOnceFromSidesAndALittleAway)
{
    EXPECT_EQ(step(), NodeStatus::SUCCESS);
    EXPECT_EQ(furthest, (PointMm{1500, 1500})) << "nothing to look at";

    rig.world.putDown({{1750, 1450}, {1800, 1550}}, Height::Low);
    EXPECT_EQ(step(), NodeStatus::SUCCESS);
    EXPECT_NEAR(furthest.x, 1450, 12) << "50 mm back";
    EXPECT_NEAR(most_yaw, 20, 4);
    EXPECT_NEAR(least_yaw, -20, 4);
    EXPECT_NEAR(rig.yaw(), 0, 4);
    EXPECT_NEAR(rig.at().x, 1500, 12);
    EXPECT_EQ(rig.text("current_action"), "SuspectWireDetect");
    EXPECT_FALSE(rig.blackboard->contains("review_halt_token")) << "it is where it was";

    EXPECT_EQ(step(), NodeStatus::SUCCESS);
    EXPECT_LT(most_yaw - least_yaw, 1) << "known by now";

    // A thing that the laser sees needs no second look.
    rig.world.putDown({{1400, 2250}, {1600, 2300}});
    rig.body.carryTo({{1500, 2000}, {90}});
    EXPECT_EQ(step(), NodeStatus::SUCCESS);
    EXPECT_LT(most_yaw - least_yaw, 1);
}

TEST_F(Review, AStepInTheFloorIsLookedAtOnceFromAHandsWidthAway)
{
    rig.blackboard->set("fAngle_start", 20);
    rig.blackboard->set("fAngle_dest", 20);
    // Felt to the left of where the robot looks, under the rim of its body.
    rig.world.putDown({{1580, 1600}, {1700, 1900}}, Height::Step);
    rig.frame();
    EXPECT_TRUE(rig.blackboard->contains("suspect_step"));
    EXPECT_EQ(step(), NodeStatus::SUCCESS);
    EXPECT_EQ(rig.text("current_action"), "SuspectLineDetect");
    EXPECT_FALSE(rig.blackboard->contains("suspect_step"));
    EXPECT_NEAR(distance(furthest, {1500, 1500}), 100, 12);
    EXPECT_NEAR(most_yaw, 70, 10) << "turned to it, then 20 degrees to either side";
    EXPECT_NEAR(rig.yaw(), 50, 10);

    EXPECT_EQ(step(), NodeStatus::SUCCESS);
    EXPECT_LT(most_yaw - least_yaw, 1) << "known by now";

    // One that it has left behind is no longer looked for.
    rig.world.putDown({{2120, 1450}, {2200, 1550}}, Height::Step);
    rig.body.carryTo({{1950, 1500}, {0}});
    rig.frame();
    EXPECT_TRUE(rig.blackboard->contains("suspect_step"));
    rig.body.carryTo({{1200, 1500}, {0}});
    rig.frame();
    EXPECT_FALSE(rig.blackboard->contains("suspect_step"));
}

}  // namespace
}  // namespace vemra::robot
