#include <set>

#include "robot/belief/localisation.h"
#include "robot/belief/robot_map.h"
#include "robot/grid_sketch.h"
#include "robot/planning/place_match.h"
#include "robot/planning/rooms.h"
#include "robot/world/map_file.h"
#include "robot/world/random_home.h"
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

// --- rooms on a map ------------------------------------------------------------------------------

TEST(Rooms, TheFlatIsCutInItsDoorsAndNotBetweenItsFurniture)
{
    const RoomGrid rooms = divideIntoRooms(gridOf(readHome(VEMRA_SOURCE_DIR "/homes/flat/flat.yaml").home));
    const auto at = [&](double x, double y) { return rooms.at(cellAt({1e3 * x, 1e3 * y})); };
    const std::set<std::uint8_t> five{at(2.5, 3.0), at(7.5, 3.3), at(3.0, 5.3), at(5.2, 5.0), at(8.0, 5.5)};
    EXPECT_EQ(five.size(), 5U) << "living room, kitchen, bedroom, hall and bathroom";
    EXPECT_THAT(five, Each(Ne(kNoRoom)));
    EXPECT_EQ(roomsOf(rooms).size(), 5U);
    EXPECT_EQ(at(1.8, 1.9), at(2.5, 3.0)) << "between the legs of the coffee table";
    EXPECT_EQ(at(6.7, 2.0), at(7.5, 3.3)) << "under the dining table";
    EXPECT_EQ(at(1.0, 5.5), at(3.0, 5.3)) << "under the bed";
}

TEST(Rooms, EachMadeHomeIsDividedIntoAboutItsRooms)
{
    int off = 0;
    constexpr int kHomes = 10;
    for (std::uint64_t seed = 1; seed <= kHomes; ++seed) {
        SCOPED_TRACE(seed);
        const RandomHome made = randomHome(seed);
        const Grid<CellState> floor = gridOf(homeOfPlan(made.plan));
        const RoomGrid rooms = divideIntoRooms(floor);
        double free = 0;
        double covered = 0;
        for (std::size_t i = 0; i < floor.cells().size(); ++i)
            if (floor.cells()[i] == CellState::Free) {
                ++free;
                covered += rooms.at(floor.window().cellOf(i)) != kNoRoom ? 1 : 0;
            }
        EXPECT_THAT(covered / free, Gt(0.95));
        const int wrong = std::abs(static_cast<int>(roomsOf(rooms).size()) - made.rooms);
        EXPECT_LE(wrong, 3);
        off += wrong;
    }
    EXPECT_THAT(off, Lt(kHomes * 3 / 2)) << "rooms too many or too few in all homes";
}

TEST(Rooms, AThingInAWideOpeningMakesNoDoorsOfIt)
{
    std::vector<std::string> lines = room(124, 62);
    fill(lines, {61, 1}, {62, 60}, '#');
    fill(lines, {61, 17}, {62, 44}, '.');
    ASSERT_EQ(roomsOf(divideIntoRooms(gridOf(lines))).size(), 1U);
    fill(lines, {61, 27}, {62, 33}, '#');
    EXPECT_EQ(roomsOf(divideIntoRooms(gridOf(lines))).size(), 1U) << "1.4 m, and a post in it";
    fill(lines, {61, 17}, {62, 30}, '#');
    EXPECT_EQ(roomsOf(divideIntoRooms(gridOf(lines))).size(), 2U) << "a door";
}

TEST(Rooms, AFenceLetsTheMiddleCrossTheBorderALittleAndTheBodyTouchNothing)
{
    const RoomGrid rooms = drawnRooms({{1, {{0, 0}, {2000, 2000}}}, {2, {{2000, 0}, {4000, 2000}}}});
    const auto closed = [](const RoomFence& fence, double x, double y) {
        return fence.closed.at(cellAt({x, y})) != 0;
    };
    const RoomFence within = fenceOf(rooms, 1, true);
    EXPECT_FALSE(closed(within, 1990, 1000));
    EXPECT_FALSE(closed(within, 2080, 1000)) << "the border may be crossed by a little";
    EXPECT_TRUE(closed(within, 2160, 1000));
    EXPECT_TRUE(closed(within, 1000, 2500)) << "floor of no room";
    EXPECT_TRUE(closed(within, 1000, 9000));
    for (const PointMm p : within.edge) {
        const PointMm nearest{std::clamp(p.x, 0.0, 2000.0), std::clamp(p.y, 0.0, 2000.0)};
        EXPECT_THAT(distance(p, nearest), AllOf(Gt(180), Lt(310))) << p.x << ' ' << p.y;
    }
    EXPECT_THAT(within.edge.size(), Gt(100U));

    const RoomFence beside = fenceOf(rooms, 1, false);
    EXPECT_TRUE(closed(beside, 2500, 1000)) << "the other room";
    EXPECT_FALSE(closed(beside, 1000, 2500)) << "floor of no room";
    EXPECT_FALSE(closed(beside, 1000, 9000));
    EXPECT_THAT(beside.edge.size(), Lt(within.edge.size()));
}

// --- a place on a map, known again ---------------------------------------------------------------

View viewFrom(const Home& home, const PoseMm& at, const PoseMm& odometry)
{
    Chance chance(5);
    const LaserScan scan = takeScan(home, at, {}, chance);
    View view{odometry, {}};
    for (std::size_t beam = 0; beam < scan.ranges_mm.size(); beam += 4) {
        if (scan.ranges_mm[beam])
            view.points.push_back(*scan.ranges_mm[beam] * direction(scan.bearing(beam)));
    }
    return view;
}

// 5 m by 3 m, a quarter of it built over: no place in it is like another.
std::vector<std::string> oddRoom()
{
    std::vector<std::string> lines = room(102, 62);
    fill(lines, {1, 1}, {50, 30}, '#');
    return lines;
}

TEST(PlaceMatcher, KnowsAPlaceFromOneLook)
{
    const Home home = sketch(oddRoom());
    const PlaceMatcher matcher(gridOf(home));
    for (const PoseMm at :
         {PoseMm{{2000, 2000}, {30}}, PoseMm{{4300, 700}, {-160}}, PoseMm{{700, 2300}, {95}}}) {
        const std::vector<View> views{viewFrom(home, at, {{17, 4}, {200}})};
        const auto guesses = matcher.search(views);
        const PlaceGuess* sure = PlaceMatcher::sureOf(guesses);
        ASSERT_NE(sure, nullptr) << at.at.x;
        EXPECT_THAT(distance(sure->pose.at, at.at), Lt(40)) << at.at.x;
        EXPECT_THAT(std::abs(wrapped({sure->pose.yaw.value - at.yaw.value}).value), Lt(2)) << at.at.x;
    }
}

// An oblong room, and through a wide opening at its end another one that is built over but for a lane.
TEST(PlaceMatcher, IsNotSureOfOneOfTwoLikePlacesBeforeItHasSeenWhatTellsThem)
{
    std::vector<std::string> lines = room(122, 42);
    fill(lines, {60, 1}, {61, 40}, '#');
    fill(lines, {60, 11}, {61, 30}, '.');
    fill(lines, {1, 1}, {45, 12}, '#');
    fill(lines, {1, 29}, {45, 40}, '#');
    const Home home = sketch(lines);
    const PlaceMatcher matcher(gridOf(home));
    // From beside the opening, where nothing but the room is seen.
    const PoseMm first{{3200, 250}, {0}};
    std::vector<View> views{viewFrom(home, first, {{}, {0}})};
    const PlaceGuess best = matcher.search(views).front();
    EXPECT_THAT(best.score, Gt(0.6)) << "it fits, and so do others";
    EXPECT_EQ(PlaceMatcher::sureOf(matcher.search(views)), nullptr);
    const PoseMm second{{3500, 1050}, {90}};
    views.push_back(viewFrom(home, second, {{300, 800}, {90}}));
    const auto guesses = matcher.search(views);
    const PlaceGuess* sure = PlaceMatcher::sureOf(guesses);
    ASSERT_NE(sure, nullptr) << guesses[0].score << ' ' << guesses[1].score;
    EXPECT_THAT(distance(sure->pose.at, second.at), Lt(60));
}

TEST(PlaceMatcher, DoesNotKnowWhatIsNotOnTheMap)
{
    const Home home = sketch(oddRoom());
    const PlaceMatcher matcher(gridOf(home));
    const Home elsewhere = sketch(room(42, 42));
    const std::vector<View> views{viewFrom(elsewhere, {{1000, 600}, {10}}, {})};
    const auto guesses = matcher.search(views);
    EXPECT_EQ(PlaceMatcher::sureOf(guesses), nullptr);
    EXPECT_TRUE(matcher.search(std::vector<View>{}).empty());
}

}  // namespace
}  // namespace vemra::robot
