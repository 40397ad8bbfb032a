#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

#include "robot/base/chance.h"
#include "robot/belief/steps.h"
#include "robot/belief/traced_walls.h"
#include "robot/grid_sketch.h"
#include "robot/planning/contour.h"

namespace vemra::robot {
namespace {

using testing::AllOf;
using testing::Gt;

int upTo(Chance& chance, int end)
{
    return static_cast<int>(chance.uniform() * end);
}

// --- walls traced from any start, on either side ----------------------------------------------------

struct Traced
{
    int times_closed = 0;
    double driven_mm = 0;  ///< until it closed
};

// Along the middles of the cells, once and a half round.
Traced trace(TracedWalls& walls, const std::vector<CellIndex>& cells, bool wall_right)
{
    Traced traced;
    const int chain = walls.begin(wall_right);
    for (std::size_t i = 0; i < cells.size() * 3 / 2 && traced.times_closed == 0; ++i) {
        const PointMm from = centreOf(cells[i % cells.size()]);
        const PointMm to = centreOf(cells[(i + 1) % cells.size()]);
        const Degrees heading = degreesOfRadians(std::atan2(to.y - from.y, to.x - from.x));
        for (int step = 0; step < 6 && traced.times_closed == 0; ++step) {
            traced.times_closed += walls.draw(chain, {from + (step / 6.0) * (to - from), heading}) ? 1 : 0;
            traced.driven_mm += distance(from, to) / 6;
        }
    }
    return traced;
}

TEST(TracedWalls, AnyOutlineClosesOnceRoundFromAnyStartAndOnEitherSide)
{
    Chance chance(17);
    for (int round = 0; round < 20; ++round) {
        SCOPED_TRACE(round);
        std::vector<std::string> lines = room(80, 70);
        // Pillars and bays.
        const CellIndex pillar{20 + upTo(chance, 30), 20 + upTo(chance, 20)};
        const CellIndex far{pillar.column + upTo(chance, 8), pillar.row + upTo(chance, 8)};
        fill(lines, pillar, far, '#');
        fill(lines, {1, 1}, {upTo(chance, 10), upTo(chance, 10)}, '#');
        fill(lines, {70 - upTo(chance, 8), 58 - upTo(chance, 8)}, {78, 68}, '#');
        const PlanningMap plan = makePlanningMap(gridOf(sketch(lines)), {});
        for (const bool island : {false, true}) {
            // Straight to the right of the pillar's upper edge: its own edge, or the room's.
            CellIndex at{far.column, far.row};
            const CellIndex towards{island ? -1 : 1, 0};
            while (plan.at(at) != Ground::Open ||
                   (!island && plan.at({at.column + towards.column, at.row}) == Ground::Open))
                ++at.column;
            auto cells = contourWithEdgeOnLeft(plan, at, towards, [](CellIndex) { return true; });
            double length = 0;
            for (std::size_t i = 0; i < cells.size(); ++i)
                length += distance(centreOf(cells[i]), centreOf(cells[(i + 1) % cells.size()]));
            std::rotate(cells.begin(), cells.begin() + upTo(chance, static_cast<int>(cells.size())),
                        cells.end());
            const bool wall_right = chance.uniform() < 0.5;
            if (wall_right)
                std::reverse(cells.begin(), cells.end());
            TracedWalls walls;
            const Traced traced = trace(walls, cells, wall_right);
            ASSERT_EQ(traced.times_closed, 1);
            EXPECT_THAT(traced.driven_mm, AllOf(Gt(length - 50), testing::Lt(length + 350)));
            const Grid<unsigned char> outside = walls.outside();
            const CellIndex within_pillar = pillar;
            const CellIndex floor_beside{pillar.column - 8, pillar.row};
            EXPECT_EQ(outside.at(within_pillar), 0) << "the pillar is shut in by both";
            EXPECT_EQ(outside.at(floor_beside), island ? 1 : 0);
            EXPECT_EQ(outside.at({-3, -3}), 1);
            EXPECT_EQ(walls.isTraced(pillar) || walls.isTraced(far), island);
        }
    }
}

// --- steps in the floor -----------------------------------------------------------------------------

TEST(StepBook, OpensTheNearestStepWholeAndNoOther)
{
    for (std::uint64_t seed = 1; seed <= 30; ++seed) {
        SCOPED_TRACE(seed);
        Chance chance(seed);
        // Sills a metre apart and more, felt here and there along their length, in any order.
        struct Felt
        {
            PointMm at;
            int sill;
        };
        std::vector<Felt> felt;
        const int sills = 1 + upTo(chance, 4);
        for (int sill = 0; sill < sills; ++sill)
            for (double x = 0; x < 1500; x += 150 + chance.uniform() * 240)
                felt.push_back({{x, 1000.0 * sill + chance.uniform() * 50}, sill});
        for (std::size_t i = felt.size(); i > 1; --i)
            std::swap(felt[i - 1], felt[static_cast<std::size_t>(upTo(chance, static_cast<int>(i)))]);
        StepBook book;
        for (const Felt& one : felt)
            book.meet(one.at, false);
        std::set<int> open;
        while (true) {
            const PointMm from{chance.uniform() * 3000 - 700, chance.uniform() * 1000 * sills};
            const Felt* nearest = nullptr;
            for (const Felt& one : felt)
                if (!open.contains(one.sill) &&
                    (nearest == nullptr || distance(one.at, from) < distance(nearest->at, from)))
                    nearest = &one;
            const std::uint64_t before = book.version();
            ASSERT_EQ(book.openNearest(from), nearest != nullptr);
            if (nearest == nullptr)
                break;
            ASSERT_NE(book.version(), before);
            open.insert(nearest->sill);
            for (const Felt& one : felt) {
                ASSERT_EQ(book.isOpen(one.at), open.contains(one.sill)) << one.at.x << ' ' << one.at.y;
                book.meet(one.at, false);
            }
            for (const PointMm closed : book.closed())
                ASSERT_FALSE(book.isOpen(closed));
        }
        EXPECT_EQ(static_cast<int>(open.size()), sills);
        EXPECT_TRUE(book.closed().empty());
    }
}

}  // namespace
}  // namespace vemra::robot
