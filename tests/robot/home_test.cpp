#include "robot/world/home.h"

#include <cmath>

#include "robot/files.h"
#include "robot/sketch.h"
#include "robot/world/dock.h"
#include "robot/world/map_file.h"
#include "robot/world/plan.h"
#include "robot/world/random_home.h"
#include "robot/world/reach.h"
#include "support/matchers.h"

namespace vemra::robot {
namespace {

TEST(Home, RaysEndAtTheEdgeOfTheFirstOccupiedCell)
{
    // Inside from 50 to 950 mm, with one pillar from 500 to 550 in both directions.
    auto lines = room(20, 20);
    lines[9][10] = '#';
    const Home home = sketch(lines);
    const PointMm from{225, 525};
    const auto near = [](double mm) { return Optional(DoubleNear(mm, 1e-9)); };

    EXPECT_THAT(home.castRay(from, {0}, 5000), near(275));
    EXPECT_THAT(home.castRay(from, {180}, 5000), near(175));
    EXPECT_THAT(home.castRay(from, {90}, 5000), near(425));
    EXPECT_THAT(home.castRay(from, {-90}, 5000), near(475));
    // Up right under 45 degrees past the pillar, into the upper wall.
    EXPECT_THAT(home.castRay(from, {45}, 5000), near(425 * std::sqrt(2)));
    EXPECT_THAT(home.castRay(from, {-30}, 5000), near(725 / std::cos(30 * std::acos(-1.0) / 180)));

    // From a corner of cells, along their borders.
    for (const double heading : {0.0, 90.0, 180.0, 270.0, -90.0})
        EXPECT_THAT(sketch(room(20, 20)).castRay({500, 500}, {heading}, 5000), near(450)) << heading;
    EXPECT_EQ(home.castRay(from, {0}, 274), std::nullopt) << "nothing within reach";
    EXPECT_THAT(home.castRay({525, 525}, {123}, 5000), near(0)) << "from within the pillar";
    EXPECT_THAT(home.castRay({-500, 25}, {0}, 5000), near(500)) << "from outside";
    EXPECT_EQ(home.castRay({-500, 25}, {180}, INFINITY), std::nullopt) << "away from the home";
}

TEST(Home, ADiscMayTouchAWallButNotCutACorner)
{
    auto lines = room(20, 20);
    lines[9][10] = '#';  // 500 to 550 mm
    lines[2][3] = '?';   // 150 to 200 mm, 850 to 900 mm
    const Home home = sketch(lines);
    EXPECT_TRUE(home.isDiscFree({225, 225}, 175));
    EXPECT_FALSE(home.isDiscFree({224, 225}, 175));
    // Near the pillar's corner at (500, 500): 130 mm off in both directions is 183.8 mm.
    EXPECT_TRUE(home.isDiscFree({370, 370}, 183));
    EXPECT_FALSE(home.isDiscFree({370, 370}, 185));
    EXPECT_FALSE(home.isDiscFree({-100, -100}, 50)) << "outside";
    EXPECT_FALSE(home.isDiscFree({175, 750}, 101)) << "unknown floor";
    EXPECT_THAT(home.castRay({175, 525}, {90}, 5000), Optional(DoubleNear(425, 1e-9))) << "lets rays through";
}

const std::filesystem::path kHomes = std::filesystem::path(VEMRA_SOURCE_DIR) / "homes";

TEST(Flat, MapIsWhatThePlanGives)
{
    const Plan plan = readPlan(kHomes / "flat/plan.yaml");
    EXPECT_EQ(bytesOf(kHomes / "flat/flat.pgm"), pgmBytes(drawPlan(plan)));
    EXPECT_EQ(bytesOf(kHomes / "flat/flat.yaml"), mapYaml(plan));
}

TEST(Plan, FaultsNameTheLine)
{
    const Folder folder;
    const auto fault = [&](const std::string& line) {
        folder.write("plan.yaml", "name: hut\nfloor: [0, 0, 1, 1]\nmargin: 0.5\n" + line + "\n");
        return faultOf([&] { readPlan(folder / "plan.yaml"); });
    };
    EXPECT_EQ(fault("walls: []"), "nothing thrown");
    EXPECT_THAT(fault("walls: [[0, 0, 0.07, 1]]"), HasSubstr("plan.yaml:4: 0.07 is off the grid"));
    EXPECT_THAT(fault("walls:\n  - [0, 0, 0, 1]"), HasSubstr("plan.yaml:5: an empty box"));
    EXPECT_THAT(fault("doors: [[0, 0, 1.1, 1]]"), HasSubstr("outside the floor"));
    EXPECT_THAT(fault("furniture: [{name: bed}]"), HasSubstr("either \"box\" or \"legs\""));
    EXPECT_THAT(fault("wall: []"), HasSubstr("plan.yaml:4: a plan has no field \"wall\""));
}

TEST(RandomHome, IsALawfulHomeAndTheSameForASeed)
{
    const RandomHome one = randomHome(7);
    const RandomHome same = randomHome(7);
    EXPECT_EQ(toText(*one.plan.dock), toText(*same.plan.dock));
    EXPECT_EQ(one.plan.furniture, same.plan.furniture);
    int several_rooms = 0;
    int low_things = 0;
    for (std::uint64_t seed = 1; seed <= 12; ++seed) {
        const RandomHome made = randomHome(seed);
        ASSERT_TRUE(made.plan.dock) << seed;
        const Home home = homeOfPlan(made.plan);
        EXPECT_NO_THROW(checkDock(home, *made.plan.dock, "a home", 0)) << seed;
        // All rooms hang together, with the dock in them.
        const Reach reach(home, kRobotRadiusMm + 10);
        const int main = reach.largest();
        std::size_t all = 0;
        for (int region = 0; region <= main; ++region)
            all += reach.cellsIn(region);
        EXPECT_THAT(static_cast<double>(reach.cellsIn(main)), Ge(0.97 * static_cast<double>(all))) << seed;
        const PointMm out = made.plan.dock->face.at + 700 * direction(made.plan.dock->face.yaw);
        EXPECT_EQ(reach.regionOf(home.cellOf(out)), main) << seed;
        several_rooms += made.rooms > 1 ? 1 : 0;
        low_things += made.low.empty() ? 0 : 1;
    }
    EXPECT_THAT(several_rooms, Gt(5));
    EXPECT_THAT(low_things, Gt(5));
}

std::string check(const Home& home, const Dock& dock)
{
    return faultOf([&] { checkDock(home, dock, "map.yaml", 7); });
}

TEST(Dock, BadPlacesAreRefusedWithTheirReasonAndAnOffer)
{
    // 3 x 2 m inside.
    auto lines = room(62, 42);
    const Home home = sketch(lines);
    EXPECT_EQ(check(home, {{{1500, 50}, {90}}}), "nothing thrown");
    EXPECT_EQ(check(home, {{{1500, 80}, {90}}}), "nothing thrown") << "a little before the wall";

    EXPECT_THAT(check(home, {{{1500, 20}, {90}}}),
                HasSubstr("map.yaml:7: the dock at 1.5,0.02,90 stands inside a wall"));
    EXPECT_THAT(check(home, {{{1500, 50}, {-90}}}), HasSubstr("looks into one"));
    EXPECT_THAT(check(home, {{{1500, -2000}, {90}}}),
                HasSubstr("outside the map: expected x from 0.00 to 3.10 m"));
    EXPECT_THAT(check(home, {{{1500, 20}, {90}}}), HasSubstr("--dock "));
    EXPECT_THAT(check(home, {{{110, 50}, {90}}}), HasSubstr("no room for the robot"));

    lines[25] = "#" + std::string(60, '#') + "#";  // 800 to 850 mm: room to stand, none to back out
    EXPECT_THAT(check(sketch(lines), {{{1500, 50}, {90}}}), HasSubstr("no way out"));
}

TEST(Dock, AutomaticPlaceIsTheMiddleOfTheLongestFreeWall)
{
    auto lines = room(62, 42);
    EXPECT_EQ(placeDock(sketch(lines)), (Dock{{{1550, 50}, {90}}}));

    // A pillar before the lower wall at 1.5 to 1.55 m, another before the upper one at 0.5 m: the upper
    // wall's longer half is the longest now.
    lines[41 - 5][30] = '#';
    lines[5][10] = '#';
    EXPECT_EQ(placeDock(sketch(lines)), (Dock{{{1800, 2050}, {-90}}}));
}

TEST(Dock, AutomaticPlaceIsNotOnAnIslandTheRobotCannotLeave)
{
    // Left a room without a door whose walls are longer; right, larger on the whole, the one to live in.
    auto lines = room(120, 62);
    for (std::size_t row = 1; row < 61; ++row)
        lines[row][30] = '#';
    for (std::size_t row = 10; row < 52; row += 12) {  // clutter, so that the right room's walls are broken
        lines[row][118] = lines[row][31] = '#';
    }
    for (std::size_t column = 40; column < 118; column += 14)
        lines[1][column] = lines[60][column] = '#';
    const auto dock = placeDock(sketch(lines));
    ASSERT_TRUE(dock);
    EXPECT_GT(dock->face.at.x, 1550);
}

// A room of 4 x 3 m turned by some angle, its walls 100 mm thick; perhaps with a column that stands along
// the rows of the map.
Home turnedRoom(double angle, bool column_stands = false)
{
    const PointMm along = direction({angle});
    const int side = 120;
    std::vector<CellState> cells;
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            const PointMm p{(column + 0.5 - side / 2.0) * 50, (row + 0.5 - side / 2.0) * 50};
            const double u = std::abs(p.x * along.x + p.y * along.y) - 2000;
            const double v = std::abs(p.y * along.x - p.x * along.y) - 1500;
            const double out = std::max(u, v);
            const bool in_column = column_stands && std::abs(p.x) < 350 && std::abs(p.y) < 350;
            cells.push_back(in_column   ? CellState::Occupied
                            : out < 0   ? CellState::Free
                            : out < 100 ? CellState::Occupied
                                        : CellState::Unknown);
        }
    }
    return {side, side, {0, 0}, cells};
}

TEST(Dock, AnyRoomGetsADockThatPassesTheCheck)
{
    for (double angle = 0; angle < 90; angle += 2.5) {
        const Home home = turnedRoom(angle);
        const auto dock = placeDock(home);
        ASSERT_TRUE(dock) << angle;
        EXPECT_EQ(check(home, *dock), "nothing thrown") << angle;
        const PoseMm docked = dockedPose(*dock);
        EXPECT_TRUE(home.isDiscFree(docked.at, kRobotRadiusMm)) << angle;
        const PointMm face = docked.at + kRobotRadiusMm * direction(docked.yaw);
        EXPECT_LT(distance(face, dock->face.at), 1e-6) << "touches it and looks at it";
        // At a wall, and square to it.
        EXPECT_TRUE(home.castRay(dock->face.at, {dock->face.yaw.value + 180}, 150)) << angle;
        const double askew = wrapped({4 * (dock->face.yaw.value - angle)}).value / 4;
        EXPECT_LT(std::abs(askew), 4) << angle;
        EXPECT_EQ(placeDock(home), dock) << "the same again";
    }
    for (double angle = 10; angle < 90; angle += 10) {
        const Home home = turnedRoom(angle, true);
        const auto dock = placeDock(home);
        ASSERT_TRUE(dock) << angle;
        EXPECT_GT(distance(dock->face.at, {3000, 3000}), 1300) << angle << ": the column is no wall for it";
    }
    EXPECT_EQ(placeDock(sketch({"....", "...."})), std::nullopt) << "no room for a robot";
}

TEST(Dock, AnOptionOverrulesTheMapAndTheMapTheSearch)
{
    HomeFile file{sketch(room(62, 42)), Dock{{{0, 0}, {0}}}, "map.yaml", 7};
    const Dock given{{{1000, 50}, {90}}};
    const ChosenDock chosen = chooseDock(file, given);
    EXPECT_EQ(chosen.dock, given);
    EXPECT_EQ(chosen.source, DockSource::Given) << "the map's bad dock does not matter";
    EXPECT_THAT(faultOf([&] { chooseDock(file, {}); }), HasSubstr("map.yaml:7: "));
    EXPECT_THAT(faultOf([&] { chooseDock(file, Dock{{{1000, 10}, {90}}}); }), HasSubstr("--dock: "));
    file.dock = given;
    EXPECT_EQ(chooseDock(file, {}).source, DockSource::Map);
    file.dock.reset();
    EXPECT_EQ(chooseDock(file, {}).source, DockSource::Placed);
}

TEST(Dock, OptionTextIsMetresAndDegrees)
{
    EXPECT_EQ(parseDock("1.25,-0.4,270"), (Dock{{{1250, -400}, {-90}}}));
    EXPECT_EQ(toText(parseDock("1.25,-0.4,270")), "1.25,-0.4,-90");
    for (const char* bad : {"", "1,2", "1,2,3,4", "1;2;3", "1,2,x", "1,2,3 ", "a,2,3", "nan,0,0", "1,,3"}) {
        EXPECT_THAT(faultOf([&] { parseDock(bad); }), HasSubstr("expected X,Y,DEG")) << bad;
    }
}

}  // namespace
}  // namespace vemra::robot
