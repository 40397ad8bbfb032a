#include <gmock/gmock.h>

#include "robot/body/laser.h"
#include "robot/grid_sketch.h"
#include "robot/planning/place_match.h"

namespace vemra::robot {
namespace {

using testing::Gt;
using testing::Lt;

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
