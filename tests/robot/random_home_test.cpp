#include <gmock/gmock.h>

#include "robot/world/random_home.h"
#include "robot/world/reach.h"

namespace vemra::robot {
namespace {

using testing::Ge;
using testing::Gt;

TEST(RandomHome, IsALawfulHomeAndTheSameForASeed)
{
    int several_rooms = 0;
    int low_things = 0;
    for (std::uint64_t seed = 1; seed <= 12; ++seed) {
        const RandomHome made = randomHome(seed);
        ASSERT_TRUE(made.plan.dock) << seed;
        EXPECT_EQ(toText(*randomHome(seed).plan.dock), toText(*made.plan.dock)) << seed;
        EXPECT_EQ(randomHome(seed).plan.furniture, made.plan.furniture) << seed;
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

}  // namespace
}  // namespace vemra::robot
