#include "app/batch/lost_case.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "app/user_error.h"
#include "robot/base/chance.h"
#include "robot/base/clock.h"
#include "robot/host/robot.h"
#include "robot/host/sample_files.h"
#include "robot/world/reach.h"

namespace vemra::app {
namespace {

using robot::Robot;

constexpr char kScenario[] = "scenarios/find_the_place_again.yaml";
constexpr double kRightMm = 150;
constexpr double kRightDeg = 5;
constexpr double kBeforeDockMm = 500;

robot::PoseMm poseOnFloor(const robot::Home& home, const robot::Dock& dock, robot::Chance& chance)
{
    constexpr int kTries = 100'000;
    const robot::Reach reach(home, robot::kRobotRadiusMm + 10);
    const int floor = reach.regionOf(
        home.cellOf(robot::dockedPose(dock).at + kBeforeDockMm * robot::direction(dock.face.yaw)));
    const robot::PointMm size = home.farCorner() - home.origin();
    for (int i = 0; i < kTries && floor != robot::Reach::kNone; ++i) {
        const robot::PointMm at =
            home.origin() + robot::PointMm{chance.uniform() * size.x, chance.uniform() * size.y};
        if (reach.regionOf(home.cellOf(at)) == floor && home.isDiscFree(at, robot::kRobotRadiusMm + 10))
            return {{std::round(at.x), std::round(at.y)}, {std::round(chance.uniform() * 360 - 180)}};
    }
    throw UserError("there is no free floor around the dock");
}

double tenths(double value)
{
    return std::round(value * 10) / 10;
}

}  // namespace

BatchCase caseOfLost(const robot::HomeFile& home, const std::filesystem::path& file, std::uint64_t seed)
{
    robot::Chance chance(seed);
    const std::filesystem::path played = robot::sampleFile(kScenario);
    robot::Scenario scenario = robot::readScenario(played);
    const robot::Dock dock = robot::chooseDock(home, std::nullopt).dock;
    const robot::PoseMm pose = poseOnFloor(home.home, dock, chance);
    scenario.start.pose = pose;
    scenario.expectations.clear();
    const std::string tree = scenario.tree;
    return {.seed = seed,
            .home = home.home,
            .dock = dock,
            .cliffs = home.cliffs,
            .scenario = std::move(scenario),
            .tree = tree,
            .replay = fmt::format("vemra run --scenario {} --home {} --pose {:.3f},{:.3f},{:.0f} --seed {}",
                                  played.string(), file.string(), pose.at.x / 1e3, pose.at.y / 1e3,
                                  pose.yaw.value, seed),
            .cleans = false,
            .about = {{"pose", {pose.at.x / 1e3, pose.at.y / 1e3, pose.yaw.value}}}};
}

nlohmann::ordered_json runLost(const BatchCase& one, const std::filesystem::path& plugin)
{
    robot::LogKeeper told([](const robot::Event& event) {
        return std::holds_alternative<robot::event::Note>(event) ||
               std::holds_alternative<robot::event::Message>(event);
    });
    const std::unique_ptr<Robot> robot = makeRobot(one, plugin);
    robot->addSink(told);
    const auto count = [&told](std::string_view text) {
        return std::count_if(told.entries().begin(), told.entries().end(), [text](const auto& entry) {
            const auto* note = std::get_if<robot::event::Note>(&entry.event);
            const auto* message = std::get_if<robot::event::Message>(&entry.event);
            const std::string& said = note != nullptr ? note->text : message->text;
            return said.find(text) != std::string::npos;
        });
    };
    bool sure = false;
    while (robot->frame() < one.scenario.frames && robot->rootFailures() == 0 && !sure) {
        robot->step();
        sure = count("SLAM knows the place") > 0;
    }
    const robot::PoseMm is = robot->body().truePose();
    const robot::PoseMm believed = robot->believedPose();
    const double off_mm = robot::distance(is.at, believed.at);
    const double off_deg = std::abs(robot::wrapped({is.yaw.value - believed.yaw.value}).value);
    const bool right = sure && off_mm <= kRightMm && off_deg <= kRightDeg;
    nlohmann::ordered_json line{
        {"seed", one.seed},
        {"good", right},
        {"ended", right                       ? "found"
                  : sure                      ? "wrong place"
                  : robot->rootFailures() > 0 ? "gave up"
                                              : "time"},
        {"frames", robot->frame()},
        {"time_s", tenths(static_cast<double>(robot->frame()) * robot::kFrameMs / 1e3)}};
    line.update(one.about);
    line["places"] = count("tolvar goto slam exp");
    if (sure) {
        line["off_mm"] = tenths(off_mm);
        line["off_deg"] = tenths(off_deg);
    }
    line["run_m"] = tenths(robot->body().runMm() / 1e3);
    line["replay"] = one.replay;
    return line;
}

}  // namespace vemra::app
