#include <gmock/gmock.h>

#include <cmath>

#include "robot/body_rig.h"

namespace vemra::robot {
namespace {

using BT::NodeStatus;

class Motion : public testing::Test
{
protected:
    BodyRig rig{room(60, 60), {{1500, 1500}, {170}}};

    // Turns, and lets the wheels come to rest.
    double turned(const BT::NodeParameters& ports)
    {
        const double before = rig.yaw();
        rig.enterLeaf("Rotate", ports);
        EXPECT_EQ(rig.run(2000), NodeStatus::SUCCESS);
        rig.tree = {};
        rig.frames(10);
        return rig.yaw() - before;
    }
};

TEST_F(Motion, RotateEndsWithinADegree)
{
    EXPECT_NEAR(turned({{"angle_deg", "90"},
                        {"angular_velocity_deg_s", "60"},
                        {"false_relative_true_absolute", "false"}}),
                90, 1);
    EXPECT_NEAR(rig.frames_run * kFrameMs / 1000.0, 90.0 / 60, 0.3) << "about as fast as asked for";
    EXPECT_NEAR(turned({{"angle_deg", "-360"}, {"angular_velocity_deg_s", "120"}}), -360, 1);

    // To a heading: the short way, whatever the turns before. The robot looks at about -98 now.
    rig.blackboard->set("aim", rig.yaw() + 30 + 720);
    EXPECT_NEAR(turned({{"angle_deg", "${aim}"},
                        {"angular_velocity_deg_s", "60"},
                        {"false_relative_true_absolute", "true"}}),
                30, 1);
    EXPECT_FALSE(rig.passes("Rotate", {{"angle_deg", "${nobody_wrote_this}"}}));
}

TEST_F(Motion, WhatIsHaltedStopsTheWheelsUnlessAnotherMotionHasThem)
{
    rig.enterLeaf("OpenCloseMove", {{"left_mm_s", "100"}, {"right_mm_s", "-${right}"}});
    rig.blackboard->set("right", 50);
    EXPECT_EQ(rig.run(100), NodeStatus::RUNNING) << "never ends by itself";
    EXPECT_EQ(rig.body.wheelSpeeds(), (WheelSpeeds{100, -50}));

    const BT::Tree first = std::exchange(rig.tree, {});
    rig.enterLeaf("GoBackwards");
    rig.frame();
    first.root_node->halt();
    EXPECT_LT(rig.body.commanded().left, 0) << "the later motion goes on";
    rig.tree.root_node->halt();
    EXPECT_EQ(rig.body.commanded(), WheelSpeeds{});
}

TEST_F(Motion, AStraightDriveKeepsToItsLine)
{
    rig.enterLeaf("FixOrientationNode", {{"target_point", "2400;1000"}});
    double worst = 0;
    NodeStatus status = NodeStatus::RUNNING;
    while (status == NodeStatus::RUNNING && rig.state.frame < 1000) {
        status = rig.frame();
        // Beside the line from (1500, 1500) to (2400, 1000).
        const PointMm off = rig.at() - PointMm{1500, 1500};
        worst = std::max(worst, std::abs(off.x * 500 + off.y * 900) / std::hypot(900, 500));
    }
    EXPECT_EQ(status, NodeStatus::SUCCESS);
    EXPECT_LT(distance(rig.at(), {2400, 1000}), 30);
    EXPECT_LT(worst, 15);
}

TEST_F(Motion, TurnAroundDrivesItsArc)
{
    rig.body.carryTo({{1500, 1000}, {0}});
    rig.enterLeaf("TurnAround", {{"turn_angle", "-180"},
                                 {"turn_radius", "200"},
                                 {"max_linear_speed", "300"},
                                 {"max_angular_speed", "60"}});
    const double before = rig.yaw();
    ASSERT_EQ(rig.run(500), NodeStatus::SUCCESS);
    EXPECT_NEAR(rig.yaw() - before, -180, 2);
    // Half a circle to the right: 400 mm to the side, at 60 degrees/s.
    EXPECT_NEAR(rig.at().y, 600, 15);
    EXPECT_NEAR(rig.at().x, 1500, 15);
    EXPECT_NEAR(rig.frames_run, 160, 12);
}

TEST_F(Motion, DetachEndsClearOfTheDock)
{
    rig.enterLeaf("DetachNode", {{"back_speed", "-160"}});
    ASSERT_EQ(rig.run(500), NodeStatus::SUCCESS);
    EXPECT_NEAR(distance(rig.at(), {1500, 1500}), 600, 15);

    rig.body.tilt(5, 100);
    EXPECT_FALSE(rig.passes("IfOnAPlane", {{"Degree", "400"}}));
    EXPECT_TRUE(rig.passes("IfOnAPlane", {{"Degree", "500"}}));
}

TEST_F(Motion, AnOrderLapsesWhenItsLeafIsNeitherTickedNorEnded)
{
    rig.enterLeaf("OpenCloseMove", {{"left_mm_s", "100"}, {"right_mm_s", "100"}});
    for (int i = 0; i < 30; ++i)
        rig.frame();
    const PointMm from = rig.at();
    const BT::Tree kept = std::move(rig.tree);
    rig.tree = {};
    rig.frames(50);
    EXPECT_THAT(rig.away(from), testing::Lt(15)) << "it comes to rest";
    rig.body.drive({100, 100});
    rig.frames(50);
    EXPECT_THAT(rig.away(from), testing::Gt(80)) << "what nobody in particular orders holds";
}

}  // namespace
}  // namespace vemra::robot
