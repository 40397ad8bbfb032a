#include "app/batch/home_case.h"

#include <fmt/format.h>

#include <cmath>
#include <vector>

#include "app/user_error.h"
#include "robot/base/output_file.h"
#include "robot/world/map_file.h"

namespace vemra::app {
namespace {

robot::Scenario wholeHome(const std::vector<robot::BoxMm>& low)
{
    robot::Scenario scenario;
    scenario.name = "whole home";
    scenario.start.battery = 100;
    int number = 0;
    for (const robot::BoxMm& box : low)
        scenario.events.push_back(
            {0, robot::PutDown{fmt::format("low {}", ++number), {box.low, box.high}, true, false}, 0,
             "put down"});
    scenario.events.push_back({250, robot::KeyPress{robot::PanelKey::Start}, 0, "key: start"});
    scenario.frames = 1;
    return scenario;
}

// What a run of `vemra run` needs to be the same.
std::string scenarioText(const robot::RandomHome& made)
{
    std::string text = fmt::format(
        "name: Whole home\nhome: {0}.yaml\nstart: {{on_dock: true, battery: 100}}\nframes: 2h\nevents:\n",
        made.plan.name);
    int number = 0;
    for (const robot::BoxMm& box : made.low)
        text += fmt::format(
            "  - {{at: 0, put_down: low {}, box_at: [{:.2f}, {:.2f}, {:.2f}, {:.2f}], low: true}}\n",
            ++number, box.low.x / 1e3, box.low.y / 1e3, box.high.x / 1e3, box.high.y / 1e3);
    return text + "  - {at: 5s, key: start}\n";
}

}  // namespace

BatchCase caseOfHome(const robot::RandomHome& made, std::uint64_t seed)
{
    if (!made.plan.dock)
        throw UserError(fmt::format("the home of seed {} has no wall for a dock", seed));
    return {.seed = seed,
            .home = robot::homeOfPlan(made.plan),
            .dock = *made.plan.dock,
            .cliffs = {},
            .scenario = wholeHome(made.low),
            .tree = "RobotNode",
            .replay = fmt::format("vemra batch --homes 1 --seed {} --keep DIR", seed),
            .cleans = true,
            .about = {{"rooms", made.rooms},
                      {"furnished", std::round(100 * made.furnished) / 100},
                      {"low_things", made.low.size()}}};
}

std::string keepHome(const robot::RandomHome& made, std::uint64_t seed, const std::filesystem::path& folder)
{
    std::filesystem::create_directories(folder);
    const auto file = [&](const char* end) { return folder / (made.plan.name + end); };
    robot::writeFile(file(".pgm"), robot::pgmBytes(robot::drawPlan(made.plan)));
    robot::writeFile(file(".yaml"), robot::mapYaml(made.plan));
    robot::writeFile(file(".scenario.yaml"), scenarioText(made));
    return fmt::format("vemra run --scenario {} --seed {}", file(".scenario.yaml").string(), seed);
}

}  // namespace vemra::app
