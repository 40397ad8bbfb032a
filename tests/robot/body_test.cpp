#include "robot/body/body.h"

#include <algorithm>
#include <cmath>

#include "robot/body_rig.h"
#include "robot/sketch.h"
#include "support/matchers.h"

namespace vemra::robot {
namespace {

constexpr double kFrame = 0.02;

// 3 m by 3 m of free floor from 50 to 2950 mm.
struct InARoom : testing::Test
{
    World world{sketch(room(60, 60))};

    Body bodyAt(double x, double y, double yaw) { return {world, {{x, y}, {yaw}}, Chance(3)}; }
    static void run(Body& body, int frames)
    {
        for (int i = 0; i < frames; ++i)
            body.step(kFrame);
    }
    static void run(Body& body, const WheelSpeeds& speeds, int frames)
    {
        body.drive(speeds);
        run(body, frames);
    }
};

TEST_F(InARoom, WheelsGetUpToSpeedAndDriveStraightAndAround)
{
    Body body = bodyAt(500, 1500, 0);
    run(body, {200, 200}, 100);
    // 0.2 s to get up to speed at 1000 mm/s^2 cost half of 0.2 s * 200 mm/s.
    EXPECT_NEAR(body.truePose().at.x, 500 + 2 * 200 - 20, 3);
    EXPECT_NEAR(body.truePose().at.y, 1500, 1e-9);
    // The right wheel ahead: to the left, and on over whole turns.
    body.driveArc(0, 90);
    run(body, 500);
    EXPECT_NEAR(body.truePose().yaw.value, 900, 25);
}

TEST_F(InARoom, AWallStopsTheBodyAndPressesTheBumperWhereItIsMet)
{
    const std::pair<double, Sides> cases[] = {{0, {.middle = true}},
                                              {20, {.middle = true, .right = true}},
                                              {50, {.right = true}},
                                              {-50, {.left = true}}};
    for (const auto& [yaw, pressed] : cases) {
        Body body = bodyAt(2600, 1500, yaw);
        run(body, {200, 200}, 100);
        EXPECT_NEAR(body.truePose().at.x, 2950 - kRobotRadiusMm, 0.1) << yaw;
        EXPECT_EQ(body.bumper(), pressed) << yaw;
        EXPECT_FALSE(body.rearContact());
        if (std::abs(yaw) == 50) {
            EXPECT_GT(std::abs(body.truePose().at.y - 1500), 150) << "slides along";
        }
        run(body, {-100, -100}, 10);
        EXPECT_EQ(body.bumper(), Sides{}) << yaw;
    }
    Body body = bodyAt(300, 1500, 0);
    run(body, {-100, -100}, 100);
    EXPECT_NEAR(body.truePose().at.x, 50 + kRobotRadiusMm, 0.1);
    EXPECT_TRUE(body.rearContact());
    EXPECT_EQ(body.bumper(), Sides{}) << "there is none behind";
}

TEST_F(InARoom, ACornerOnALineOfTheGridPressesTheBumper)
{
    world.putDown({{1000, 1000}, {1200, 1500}});
    for (const double y : {1499.0, 1500.0, 1501.0}) {
        Body body = bodyAt(700, y, 0);
        run(body, {200, 200}, 60);
        EXPECT_TRUE(body.bumper().middle) << y;
    }
}

TEST_F(InARoom, NoDriveEverCutsIntoAWall)
{
    world.putDown({{1000, 1000}, {1200, 1100}});
    world.putDown({{1450, 1900}, {1500, 1950}}, Height::Low);
    Chance chance(11);
    Body body = bodyAt(500, 500, 0);
    for (int i = 0; i < 400; ++i) {
        run(body, {-150 + 500 * chance.uniform(), -150 + 500 * chance.uniform()}, 25);
        ASSERT_TRUE(world.solid().isDiscFree(body.truePose().at, kRobotRadiusMm - 0.1))
            << body.truePose().at.x << ' ' << body.truePose().at.y;
    }
    EXPECT_GT(body.runMm(), 10000);
}

TEST_F(InARoom, DeadReckoningGoesWrongBySlipAndByBeingCarried)
{
    Body body = bodyAt(500, 1500, 0);
    run(body, {200, 200}, 300);
    EXPECT_NEAR(body.odometry().at.x, body.truePose().at.x, 0.015 * body.runMm()) << "on a good floor";

    Body slips = bodyAt(500, 1500, 0);
    slips.setSlip(0.5);
    run(slips, {200, 200}, 300);
    EXPECT_NEAR(slips.flowSpeed(), 100, 1e-6);
    EXPECT_NEAR(slips.odometry().at.x - 500, 2 * (slips.truePose().at.x - 500), 30);

    const PointMm stood = body.truePose().at;
    body.lift();
    EXPECT_TRUE(body.wheelDrop().both());
    run(body, 50);
    EXPECT_EQ(body.truePose().at, stood) << "wheels in the air move nothing";
    body.setDown({{1000, 1000}, {270}});
    EXPECT_NEAR(body.truePose().yaw.value, -90, 1e-9);
    EXPECT_FALSE(body.wheelDrop().any());
    EXPECT_GT(distance(body.odometry().at, body.truePose().at), 300);
}

TEST_F(InARoom, TheTrackOfALongRunIsThinnedAndKeepsItsGaps)
{
    Body body = bodyAt(500, 1500, 0);
    const auto go = [&](int points) {
        for (int i = 0; i < points; ++i) {
            body.drive({300, -300});  // a turn on the spot, a point every few frames
            run(body, 10);
        }
    };
    go(12'000);
    body.carryTo({{2000, 1500}, {0}});
    const double carried_at = body.truePose().at.x;
    go(15'000);
    const auto& track = body.track();
    EXPECT_THAT(track.size(), AllOf(Le(Body::kMostTrackPoints), Gt(Body::kMostTrackPoints / 4)));
    const auto begins = [](const Body::TrackPoint& point) { return point.carried_here; };
    EXPECT_EQ(std::count_if(track.begin(), track.end(), begins), 2) << "at first, and where it was carried";
    // No stretch leads from before the carry to after it.
    for (std::size_t i = 1; i < track.size(); ++i) {
        const bool jump = distance(track[i - 1].pose.at, track[i].pose.at) > 1000;
        ASSERT_EQ(jump, track[i].carried_here) << i;
    }
    EXPECT_NEAR(track.back().pose.at.x, carried_at, 1);
}

TEST_F(InARoom, EdgesOfTheFloorAreSeenBeforeAWheelHangs)
{
    world.addCliff({{1500, 0}, {3000, 3000}});
    Body body = bodyAt(1250, 1500, 60);
    body.drive({100, 100});
    while (!body.cliffs().any()) {
        body.step(kFrame);
        ASSERT_LT(body.truePose().at.x, 1500);
    }
    EXPECT_TRUE(body.cliffs().right && !body.cliffs().left);
    EXPECT_FALSE(body.wheelDrop().any());
    run(body, 300);
    EXPECT_TRUE(body.wheelDrop().right) << "driven on, it hangs";
}

TEST_F(InARoom, TheLaserMeasuresTheRoomWithNoiseAndMissesWhatIsLow)
{
    world.putDown({{2000, 1400}, {2100, 1600}});
    world.putDown({{1400, 2000}, {1600, 2100}}, Height::Low);
    Body body = bodyAt(1500, 1500, 90);
    const LaserScan scan = body.scan();
    ASSERT_EQ(scan.ranges_mm.size(), 360U);
    EXPECT_NEAR(*scan.ranges_mm[270], 500, 30) << "the thing on the right";
    EXPECT_NEAR(*scan.ranges_mm[0], 1450, 30) << "the wall ahead, over the low thing";
    EXPECT_NEAR(*scan.nearest({-90}, {10}), 500, 30);

    double sum = 0;
    double square = 0;
    const int turns = 300;
    for (int i = 0; i < turns; ++i) {
        const double off = *body.scan().ranges_mm[180] - 1450;
        sum += off / turns;
        square += off * off / turns;
    }
    EXPECT_NEAR(sum, 0, 1.5);
    EXPECT_NEAR(std::sqrt(square), 6, 1);
}

struct Motion : testing::Test
{
    BodyRig rig{room(60, 60), {{1500, 1500}, {170}}};

    // Turns, and lets the wheels come to rest.
    double turned(const std::string& ports)
    {
        const double before = rig.yaw();
        rig.enterLeaf("Rotate " + ports);
        EXPECT_EQ(rig.run(2000), NodeStatus::SUCCESS);
        rig.tree = {};
        rig.frames(10);
        return rig.yaw() - before;
    }
};

TEST_F(Motion, RotateEndsWithinADegree)
{
    EXPECT_NEAR(turned("angle_deg=90 angular_velocity_deg_s=60 false_relative_true_absolute=false"), 90, 1);
    EXPECT_NEAR(rig.frames_run * kFrameMs / 1000.0, 90.0 / 60, 0.3) << "about as fast as asked for";
    EXPECT_NEAR(turned("angle_deg=-360 angular_velocity_deg_s=120"), -360, 1);

    // To a heading: the short way, whatever the turns before. The robot looks at about -98 now.
    rig.blackboard->set("aim", rig.yaw() + 30 + 720);
    EXPECT_NEAR(turned("angle_deg=${aim} angular_velocity_deg_s=60 false_relative_true_absolute=true"), 30,
                1);
    EXPECT_FALSE(rig.passes("Rotate angle_deg=${nobody_wrote_this}"));
}

TEST_F(Motion, WhatIsHaltedStopsTheWheelsUnlessAnotherMotionHasThem)
{
    rig.enterLeaf("OpenCloseMove left_mm_s=100 right_mm_s=-${right}");
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
    rig.enterLeaf("FixOrientationNode target_point=2400;1000");
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
    rig.enterLeaf("TurnAround turn_angle=-180 turn_radius=200 max_linear_speed=300 max_angular_speed=60");
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
    rig.enterLeaf("DetachNode back_speed=-160");
    ASSERT_EQ(rig.run(500), NodeStatus::SUCCESS);
    EXPECT_NEAR(distance(rig.at(), {1500, 1500}), 600, 15);

    rig.body.tilt(5, 100);
    EXPECT_FALSE(rig.passes("IfOnAPlane Degree=400"));
    EXPECT_TRUE(rig.passes("IfOnAPlane Degree=500"));
}

TEST_F(Motion, AnOrderLapsesWhenItsLeafIsNeitherTickedNorEnded)
{
    rig.enterLeaf("OpenCloseMove left_mm_s=100 right_mm_s=100");
    rig.frames(30);
    const PointMm from = rig.at();
    const BT::Tree kept = std::move(rig.tree);
    rig.tree = {};
    rig.frames(50);
    EXPECT_THAT(rig.away(from), Lt(15)) << "it comes to rest";
    rig.drive({100, 100}, 50);
    EXPECT_THAT(rig.away(from), Gt(80)) << "what nobody in particular orders holds";
}

}  // namespace
}  // namespace vemra::robot
