#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "robot/grid_sketch.h"
#include "robot/robot_run.h"

namespace vemra::robot {
namespace {

using testing::Ge;
using testing::Le;

struct Shape
{
    std::string name;
    Home home;
    Dock dock;
};

// Walls of two cells around so much floor.
std::vector<std::string> walled(int columns, int rows)
{
    std::vector<std::string> lines = room(columns + 4, rows + 4);
    fill(lines, {1, 1}, {columns + 2, 1}, '#');
    fill(lines, {1, rows + 2}, {columns + 2, rows + 2}, '#');
    fill(lines, {1, 1}, {1, rows + 2}, '#');
    fill(lines, {columns + 2, 1}, {columns + 2, rows + 2}, '#');
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

class CleanOf : public testing::TestWithParam<int>
{};

// From the dock by the start key until it is home again.
TEST_P(CleanOf, AShapeSweepsItInAboutTheIdealTimeAndWay)
{
    static Shape (*const kShapes[])() = {emptyRoom, angle};
    const Shape shape = kShapes[GetParam()]();
    RobotRun run(RobotRun::scenario("on_dock: true, battery: 100", {"at: 1s, key: start"}, "15m"),
                 [&shape](RobotSetup& setup) {
                     setup.home = shape.home;
                     setup.dock = shape.dock;
                 });
    Robot& robot = *run.robot;
    bool left = false;
    while (robot.frame() < 45000 && !(left && robot.state().contacts.touching())) {
        robot.step();
        left = left || (robot.frame() > 100 && !robot.state().contacts.touching());
    }
    const nlohmann::ordered_json report = robot.report();
    SCOPED_TRACE(shape.name + ": " + report.dump());
    constexpr double kBrushM = 0.2;
    EXPECT_TRUE(robot.state().contacts.touching()) << "home again";
    EXPECT_THAT(report.at("coverage").get<double>(), Ge(0.985));
    EXPECT_THAT(report.at("distance_m").get<double>(),
                Le(1.4 * report.at("reachable_m2").get<double>() / kBrushM));
    ASSERT_TRUE(report.at("t97_s").is_number());
    EXPECT_THAT(report.at("t97_s").get<double>(), Le(1.8 * report.at("ideal_time_s").get<double>()));
}

INSTANTIATE_TEST_SUITE_P(Shapes, CleanOf, testing::Range(0, 2));

}  // namespace
}  // namespace vemra::robot
