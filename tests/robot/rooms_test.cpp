#include <gmock/gmock.h>

#include <algorithm>
#include <set>

#include "robot/files.h"
#include "robot/grid_sketch.h"
#include "robot/planning/rooms.h"
#include "robot/world/map_file.h"
#include "robot/world/random_home.h"

namespace vemra::robot {
namespace {

using testing::AllOf;
using testing::Each;
using testing::Gt;
using testing::Lt;
using testing::Ne;

RoomGrid roomsOfFlat()
{
    const HomeFile flat = readHome(std::filesystem::path(VEMRA_SOURCE_DIR) / "homes/flat/flat.yaml");
    return divideIntoRooms(gridOf(flat.home));
}

TEST(Rooms, TheFlatIsCutInItsDoorsAndNotBetweenItsFurniture)
{
    const RoomGrid rooms = roomsOfFlat();
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
    for (int seed = 1; seed <= kHomes; ++seed) {
        const RandomHome made = randomHome(static_cast<std::uint64_t>(seed));
        const RoomGrid rooms = divideIntoRooms(gridOf(homeOfPlan(made.plan)));
        std::size_t free = 0;
        std::size_t covered = 0;
        const Grid<CellState> floor = gridOf(homeOfPlan(made.plan));
        for (std::size_t i = 0; i < floor.cells().size(); ++i) {
            if (floor.cells()[i] == CellState::Free) {
                ++free;
                covered += rooms.at(floor.window().cellOf(i)) != kNoRoom ? 1U : 0U;
            }
        }
        EXPECT_THAT(static_cast<double>(covered) / static_cast<double>(free), Gt(0.95)) << "seed " << seed;
        const int found = static_cast<int>(roomsOf(rooms).size());
        off += std::abs(found - made.rooms);
        EXPECT_LE(std::abs(found - made.rooms), 3) << "seed " << seed;
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

}  // namespace
}  // namespace vemra::robot
