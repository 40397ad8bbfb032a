#include "robot/body/body.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

#include "robot/sketch.h"

namespace vemra::robot {
namespace {

constexpr double kFrame = 0.02;

// 3 m by 3 m of free floor from 50 to 2950 mm.
class InARoom : public testing::Test
{
protected:
    World world{sketch(room(60, 60))};

    Body bodyAt(double x, double y, double yaw) { return {world, {{x, y}, {yaw}}, Chance(3)}; }
    static void run(Body& body, int frames)
    {
        for (int i = 0; i < frames; ++i) {
            body.step(kFrame);
        }
    }
};

TEST_F(InARoom, WheelsGetUpToSpeedAndDriveStraightAndAround)
{
    Body body = bodyAt(500, 1500, 0);
    body.drive({200, 200});
    run(body, 100);
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
    const struct
    {
        double yaw;
        Sides pressed;
    } cases[] = {{0, {.middle = true}},
                 {20, {.middle = true, .right = true}},
                 {50, {.right = true}},
                 {-50, {.left = true}}};
    for (const auto& [yaw, pressed] : cases) {
        Body body = bodyAt(2600, 1500, yaw);
        body.drive({200, 200});
        run(body, 100);
        EXPECT_NEAR(body.truePose().at.x, 2950 - kRobotRadiusMm, 0.1) << yaw;
        EXPECT_EQ(body.bumper(), pressed) << yaw;
        EXPECT_FALSE(body.rearContact());
        if (std::abs(yaw) == 50) {
            EXPECT_GT(std::abs(body.truePose().at.y - 1500), 150) << "slides along";
        }
        body.drive({-100, -100});
        run(body, 10);
        EXPECT_EQ(body.bumper(), Sides{}) << yaw;
    }
    Body body = bodyAt(300, 1500, 0);
    body.drive({-100, -100});
    run(body, 100);
    EXPECT_NEAR(body.truePose().at.x, 50 + kRobotRadiusMm, 0.1);
    EXPECT_TRUE(body.rearContact());
    EXPECT_EQ(body.bumper(), Sides{}) << "there is none behind";
}

TEST_F(InARoom, ACornerOnALineOfTheGridPressesTheBumper)
{
    world.putDown({{1000, 1000}, {1200, 1500}});
    for (const double y : {1499.0, 1500.0, 1501.0}) {
        Body body = bodyAt(700, y, 0);
        body.drive({200, 200});
        run(body, 60);
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
        body.drive({-150 + 500 * chance.uniform(), -150 + 500 * chance.uniform()});
        run(body, 25);
        ASSERT_TRUE(world.solid().isDiscFree(body.truePose().at, kRobotRadiusMm - 0.1))
            << body.truePose().at.x << ' ' << body.truePose().at.y;
    }
    EXPECT_GT(body.runMm(), 10000);
}

TEST_F(InARoom, DeadReckoningGoesWrongBySlipAndByBeingCarried)
{
    Body body = bodyAt(500, 1500, 0);
    body.drive({200, 200});
    run(body, 300);
    EXPECT_NEAR(body.odometry().at.x, body.truePose().at.x, 0.015 * body.runMm()) << "on a good floor";

    Body slips = bodyAt(500, 1500, 0);
    slips.setSlip(0.5);
    slips.drive({200, 200});
    run(slips, 300);
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
    EXPECT_LE(track.size(), Body::kMostTrackPoints);
    EXPECT_GT(track.size(), Body::kMostTrackPoints / 4);
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

}  // namespace
}  // namespace vemra::robot
