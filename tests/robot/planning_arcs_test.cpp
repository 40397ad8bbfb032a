#include <gmock/gmock.h>

#include "robot/planning/arcs.h"
#include "robot/world/dock.h"

namespace vemra::robot {
namespace {

using testing::Lt;
using testing::Optional;

// Points along a straight line, as a laser sees a wall.
std::vector<PointMm> wall(PointMm from, PointMm to)
{
    std::vector<PointMm> points;
    const int steps = static_cast<int>(distance(from, to) / 20);
    for (int i = 0; i <= steps; ++i) {
        points.push_back(from + (static_cast<double>(i) / steps) * (to - from));
    }
    return points;
}

std::vector<PointMm> joined(std::vector<PointMm> a, const std::vector<PointMm>& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

struct Followed
{
    PoseMm pose;
    double least_mm = 1e9;  ///< clearance on the way
    double largest_mm = -1e9;
    double turned_deg = 0;
};

// Follows a wall for some seconds.
Followed followed(PoseMm pose, const std::vector<PointMm>& obstacles, Side side, double seconds)
{
    Followed run{pose};
    for (double t = 0; t < seconds; t += 0.02) {
        const Motion motion = alongWall(run.pose, obstacles, {.wall = side});
        run.pose = after(run.pose, motion, 0.02);
        const double gap = clearanceTo(obstacles, run.pose.at);
        run.least_mm = std::min(run.least_mm, gap);
        run.largest_mm = std::max(run.largest_mm, gap);
    }
    run.turned_deg = run.pose.yaw.value - pose.yaw.value;
    return run;
}

TEST(Arcs, AfterAnArcTheRobotIsWhereTheCircleLeads)
{
    const PoseMm quarter = after({{0, 0}, {0}}, {100 * std::numbers::pi / 2, 90}, 1);
    EXPECT_NEAR(quarter.at.x, 100, 1e-6);
    EXPECT_NEAR(quarter.at.y, 100, 1e-6);
    EXPECT_DOUBLE_EQ(quarter.yaw.value, 90);
    EXPECT_EQ(after({{5, 5}, {90}}, {100, 0}, 2).yaw.value, 90);
}

TEST(Towards, DrivesStraightAtACarrotAheadAndTurnsToOneBehind)
{
    const PoseMm pose{{0, 0}, {0}};
    const auto straight = towards({260, 0}, 2000, pose, {}, {});
    ASSERT_TRUE(straight);
    EXPECT_GT(straight->forward, 250);
    EXPECT_NEAR(straight->turn, 0, 2);
    const auto left = towards({-200, 100}, 2000, pose, {}, {});
    ASSERT_TRUE(left);
    EXPECT_EQ(left->forward, 0);
    EXPECT_GT(left->turn, 0);
}

TEST(Towards, GoesRoundWhatStandsInTheWayAndSlowsDownAtTheEnd)
{
    const PoseMm pose{{0, 0}, {0}};
    const std::vector<PointMm> leg{{420, 40}};
    const auto round = towards({260, 0}, 2000, pose, leg, {});
    ASSERT_TRUE(round);
    EXPECT_LT(round->turn, -5) << "past it on the right";
    EXPECT_THAT(towards({260, 0}, 40, pose, {}, {}), Optional(testing::Field(&Motion::forward, Lt(230))));
}

TEST(Towards, GivesUpBeforeAWall)
{
    const auto ahead = wall({182, -400}, {182, 400});
    EXPECT_FALSE(towards({260, 0}, 2000, {{0, 0}, {0}}, ahead, {}));
    // Touching a wall at its side the robot can still leave along it.
    const auto beside = wall({-500, 174}, {500, 174});
    EXPECT_TRUE(towards({260, -60}, 2000, {{0, 0}, {0}}, beside, {}));
}

TEST(AlongWall, KeepsTheGapOnBothSides)
{
    for (const Side side : {Side::Left, Side::Right}) {
        const double y = side == Side::Left ? 215 : -215;
        const Followed run = followed({{0, 0}, {0}}, wall({-300, y}, {4000, y}), side, 12);
        EXPECT_GT(run.pose.at.x, 1800);
        EXPECT_GT(run.least_mm, 5);
        EXPECT_NEAR(clearanceTo(wall({-300, y}, {4000, y}), run.pose.at), 15, 12);
    }
}

TEST(AlongWall, TurnsAtAnInnerCornerAndGoesRoundAnOuterOne)
{
    const auto inner = joined(wall({-300, -200}, {1500, -200}), wall({1500, -200}, {1500, 2500}));
    const Followed in = followed({{0, 0}, {0}}, inner, Side::Right, 16);
    EXPECT_NEAR(in.turned_deg, 90, 15);
    EXPECT_GT(in.pose.at.y, 500);
    EXPECT_GT(in.least_mm, 3);

    const auto outer = joined(wall({-300, -200}, {1000, -200}), wall({1000, -200}, {1000, -2500}));
    const Followed out = followed({{0, 0}, {0}}, outer, Side::Right, 14);
    EXPECT_NEAR(out.turned_deg, -90, 15);
    EXPECT_LT(out.pose.at.y, -500);
    EXPECT_GT(out.least_mm, 3);
    EXPECT_LT(out.largest_mm, 120);
}

TEST(AlongWall, TurnsOnTheSpotAwayFromWhatIsAhead)
{
    const auto ahead = wall({195, -500}, {195, 500});
    EXPECT_EQ(alongWall({{0, 0}, {0}}, ahead, {.wall = Side::Right}).forward, 0);
    EXPECT_GT(alongWall({{0, 0}, {0}}, ahead, {.wall = Side::Right}).turn, 0);
    EXPECT_LT(alongWall({{0, 0}, {0}}, ahead, {.wall = Side::Left}).turn, 0);
}

TEST(WallSide, IsTheOneThatLeadsWhereThePathDoes)
{
    // The obstacle is ahead, the path leads to the left: then it is kept on the right.
    EXPECT_EQ(sideFor({0}, {80}), Side::Right);
    EXPECT_EQ(sideFor({0}, {-80}), Side::Left);
    EXPECT_EQ(sideFor({170}, {-100}), Side::Right);
    // A wall on the right matters until the path turns away to the left.
    EXPECT_TRUE(wallIsInTheWay(Side::Right, {90}, {60}));
    EXPECT_TRUE(wallIsInTheWay(Side::Right, {90}, {100}));
    EXPECT_FALSE(wallIsInTheWay(Side::Right, {90}, {150}));
    EXPECT_FALSE(wallIsInTheWay(Side::Left, {90}, {30}));
}

}  // namespace
}  // namespace vemra::robot
