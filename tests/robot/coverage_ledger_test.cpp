// The books of the floor, of walls and of steps against plain geometry, and the search for floor against the
// planner of lines.
#include <algorithm>
#include <cmath>
#include <optional>
#include <set>
#include <utility>

#include "robot/belief/steps.h"
#include "robot/navigation_rig.h"
#include "robot/planning/contour.h"
#include "robot/world/swept_floor.h"

namespace vemra::robot {
namespace {

// --- what was swept ---------------------------------------------------------------------------------

struct Frame
{
    PoseMm pose;
    bool brushes_on;
    bool carried;
};

// Drives, turns, slips aside and is carried about in a room of 4 m, with the brushes on most of the time.
std::vector<Frame> randomDrive(Chance& chance)
{
    std::vector<Frame> frames;
    PoseMm pose{{2000, 2000}, {chance.uniform() * 360}};
    bool on = true;
    const auto put = [&](PointMm at, double yaw, bool carried) {
        pose = {{std::clamp(at.x, 500.0, 3500.0), std::clamp(at.y, 500.0, 3500.0)}, {yaw}};
        frames.push_back({pose, on, carried});
    };
    put(pose.at, pose.yaw.value, true);
    for (int stretch = 0; stretch < 12; ++stretch) {
        on = chance.uniform() < 0.8;
        const double mm = chance.uniform() < 0.3 ? 0 : chance.uniform() * 8;
        const double degrees = chance.uniform() * 8 - 4;
        const double slips_mm = chance.uniform() < 0.2 ? chance.uniform() * 6 - 3 : 0;
        if (chance.uniform() < 0.15)
            put({chance.uniform() * 4000, chance.uniform() * 4000}, chance.uniform() * 360, true);
        for (int i = upTo(chance, 30); i >= 0; --i) {
            const PointMm ahead = direction(pose.yaw);
            put(pose.at + mm * ahead + slips_mm * PointMm{-ahead.y, ahead.x}, pose.yaw.value + degrees,
                false);
        }
    }
    return frames;
}

// How far a place is from all that brush and side brush touch: a line of 200 mm across the middle, and a disc
// of 85 mm, 75 mm ahead and 110 mm to the right.
double fromBrushes(PointMm place, const PoseMm& pose)
{
    const PointMm ahead = direction(pose.yaw);
    const PointMm to = place - pose.at;
    const double along = to.x * ahead.x + to.y * ahead.y;
    const double left = to.y * ahead.x - to.x * ahead.y;
    return std::min(std::hypot(along, std::max(0.0, std::abs(left) - 100)),
                    std::max(0.0, std::hypot(along - 75, left + 110) - 85));
}

// The least distance of a place from what was swept on the drive; frames are looked at in ten steps.
double fromSwept(PointMm place, const std::vector<Frame>& frames)
{
    double least = 1e9;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const Frame& now = frames[i];
        if (!now.brushes_on || distance(now.pose.at, place) > 350)
            continue;
        const PoseMm& from = now.carried ? now.pose : frames[i - 1].pose;
        for (int step = 1; step <= 10; ++step) {
            const double share = step / 10.0;
            const double turn = wrapped({now.pose.yaw.value - from.yaw.value}).value;
            const PoseMm between{from.at + share * (now.pose.at - from.at), {from.yaw.value + share * turn}};
            least = std::min(least, fromBrushes(place, between));
        }
    }
    return least;
}

TEST(Ledgers, HoldWhatBrushAndSideBrushTouchedOnAnyDrive)
{
    const Home home = sketch(room(80, 80));
    for (std::uint64_t seed = 1; seed <= 6; ++seed) {
        SCOPED_TRACE(seed);
        Chance chance(seed);
        const std::vector<Frame> frames = randomDrive(chance);
        SweptFloor swept(home);
        CleanedFloor believed;
        for (const Frame& frame : frames) {
            // Nobody sweeps while it is carried, however near it is put down.
            swept.follow(frame.pose, frame.brushes_on);
            believed.follow(frame.pose, frame.brushes_on);
        }
        std::set<std::pair<int, int>> missed;
        for (const PointMm place : swept.missed({2000, 2000}))
            missed.emplace(std::lround(place.x), std::lround(place.y));
        int touched = 0;
        for (int i = 0; i < 4000; ++i) {
            // The middle of a cell of 10 mm, and of one of 50 mm.
            const PointMm fine{10.0 * (40 + upTo(chance, 320)) + 5, 10.0 * (40 + upTo(chance, 320)) + 5};
            const double away = fromSwept(fine, frames);
            const bool is_swept = !missed.contains({std::lround(fine.x), std::lround(fine.y)});
            touched += is_swept ? 1 : 0;
            if (away > 8 || away == 0) {
                ASSERT_EQ(is_swept, away == 0) << fine.x << ' ' << fine.y << ", " << away << " mm away";
            }
            const CellIndex cell = cellAt(fine);
            const double cell_away = fromSwept(centreOf(cell), frames);
            if (cell_away > 36 || cell_away == 0) {
                ASSERT_EQ(believed.sweptQuarters(cell) > 0, cell_away == 0)
                    << centreOf(cell).x << ' ' << centreOf(cell).y << ", " << cell_away << " mm away";
            }
        }
        EXPECT_THAT(touched, AllOf(Gt(50), Lt(3500)));
        EXPECT_THAT(swept.againM2(), Le(swept.areaM2()));
    }
}

// --- searches ---------------------------------------------------------------------------------------

// A room with things in it, of which some is swept: by lines, so that floor is left here and there.
TEST(UnsweptFloor, IsFoundExactlyWhenThePlannerHasALine)
{
    Chance chance(3);
    int found_some = 0;
    int found_none = 0;
    for (int round = 0; round < 16; ++round) {
        SCOPED_TRACE(round);
        std::vector<std::string> lines = room(64, 46);
        for (int thing = 0; thing < 4; ++thing) {
            const int column = 16 + upTo(chance, 30);
            const int row = 4 + upTo(chance, 30);
            fill(lines, {column, row}, {column + upTo(chance, 10), row + upTo(chance, 8)}, '#');
        }
        NavigationRig robot(sketch(lines), {{450, 450}, {0}});
        robot.knowHome();
        // One round in four leaves nothing; the others leave a stretch here and there.
        const double left_share = round % 4 == 0 ? 0 : 0.15 * (round % 4);
        for (double y = 50; y < 2300; y += 90) {
            for (double x = 50; x < 3200; x += 200) {
                const bool sweeps = chance.uniform() >= left_share;
                for (double on = 0; on <= 200; on += 20)
                    robot.map.cleaned().follow({{x + on, y}, {0}}, sweeps);
            }
        }
        const bool found = robot.search("Normal");
        const auto hasLine = [&](const std::string& from) {
            return robot.passes("PlanNextLine is_rotate=false region=${gridmap_limit} source_point=" + from);
        };
        const bool planned = hasLine("${current_coord}") || (found && hasLine("${navi_target_point}"));
        EXPECT_EQ(found, planned);
        EXPECT_TRUE(left_share > 0 || !found);
        (found ? found_some : found_none)++;
    }
    EXPECT_THAT(found_some, Ge(6));
    EXPECT_THAT(found_none, Ge(4));
}

TEST(UnsweptFloor, BehindAWallHasNoLine)
{
    std::vector<std::string> lines = room(64, 46);
    fill(lines, {32, 1}, {32, 44}, '#');
    NavigationRig robot(sketch(lines), {{450, 450}, {0}});
    robot.knowHome();
    robot.blackboard->set("part", BoxMm{{1700, 0}, {3200, 2300}});
    const auto hasLineFrom = [&robot](PointMm place) {
        robot.blackboard->set("there", place);
        return robot.passes("PlanNextLine is_rotate=false region=${part} source_point=${there}");
    };
    EXPECT_FALSE(hasLineFrom({450, 450}));
    EXPECT_TRUE(hasLineFrom({2450, 450}));
}

// --- what is cleaned at a time ----------------------------------------------------------------------

TEST(Parts, StayAsTheyWereMadeAndLieOnTheMap)
{
    NavigationRig robot(sketch(room(64, 46)), {{450, 450}, {0}});
    robot.knowHome();
    const auto partAt = [&robot](PointMm place) {
        robot.blackboard->set("there", place);
        robot.blackboard->erase("current_subregion");
        const bool made = robot.passes("SetCurrentSubregion source_point=${there}");
        return made ? std::optional(robot.blackboard->get<BoxMm>("current_subregion")) : std::nullopt;
    };
    const auto first = partAt({500, 500});
    ASSERT_TRUE(first);
    EXPECT_EQ(partAt({2500, 1800}), first) << "the first owner counts";
    EXPECT_TRUE(robot.passes("GridmapLimitCheck"));
    robot.blackboard->set("gridmap_limit", BoxMm{{1000, 1000}, {3000, 2000}});
    EXPECT_FALSE(robot.passes("GridmapLimitCheck"));
    EXPECT_FALSE(partAt({500, 500}));
}

TEST(Parts, OfDrawnRoomsAreNumberedAndAPointHasANumberOfItsOwn)
{
    NavigationRig robot(sketch(room(64, 46)), {{450, 450}, {0}});
    robot.knowHome();
    const auto roomAt = [&robot](PointMm goal) {
        robot.blackboard->set("navi_target_point", goal);
        EXPECT_TRUE(robot.passes("SetDrawAreaSegmentMap") && robot.passes("SetCurrentArea"));
        return robot.text("current_area_val");
    };
    robot.blackboard->set("Draw_Area_Set", std::vector<double>{500, 500, 1000, 1800, 1500, 500, 2000, 1800});
    EXPECT_EQ(roomAt({700, 1000}), "1");
    EXPECT_EQ(roomAt({1700, 1000}), "2");
    EXPECT_EQ(roomAt({1250, 1000}), "127") << "beside them";
    robot.blackboard->set("Select_Point_Set", std::vector<double>{1200, 1000});
    ASSERT_TRUE(robot.passes("SetPointCleaningArea"));
    EXPECT_EQ(roomAt({1250, 1000}), "126");
}

TEST(Chains, AreClosedWhereTheyRunOntoATracedWall)
{
    NavigationRig robot(sketch(room(64, 46)), {{1000, 235}, {0}});
    robot.knowHome();
    TracedWalls& walls = robot.map.tracedWalls();
    for (const double begin : {600.0, 850.0}) {
        const int chain = walls.begin(true);
        for (double x = begin; x < (chain == 1 ? 1400 : 1000); x += 25)
            ASSERT_FALSE(walls.draw(chain, {{x, 235}, {0}}));
    }
    EXPECT_FALSE(robot.passes("MarkChainCheckOverlap chain_id=2 follow_wall_right=true"));
    EXPECT_TRUE(walls.chains()[0].open);
    EXPECT_FALSE(walls.chains()[1].open);
}

// The loops of the trees rest on it: whatever is offered, each time in vain, the searches come to an end.
TEST(Searches, EndWhenNothingComesOfWhatTheyOffer)
{
    std::vector<std::string> lines = room(64, 46);
    fill(lines, {30, 20}, {33, 23}, '#');
    fill(lines, {50, 38}, {60, 45}, '?');
    NavigationRig robot(sketch(lines), {{450, 450}, {0}});
    robot.knowHome();
    // A wall was followed for half a metre, and somebody drew a room.
    TracedWalls& walls = robot.map.tracedWalls();
    const int chain = walls.begin(true);
    for (double x = 600; x < 1100; x += 25)
        walls.draw(chain, {{x, 235}, {0}});
    robot.blackboard->set("Draw_Area_Set", std::vector<double>{500, 500, 2000, 1800});
    ASSERT_TRUE(robot.passes("SetDrawAreaSegmentMap"));

    constexpr int kMany = 500;
    const auto countOf = [](const auto& offers) {
        int given = 0;
        while (given < kMany && offers())
            ++given;
        return given;
    };
    for (const char* mode : {"Chain", "Block", "SlamRetry", "Segment", "SegmentRetry"})
        EXPECT_THAT(countOf([&] { return robot.search(mode); }), AllOf(Gt(0), Lt(kMany))) << mode;
    const auto hasLine = [&](const std::string& from) {
        return robot.passes("PlanNextLine is_rotate=false region=${gridmap_limit} source_point=" + from);
    };
    EXPECT_THAT(countOf([&] {
                    return hasLine("${current_coord}") ||
                           (robot.search("Normal") && hasLine("${navi_target_point}"));
                }),
                AllOf(Gt(0), Lt(kMany)));
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
            EXPECT_THAT(traced.driven_mm, AllOf(Gt(length - 50), Lt(length + 350)));
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
