#include <fmt/format.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <numbers>
#include <string>
#include <vector>

#include "robot/base/chance.h"
#include "robot/grid_sketch.h"
#include "robot/robot_run.h"

namespace vemra::robot {
namespace {

struct Shape
{
    std::string name;
    Home home;
    Dock dock;
    // What is asked of a clean.
    double coverage = 0.985;
};

// Walls of two cells around so much floor.
std::vector<std::string> walled(int columns, int rows)
{
    std::vector<std::string> lines(static_cast<std::size_t>(rows) + 4,
                                   std::string(static_cast<std::size_t>(columns) + 4, '#'));
    fill(lines, {2, 2}, {columns + 1, rows + 1}, '.');
    return lines;
}

constexpr Dock onUpperWall(double x, int rows)
{
    return {{{x, (rows + 2) * Home::kCellMm}, {-90}}};
}

Shape emptyRoom()
{
    return {"an empty room", sketch(walled(60, 50)), onUpperWall(1600, 50)};
}

Shape angle()
{
    std::vector<std::string> lines = walled(70, 60);
    fill(lines, {40, 34}, {73, 63}, '#');
    return {"an L", sketch(lines), onUpperWall(1000, 60)};
}

Shape tableAndChairs()
{
    std::vector<std::string> lines = walled(70, 60);
    const auto legs = [&lines](CellIndex low, CellIndex size) {
        for (const CellIndex leg : {CellIndex{0, 0}, {size.column, 0}, {0, size.row}, size}) {
            const CellIndex cell{low.column + leg.column, low.row + leg.row};
            fill(lines, cell, cell, '#');
        }
    };
    legs({26, 24}, {24, 16});
    legs({32, 15}, {8, 8});
    legs({34, 41}, {8, 8});
    return {"a table and two chairs", sketch(lines), onUpperWall(1000, 60)};
}

Shape twoRooms()
{
    std::vector<std::string> lines = walled(90, 50);
    fill(lines, {46, 2}, {47, 51}, '#');
    fill(lines, {46, 20}, {47, 33}, '.');
    return {"two rooms and a door of 700 mm", sketch(lines), onUpperWall(1000, 50)};
}

// Walls at 20 degrees, as a laser records them: two cells thick, ragged, and nothing known behind them.
Shape slanted()
{
    constexpr int kColumns = 110;
    constexpr int kRows = 104;
    constexpr PointMm kCorner{1900, 700};
    constexpr double kLengthMm = 3400;
    constexpr double kWidthMm = 2800;
    constexpr double kDockFreeMm = 500;
    const PointMm along = direction({20});
    const PointMm across{-along.y, along.x};
    const PointMm dock = kCorner + (kLengthMm / 2) * along + kWidthMm * across;
    std::vector<std::string> lines(kRows, std::string(kColumns, '?'));
    const auto at = [&lines](int column, int row) -> char& {
        return lines[static_cast<std::size_t>(kRows - 1 - row)][static_cast<std::size_t>(column)];
    };
    const auto isFloor = [&](int column, int row) {
        const PointMm to = centreOf({column, row}) - kCorner;
        const double u = to.x * along.x + to.y * along.y;
        const double v = to.x * across.x + to.y * across.y;
        return u >= 0 && u <= kLengthMm && v >= 0 && v <= kWidthMm;
    };
    const auto floorWithin = [&](int column, int row, int cells) {
        for (int dy = -cells; dy <= cells; ++dy)
            for (int dx = -cells; dx <= cells; ++dx)
                if (isFloor(column + dx, row + dy))
                    return true;
        return false;
    };
    Chance chance(3);
    for (int row = 0; row < kRows; ++row) {
        for (int column = 0; column < kColumns; ++column) {
            if (!isFloor(column, row)) {
                at(column, row) = floorWithin(column, row, 2) ? '#' : '?';
                continue;
            }
            const bool at_wall = !isFloor(column + 1, row) || !isFloor(column - 1, row) ||
                                 !isFloor(column, row + 1) || !isFloor(column, row - 1);
            const bool ragged =
                at_wall && chance.uniform() < 0.15 && distance(centreOf({column, row}), dock) > kDockFreeMm;
            at(column, row) = ragged ? '#' : '.';
        }
    }
    return {.name = "walls at 20 degrees", .home = sketch(lines), .dock = {{dock, {-70}}}, .coverage = 0.975};
}

// From the dock by the start key until it is home again, or the second pass begins: the report of it.
nlohmann::ordered_json cleaned(const Shape& shape, std::size_t passes,
                               const std::vector<std::string>& events = {})
{
    std::vector<std::string> all{"at: 1s, key: start"};
    all.insert(all.end(), events.begin(), events.end());
    RobotRun run(RobotRun::scenario("on_dock: true, battery: 100, charge_rate: 6000", all, "15m"),
                 [&shape](RobotSetup& setup) {
                     setup.home = shape.home;
                     setup.dock = shape.dock;
                 });
    Robot& robot = *run.robot;
    std::string task;
    bool ended = false;
    while (robot.frame() < 45000 && !ended && robot.passes() <= passes) {
        robot.step();
        // Charging alone is no end: it may yet go on.
        ended = robot.frame() > 100 && robot.state().modes.current() == Mode::Charging &&
                robot.blackboard().get("task_state", task) && task == "init";
    }
    EXPECT_TRUE(robot.passes() > passes || robot.state().contacts.touching()) << shape.name << ": home again";
    return robot.report();
}

class CleanOf : public testing::TestWithParam<int>
{};

TEST_P(CleanOf, AShapeSweepsItInAboutTheIdealTimeAndWay)
{
    static Shape (*const kShapes[])() = {emptyRoom, angle, tableAndChairs, twoRooms, slanted};
    const Shape shape = kShapes[GetParam()]();
    const nlohmann::ordered_json report = cleaned(shape, 2);
    SCOPED_TRACE(shape.name + ": " + report.dump());
    constexpr double kBrushM = 0.2;
    ASSERT_EQ(report.at("passes").size(), 2) << "a small home is cleaned twice";
    for (const nlohmann::ordered_json& pass : report.at("passes")) {
        EXPECT_THAT(pass.at("coverage").get<double>(), Ge(shape.coverage));
        EXPECT_THAT(pass.at("distance_m").get<double>(),
                    Le(1.4 * report.at("reachable_m2").get<double>() / kBrushM));
    }
    ASSERT_TRUE(report.at("t97_s").is_number());
    EXPECT_THAT(report.at("t97_s").get<double>(), Le(1.8 * report.at("ideal_time_s").get<double>()));
}

INSTANTIATE_TEST_SUITE_P(Shapes, CleanOf, testing::Range(0, 5));

// Whenever it is paused, carried off or runs low, it sweeps the rest and comes home.
TEST(InterruptedClean, LosesNoMoreThanHalfAPercentOfTheFloor)
{
    const Shape shape = emptyRoom();
    const auto first_pass = [](const nlohmann::ordered_json& report) {
        return report.at("passes").at(0).at("coverage").get<double>();
    };
    const double undisturbed = first_pass(cleaned(shape, 1));
    Chance chance(11);
    for (int i = 0; i < 2; ++i) {
        const auto frame = [&chance] { return 700 + static_cast<int>(6000 * chance.uniform()); };
        const int paused = frame();
        const int heading = static_cast<int>(360 * chance.uniform());
        for (const std::vector<std::string>& events :
             {std::vector{fmt::format("at: {}, app: pause", paused),
                          fmt::format("at: {}, app: auto", paused + 500)},
              std::vector{fmt::format("at: {}, carry_to: [1.8, 1.2, {}]", frame(), heading)},
              std::vector{fmt::format("at: {}, battery: 15", frame())}}) {
            const nlohmann::ordered_json report = cleaned(shape, 1, events);
            EXPECT_THAT(first_pass(report), Ge(undisturbed - 0.005)) << events.front();
        }
    }
}

}  // namespace
}  // namespace vemra::robot
