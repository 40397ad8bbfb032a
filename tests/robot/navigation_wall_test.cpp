#include "robot/navigation_rig.h"

namespace vemra::robot {
namespace {

// A room of 4 m by 3 m with a block of 600 mm in its middle.
std::vector<std::string> roomWithBlock()
{
    std::vector<std::string> lines = room(82, 62);
    fill(lines, {35, 25}, {46, 36}, '#');
    return lines;
}

constexpr PoseMm kBelowBlock{{2050, 900}, {0}};

struct WallTest : testing::Test
{
    // The bearing of the nearest thing as the robot sees it, and the gap to it.
    double bearingOfWall(double& gap)
    {
        const auto points = obstaclesAround(robot.map, robot.switches, 600);
        const PoseMm pose = robot.map.pose();
        gap = clearanceTo(points, pose.at);
        double bearing = 180;
        for (const PointMm p : points) {
            if (distance(p, pose.at) - kRobotRadiusMm <= gap + 1e-6) {
                const PointMm way = p - pose.at;
                bearing = wrapped({degreesOfRadians(std::atan2(way.y, way.x)).value - pose.yaw.value}).value;
            }
        }
        return bearing;
    }

    NavigationRig robot{sketch(roomWithBlock()), kBelowBlock};
};

TEST_F(WallTest, FollowWallProcKeepsTheWallOnTheAskedSide)
{
    for (const bool right : {true, false}) {
        robot.body.carryTo({{600, 300}, {right ? 180.0 : 0.0}});
        robot.blackboard->set("follow_wall_dir", right ? "false" : "true");
        robot.enter("FollowWallProc");
        const double before = robot.body.runMm();
        int at_side = 0;
        int near = 0;
        for (int i = 0; i < 1500; ++i) {
            ASSERT_EQ(robot.frame(), NodeStatus::RUNNING);
            ASSERT_FALSE(robot.escape.warns()) << "there is no trouble";
            double gap = 0;
            const double bearing = bearingOfWall(gap);
            at_side += (right ? bearing > 20 && bearing < 160 : bearing < -20 && bearing > -160) ? 1 : 0;
            near += gap < 60 ? 1 : 0;
        }
        EXPECT_GT(robot.body.runMm() - before, 3500);
        EXPECT_GT(at_side, 1200) << (right ? "left" : "right");
        EXPECT_GT(near, 1300);
        EXPECT_FALSE(robot.bumped);
    }
}

TEST_F(WallTest, FollowingEndsAtTheEdgeOfTheRectangle)
{
    robot.carryTo({{1000, 300}, {0}});
    robot.set("follow_wall_dir=true");
    ASSERT_TRUE(robot.passes("SetFollowWallRectLimit"));
    EXPECT_EQ(robot.runTree("FollowWallTillRectLimit", 2000), NodeStatus::SUCCESS);
    EXPECT_THAT(robot.away({1000, 300}), AllOf(Gt(500), Lt(800)));
}

TEST_F(WallTest, FollowingEndsWhenItComesRound)
{
    robot.body.carryTo({{2050, 1060}, {0}});  // the block on the left
    robot.frame();
    robot.set("follow_wall_dir=false follow_wall_limit=0;0;4100;3100");
    EXPECT_EQ(robot.runTree("FollowWallTillRectLimit", 4000), NodeStatus::FAILURE);
    EXPECT_GT(robot.frames_run, 700) << "once round the block";
    EXPECT_LT(robot.away({2050, 1060}), 400);
}

TEST_F(WallTest, ThroughObstacleNavigationGetsBehindAWall)
{
    // A wall across the room, open at its upper end.
    robot.world.putDown({{3000, 50}, {3100, 2200}});
    robot.carryTo({{2700, 800}, {0}}, 60);
    robot.blackboard->slot("initial_bump_pose").assign(*robot.blackboard->getAny("current_pose"));
    robot.blackboard->set("follow_wall_dir", "false");
    EXPECT_EQ(robot.runTree("ThroughObstacleNavigation", 5000), NodeStatus::SUCCESS);
    EXPECT_GT(robot.body.truePose().at.x, 3100 + kRobotRadiusMm - 60);
    EXPECT_NEAR(robot.body.truePose().at.y, 800, 250);
    EXPECT_EQ(robot.text("follow_wall_dir"), "false");
}

TEST_F(WallTest, TheBorderOfThePartIsFollowedLikeAWall)
{
    const std::string border = "SensorTriggerBump sensor=SubregionBorder";
    robot.blackboard->set("current_subregion", BoxMm{{-1000, -1000}, {1500, 4000}});
    robot.body.carryTo({{1400, 1500}, {0}});
    robot.blackboard->set("bump_dir", "None");
    robot.frames(2);
    EXPECT_FALSE(robot.passes(border)) << "it is off";
    EXPECT_FALSE(robot.passes("SensorTriggerBump sensor=Nowhere"));
    EXPECT_EQ(robot.text("bump_dir"), "None");

    robot.switches.open(this, "SubregionBorder", true, false);
    ASSERT_TRUE(robot.passes(border));
    EXPECT_EQ(robot.text("bump_dir"), "virtual");
    robot.blackboard->set("follow_wall_dir", "true");
    robot.enter("FollowWallProc");
    double farthest = 0;
    double highest = 0;
    int at_border = 0;
    for (int i = 0; i < 1500; ++i) {
        ASSERT_EQ(robot.frame(), NodeStatus::RUNNING);
        farthest = std::max(farthest, robot.at().x);
        highest = std::max(highest, robot.at().y);
        at_border += std::abs(robot.at().x - 1550) < 60 ? 1 : 0;
    }
    EXPECT_GT(highest, 2700) << "with the border on its right it goes up";
    EXPECT_LT(farthest, 1600);
    EXPECT_GT(at_border, 250);
    EXPECT_LT(robot.at().x, 1000) << "and along the wall back";
    EXPECT_FALSE(robot.bumped);

    const auto contactAt = [this](const PoseMm& at) {
        robot.carryTo(at);
        return robot.sensing.contact();
    };
    EXPECT_EQ(contactAt({{1570, 1500}, {0}}), "virtual");
    EXPECT_EQ(contactAt({{1570, 1500}, {180}}), "None") << "it turns its back to it";
    EXPECT_EQ(contactAt({{1800, 700}, {180}}), "None") << "it is outside";
}

// Whatever stands there, and whether or not the laser sees it: in each minute the robot gets on.
TEST_F(WallTest, FollowingGetsOnInEveryMinuteAlongLowThingsAndOpenFloor)
{
    constexpr int kMinute = 3000;
    // Low strips along the walls and across a corner, as wide as a leg and as a sofa.
    const std::vector<BoxMm> low{{{50, 2850}, {1600, 3050}},
                                 {{2600, 50}, {4050, 300}},
                                 {{3700, 1500}, {4050, 1750}},
                                 {{50, 900}, {120, 960}}};
    std::vector<std::string> open = roomWithBlock();
    fill(open, {60, 20}, {81, 61}, '.');  // no wall: floor as far as the map goes
    for (const bool with_low_things : {true, false}) {
        for (const bool right : {true, false}) {
            NavigationRig other{sketch(with_low_things ? roomWithBlock() : open), {{600, 300}, {0}}};
            if (with_low_things)
                for (const BoxMm& box : low)
                    other.world.putDown(box, Height::Low);
            other.blackboard->set("follow_wall_dir", right ? "true" : "false");
            other.enter("FollowWallProc");
            for (int minute = 0; minute < 4; ++minute) {
                BoxMm span{other.at(), other.at()};
                for (int i = 0; i < kMinute; ++i) {
                    ASSERT_EQ(other.frame(), NodeStatus::RUNNING);
                    span = {{std::min(span.low.x, other.at().x), std::min(span.low.y, other.at().y)},
                            {std::max(span.high.x, other.at().x), std::max(span.high.y, other.at().y)}};
                }
                EXPECT_GT(std::max(span.high.x - span.low.x, span.high.y - span.low.y), 600)
                    << (with_low_things ? "low things, " : "open floor, ") << (right ? "right" : "left")
                    << ", minute " << minute << ", at " << other.at();
            }
        }
    }
}

// Between two corners that are just as far apart as the body is wide.
TEST_F(WallTest, WithNoRoomToBackOffItTurnsAway)
{
    robot.world.putDown({{700, 500}, {800, 700}}, Height::Low);
    robot.world.putDown({{1150, 700}, {1250, 900}}, Height::Low);
    robot.body.carryTo({{975, 700}, {0}});
    robot.blackboard->set("follow_wall_dir", "true");
    robot.enter("FollowWallProc");
    for (int i = 0; i < 1500 && robot.away({975, 700}) < 500; ++i)
        ASSERT_EQ(robot.frame(), NodeStatus::RUNNING) << i;
    EXPECT_GE(robot.away({975, 700}), 500) << "at " << robot.at();
}

TEST_F(WallTest, CollisionsAtOnePlaceAreTooManyAtLastAndElsewhereAreNot)
{
    int times = 0;
    while (times < 50 && robot.passes("CheckSuccessiveCollision"))
        ++times;
    EXPECT_THAT(times, AllOf(Ge(3), Lt(20)));
    for (int i = 0; i < 18; ++i) {
        robot.carryTo({{400.0 + 400 * (i % 9), 400}, {0}});
        EXPECT_TRUE(robot.passes("CheckSuccessiveCollision")) << "counting begins anew";
    }
}

TEST_F(WallTest, TheSideComesFromTheContactOrIsForced)
{
    const auto sideAfter = [&](const char* bump) {
        robot.blackboard->set("bump_dir", bump);
        EXPECT_TRUE(robot.passes("AdvancedSetFollowWallDirection"));
        return robot.text("follow_wall_dir");
    };
    EXPECT_EQ(sideAfter("left"), "false");
    EXPECT_EQ(sideAfter("right"), "true");
    EXPECT_EQ(sideAfter("right_cliff"), "true");
    robot.blackboard->set("advanced_follow_wall_force_dir", "false");
    EXPECT_EQ(sideAfter("right"), "false");
}

}  // namespace
}  // namespace vemra::robot
