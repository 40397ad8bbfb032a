#include "robot/world/home.h"

#include <gmock/gmock.h>

#include <cmath>

#include "robot/sketch.h"

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
    EXPECT_THAT(home.castRay(from, {-30}, 5000), near(725 / std::cos(30 * std::acos(-1.0) / 180)));

    // From a corner of cells, along their borders.
    for (const double heading : {0.0, 90.0, 180.0, 270.0, -90.0}) {
        EXPECT_THAT(sketch(room(20, 20)).castRay({500, 500}, {heading}, 5000), near(450)) << heading;
    }
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

}  // namespace
}  // namespace vemra::robot
