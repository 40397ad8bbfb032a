#include <gmock/gmock.h>

#include "robot/grid_sketch.h"
#include "robot/mapping/localisation.h"
#include "robot/mapping/robot_map.h"

namespace vemra::robot {
namespace {

using testing::AnyOf;
using testing::Eq;

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

    World world;
    Body body;
    Localisation pose{body};
    RobotMap map{body, pose};
    std::uint64_t frame = 0;
};

TEST(Grid, KeepsItsCellsWhenItMovesAndKnowsNegativeOnes)
{
    EXPECT_EQ(cellAt({-1, 49}), (CellIndex{-1, 0}));
    EXPECT_EQ(centreOf({-1, 0}), (PointMm{-25, 25}));
    EXPECT_EQ(cellsOf({{-10, 0}, {60, 10}}), (CellWindow{{-1, 0}, {2, 1}}));
    Grid<int> grid({{-2, -2}, {2, 2}}, 0, 9);
    grid.set({-2, 1}, 5);
    grid.set({7, 7}, 6);
    grid.moveTo({{-5, 0}, {1, 4}});
    EXPECT_EQ(grid.at({-2, 1}), 5);
    EXPECT_EQ(grid.at({-4, 3}), 9) << "new cells are as outside";
    EXPECT_EQ(grid.at({7, 7}), 9);
}

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
    for (int i = 1; i <= 12; ++i) {
        grazing.push_back({{0.2 * i}, 1400});
    }
    for (int i = 0; i < 20; ++i) {
        map.enter({0, 0}, grazing, 2000);
    }
    EXPECT_EQ(map.at(cellAt({1010, 10})), CellState::Occupied);
    for (int i = 0; i < 30; ++i) {
        map.enter({0, 0}, std::vector<Beam>{{{0}, 1400}}, 2000);
    }
    EXPECT_EQ(map.at(cellAt({1010, 10})), CellState::Free);
}

TEST(OccupancyMap, GrowsToItsLimitAndNoFurther)
{
    OccupancyMap map;
    for (int i = 0; i < 20; ++i) {
        map.enter({i * 5000.0, 0}, std::vector<Beam>{{{0}, 4000}}, 5000);
    }
    EXPECT_EQ(map.window().columns(), OccupancyMap::kMostCells);
    EXPECT_EQ(map.at(cellAt({2000, 10})), CellState::Free);
    EXPECT_EQ(map.at(cellAt({95000, 10})), CellState::Unknown);
}

TEST(RobotMap, ADriveThroughARoomGivesItsWalls)
{
    const std::vector<std::string> lines = room(60, 40);
    MapRig rig(lines, {{600, 1000}, {0}});
    rig.body.drive({200, 200});
    rig.frames(300);
    const Grid<CellState> truth = gridOf(lines);
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
    for (int column = 2; column < 58; ++column) {
        EXPECT_THAT(CellState::Occupied,
                    AnyOf(Eq(rig.map.occupancy().at({column, 0})), Eq(rig.map.occupancy().at({column, 1}))));
    }
}

TEST(RobotMap, ALowThingIsFoundByTheBumperAndForgottenUnlessDrawn)
{
    for (const DrawMode mode : {DrawMode::Nothing, DrawMode::BlockOnly}) {
        MapRig rig(room(60, 40), {{600, 1000}, {0}});
        rig.world.putDown({{1500, 900}, {1600, 1100}}, Height::Low);
        rig.map.setDrawMode(mode);
        rig.body.drive({200, 200});
        rig.frames(250);
        ASSERT_EQ(rig.map.contacts().all().size(), 1U);
        EXPECT_LT(distance(rig.map.contacts().all().front().at, {1500, 1000}), 60);
        EXPECT_GT(rig.map.lastContactFrame(), 0U);
        EXPECT_FALSE(rig.map.obstaclesNear(400, false).empty());
        rig.body.drive({-200, -200});
        rig.frames(100);
        rig.body.stop();
        rig.frames(ContactMap::kRememberedFrames);
        EXPECT_EQ(rig.map.contacts().all().size(), mode == DrawMode::BlockOnly ? 1U : 0U);
    }
}

TEST(RobotMap, AWallThatTheLaserSeesIsNoContactAndAnEdgeOfTheFloorIs)
{
    MapRig rig(room(60, 40), {{600, 1000}, {180}});
    rig.body.drive({200, 200});
    rig.frames(200);
    EXPECT_TRUE(rig.body.bumper().any());
    EXPECT_TRUE(rig.map.contacts().all().empty());

    MapRig stairs(room(60, 40), {{600, 1000}, {0}});
    stairs.world.addCliff({{1500, 50}, {2900, 1900}});
    stairs.body.drive({200, 200});
    stairs.frames(200);
    EXPECT_FALSE(stairs.map.contacts().all().empty());
}

TEST(Track, FindsPlacesByDistanceAndByTime)
{
    Track track;
    for (int x = 0; x <= 1000; x += 10) {
        track.follow({static_cast<double>(x), 25});
    }
    for (int x = 1000; x >= 500; x -= 10) {
        track.follow({static_cast<double>(x), 325});
    }
    const auto any = [](CellIndex) { return true; };
    EXPECT_EQ(track.size(), 21U + 11U);
    EXPECT_TRUE(track.passed({4, 0}));
    EXPECT_FALSE(track.passed({4, 2}));
    EXPECT_TRUE(track.covered({4, 2}));
    EXPECT_EQ(track.nearest({210, 900}, any), (CellIndex{10, 6}));
    EXPECT_EQ(track.nearest({210, 900}, [](CellIndex c) { return c.row == 0; }), (CellIndex{4, 0}));
    EXPECT_EQ(track.last([](CellIndex c) { return c.column >= 15; }), (CellIndex{15, 6}));
    EXPECT_EQ(track.lastWithin({0, 0}, 200, any), (CellIndex{3, 0}));
    EXPECT_FALSE(track.nearest({0, 0}, [](CellIndex) { return false; }));
}

TEST(Localisation, ErrsLittleWhileItKnowsAndDriftsWhenLost)
{
    World world(sketch(room(100, 40)));
    Body body(world, {{600, 1000}, {0}}, Chance(3));
    Localisation pose(body);
    double worst = 0;
    const auto drive = [&](int frames) {
        for (int i = 0; i < frames; ++i) {
            body.step(0.02);
            worst = std::max(worst, distance(pose.pose().at, body.truePose().at));
        }
    };
    body.drive({200, 200});
    drive(300);
    EXPECT_GT(worst, 1);
    EXPECT_LT(worst, 15);
    pose.lose();
    body.setSlip(0.5);
    drive(300);
    EXPECT_GT(distance(pose.pose().at, body.truePose().at), 300) << "odometry does not feel slip";
    pose.find();
    EXPECT_LT(distance(pose.pose().at, body.truePose().at), 15);

    pose.restart({{0, 0}, {90}});
    EXPECT_LT(distance(pose.pose().at, {0, 0}), 15);
    EXPECT_NEAR(pose.pose().yaw.value, 90, 1);
    EXPECT_LT(distance(pose.inWorld({0, 0}), body.truePose().at), 1e-6);
    // Along the old x axis lies the new y axis.
    EXPECT_LT(distance(pose.inWorld({0, 100}), body.truePose().at + PointMm{100, 0}), 1);
    // Lost again, the odometry carries the pose on in the new frame.
    body.setSlip(0);
    pose.lose();
    const PoseMm lost = pose.pose();
    drive(50);
    EXPECT_GT(pose.pose().at.y - lost.at.y, 150);
    EXPECT_LT(std::abs(pose.pose().at.x - lost.at.x), 20);
}

}  // namespace
}  // namespace vemra::robot
