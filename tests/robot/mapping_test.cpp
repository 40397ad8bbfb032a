#include "robot/belief/localisation.h"
#include "robot/belief/robot_map.h"
#include "robot/grid_sketch.h"
#include "support/matchers.h"

namespace vemra::robot {
namespace {

// A robot that drives by wheel speeds in a drawn home and maps it.
struct MapRig
{
    explicit MapRig(const std::vector<std::string>& lines, const PoseMm& at)
        : world(sketch(lines)), body(world, at, Chance(3))
    {}
    void frames(int count)
    {
        for (int i = 0; i < count; ++i) {
            ++frame;
            body.step(0.02);
            map.update(frame);
        }
    }

    void drive(const WheelSpeeds& speeds, int count)
    {
        body.drive(speeds);
        frames(count);
    }

    World world;
    Body body;
    Localisation pose{body};
    RobotMap map{body, pose};
    std::uint64_t frame = 0;
};

TEST(OccupancyMap, AWallStaysAndAThingThatIsCarriedAwayFades)
{
    OccupancyMap map;
    const std::vector<Beam> wall{{{0}, 1000}, {{90}, std::nullopt}};
    map.enter({0, 0}, wall, 2000);
    EXPECT_EQ(map.at(cellAt({1010, 10})), CellState::Occupied);
    EXPECT_EQ(map.at(cellAt({500, 10})), CellState::Free);
    EXPECT_EQ(map.at(cellAt({10, 1900})), CellState::Free) << "nothing was met up to there";
    EXPECT_EQ(map.at(cellAt({1200, 10})), CellState::Unknown) << "behind the wall";
    // Beams that graze the wall do not take it away.
    std::vector<Beam> grazing{{{0}, 1000}};
    for (int i = 1; i <= 12; ++i)
        grazing.push_back({{0.2 * i}, 1400});
    for (int i = 0; i < 20; ++i)
        map.enter({0, 0}, grazing, 2000);
    EXPECT_EQ(map.at(cellAt({1010, 10})), CellState::Occupied);
    for (int i = 0; i < 30; ++i)
        map.enter({0, 0}, std::vector<Beam>{{{0}, 1400}}, 2000);
    EXPECT_EQ(map.at(cellAt({1010, 10})), CellState::Free);
}

TEST(OccupancyMap, GrowsToItsLimitAndNoFurther)
{
    OccupancyMap map;
    for (int i = 0; i < 20; ++i)
        map.enter({i * 5000.0, 0}, std::vector<Beam>{{{0}, 4000}}, 5000);
    EXPECT_EQ(map.window().columns(), OccupancyMap::kMostCells);
    EXPECT_EQ(map.at(cellAt({2000, 10})), CellState::Free);
    EXPECT_EQ(map.at(cellAt({95000, 10})), CellState::Unknown);
}

TEST(RobotMap, ADriveThroughARoomGivesItsWalls)
{
    MapRig rig(room(60, 40), {{600, 1000}, {0}});
    rig.drive({200, 200}, 300);
    int free = 0;
    int wrong = 0;
    for (int row = 1; row < 39; ++row) {
        for (int column = 1; column < 59; ++column) {
            free += rig.map.occupancy().at({column, row}) == CellState::Free ? 1 : 0;
            // The pose may be a cell off, no more.
            const bool inside = row > 1 && row < 38 && column > 1 && column < 58;
            wrong += inside && rig.map.occupancy().at({column, row}) == CellState::Occupied ? 1 : 0;
        }
    }
    EXPECT_GT(free, 38 * 58 * 9 / 10);
    EXPECT_EQ(wrong, 0);
    for (int column = 2; column < 58; ++column)
        EXPECT_THAT(CellState::Occupied,
                    AnyOf(Eq(rig.map.occupancy().at({column, 0})), Eq(rig.map.occupancy().at({column, 1}))));
}

TEST(RobotMap, ALowThingIsFoundByTheBumperAndForgottenUnlessDrawn)
{
    for (const DrawMode mode : {DrawMode::Nothing, DrawMode::BlockOnly}) {
        MapRig rig(room(60, 40), {{600, 1000}, {0}});
        rig.world.putDown({{1500, 900}, {1600, 1100}}, Height::Low);
        rig.map.setDrawMode(mode);
        rig.drive({200, 200}, 250);
        ASSERT_EQ(rig.map.contacts().all().size(), 1U);
        EXPECT_LT(distance(rig.map.contacts().all().front().at, {1500, 1000}), 60);
        EXPECT_GT(rig.map.lastContactFrame(), 0U);
        EXPECT_FALSE(rig.map.obstaclesNear(400, false).empty());
        rig.drive({-200, -200}, 100);
        rig.body.stop();
        rig.frames(ContactMap::kRememberedFrames);
        EXPECT_EQ(rig.map.contacts().all().size(), mode == DrawMode::BlockOnly ? 1U : 0U);
    }
}

TEST(RobotMap, AWallThatTheLaserSeesIsNoContactAndAnEdgeOfTheFloorIs)
{
    MapRig rig(room(60, 40), {{600, 1000}, {180}});
    rig.drive({200, 200}, 200);
    EXPECT_TRUE(rig.body.bumper().any());
    EXPECT_TRUE(rig.map.contacts().all().empty());

    MapRig stairs(room(60, 40), {{600, 1000}, {0}});
    stairs.world.addCliff({{1500, 50}, {2900, 1900}});
    stairs.drive({200, 200}, 200);
    EXPECT_FALSE(stairs.map.contacts().all().empty());
}

TEST(Track, OfManyHoursKeepsEachPlaceWhereItWasPassedLast)
{
    // Round and round, and a little aside of it in each second round.
    Track track;
    std::size_t number = 0;
    const auto round = [&](int row) {
        for (int column = 0; column < 300; ++column, ++number) {
            track.follow(centreOf({column, row + column % 2}));
        }
    };
    for (int rounds = 0; rounds < 500; ++rounds) {
        round(rounds % 2 == 0 ? 0 : 2);
    }
    EXPECT_EQ(track.size(), number);
    EXPECT_LT(track.points().size(), 30000U);
    const std::size_t since = track.points().size() - Track::kRecent;
    for (std::size_t i = since; i < track.points().size(); ++i) {
        ASSERT_EQ(track.points()[i].number, number - (track.points().size() - i)) << "the end is whole";
    }
    round(90);
    for (int i = 0; i < 500; ++i) {
        round(60);
    }
    const auto first_rounds = [](CellIndex cell) { return cell.row < 60; };
    EXPECT_EQ(track.last(first_rounds), (CellIndex{299, 3}));
    EXPECT_EQ(track.nearest(centreOf({150, 80}), [](CellIndex) { return true; }), (CellIndex{150, 90}));
    EXPECT_EQ(track.lastWithin(centreOf({7, 0}), 60, first_rounds), (CellIndex{8, 0}));
    EXPECT_LT(track.points().size(), 30000U);
}

TEST(Localisation, ErrsLittleWhileItKnowsAndDriftsWhenLost)
{
    MapRig rig(room(100, 40), {{600, 1000}, {0}});
    Localisation& pose = rig.pose;
    const auto off = [&] { return distance(pose.pose().at, rig.body.truePose().at); };
    rig.body.drive({200, 200});
    for (int i = 0; i < 300; ++i) {
        rig.frames(1);
        ASSERT_LT(off(), 15);
    }
    pose.lose();
    rig.body.setSlip(0.5);
    rig.frames(300);
    EXPECT_GT(off(), 300) << "odometry does not feel slip";
    pose.find();
    EXPECT_LT(off(), 15);

    // In a new frame, along the old x axis lies the new y axis.
    pose.restart({{0, 0}, {90}});
    EXPECT_NEAR(pose.pose().yaw.value, 90, 1);
    EXPECT_LT(distance(pose.inWorld({0, 100}), rig.body.truePose().at + PointMm{100, 0}), 1);
    // Lost again, the odometry carries the pose on in the new frame.
    rig.body.setSlip(0);
    pose.lose();
    const PoseMm lost = pose.pose();
    rig.frames(50);
    EXPECT_GT(pose.pose().at.y - lost.at.y, 150);
    EXPECT_LT(std::abs(pose.pose().at.x - lost.at.x), 20);
}

}  // namespace
}  // namespace vemra::robot
