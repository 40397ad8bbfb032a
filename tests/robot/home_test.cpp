#include "robot/world/home.h"

#include <gmock/gmock.h>

#include <cmath>

#include "robot/sketch.h"
#include "robot/world/reach.h"

namespace vemra::robot {
namespace {

using testing::DoubleNear;
using testing::Optional;

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
    // Under 30 degrees below the horizontal: x grows by 725 to the right wall, y falls by 418.6, so the wall
    // on the right comes first.
    EXPECT_THAT(home.castRay(from, {-30}, 5000), near(725 / std::cos(30 * std::acos(-1.0) / 180)));

    EXPECT_EQ(home.castRay(from, {0}, 274), std::nullopt) << "nothing within reach";
    EXPECT_THAT(home.castRay({525, 525}, {123}, 5000), near(0)) << "from within the pillar";
    EXPECT_THAT(home.castRay({-500, 25}, {0}, 5000), near(500)) << "from outside";
    EXPECT_EQ(home.castRay({-500, 25}, {180}, INFINITY), std::nullopt) << "away from the home";
}

TEST(Home, RaysAlongABorderOfCellsStayOnIt)
{
    const Home home = sketch(room(20, 20));
    for (const double heading : {0.0, 90.0, 180.0, 270.0, 360.0, -90.0}) {
        const auto length = home.castRay({500, 500}, {heading}, 5000);
        EXPECT_THAT(length, Optional(DoubleNear(450, 1e-9))) << heading;
    }
}

TEST(Home, UnknownCellsLetRaysThroughButHoldADiscBack)
{
    const Home home = sketch({"####################", "#.........????.....#", "#.........????.....#",
                              "#.........????.....#", "#.........????.....#", "####################"});
    EXPECT_THAT(home.castRay({75, 100}, {0}, 5000), Optional(DoubleNear(875, 1e-9)));
    EXPECT_TRUE(home.isDiscFree({400, 150}, 100));
    EXPECT_FALSE(home.isDiscFree({401, 150}, 100));
}

TEST(Home, ADiscMayTouchAWallButNotCutACorner)
{
    auto lines = room(20, 20);
    lines[9][10] = '#';  // 500 to 550 mm
    const Home home = sketch(lines);
    EXPECT_TRUE(home.isDiscFree({225, 225}, 175));
    EXPECT_FALSE(home.isDiscFree({224, 225}, 175));
    // Near the pillar's corner at (500, 500): 130 mm off in both directions is 183.8 mm.
    EXPECT_TRUE(home.isDiscFree({370, 370}, 183));
    EXPECT_FALSE(home.isDiscFree({370, 370}, 185));
    EXPECT_FALSE(home.isDiscFree({-100, -100}, 50)) << "outside";
}

TEST(Reach, DoorsNarrowerThanTheDiscPartTheFloor)
{
    auto lines = room(42, 20);
    for (std::size_t row = 1; row < 19; ++row) {
        lines[row][20] = '#';
    }
    const auto regions = [&](std::size_t door_cells) {
        auto with_door = lines;
        for (std::size_t row = 5; row < 5 + door_cells; ++row) {
            with_door[row][20] = '.';
        }
        const Reach reach(sketch(with_door), 175);
        return std::pair{reach.regionOf({5, 5}), reach.regionOf({35, 5})};
    };
    const auto [left, right] = regions(6);
    EXPECT_NE(left, Reach::kNone);
    EXPECT_NE(right, Reach::kNone);
    EXPECT_NE(left, right) << "300 mm";
    const auto [open_left, open_right] = regions(7);
    EXPECT_EQ(open_left, open_right) << "350 mm";
}

}  // namespace
}  // namespace vemra::robot
