#include "app/run.h"

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "app/interrupt.h"
#include "app/keyboard/keyboard.h"
#include "app/near_names.h"
#include "app/progress.h"
#include "app/run_records.h"
#include "app/trees/tree_library.h"
#include "app/user_error.h"
#include "app/visits/tree_watch.h"
#include "app/whole_number.h"
#include "robot/base/input_error.h"
#include "robot/base/number_list.h"
#include "robot/base/output_file.h"
#include "robot/events/json_lines.h"
#include "robot/events/timeline_printer.h"
#include "robot/host/robot.h"
#include "robot/host/sample_files.h"
#include "robot/host/visit_counter.h"
#include "robot/world/map_file.h"

namespace vemra::app {
namespace {

using robot::Robot;

// A thousand years.
constexpr std::uint64_t kMostFrames = 1'500'000'000'000;

struct RunOptions
{
    std::optional<std::filesystem::path> home;
    std::optional<std::filesystem::path> scenario;
    std::filesystem::path plugin;
    std::string dock;
    std::optional<std::string> tree;
    std::string goal;
    std::string pose;
    std::uint64_t seed = 1;
    std::optional<std::uint64_t> frames;
    std::optional<std::filesystem::path> out;
    std::optional<std::filesystem::path> visits;
    std::string watch;
    bool json = false;
    bool field = false;
    bool keyboard = false;
};

/// The dock of the run; where the map names none, the user hears where it was put.
robot::Dock dockOf(const RunOptions& options, const robot::HomeFile& home)
{
    std::optional<robot::Dock> given;
    if (!options.dock.empty())
        given = robot::parseDock(options.dock);
    for (const std::string& doubt : home.doubts)
        std::cerr << "vemra: " << doubt << '\n';
    if (given && robot::looksLikeRadians(*given))
        std::cerr << "vemra: the yaw of --dock is in degrees: " << given->face.yaw.value
                  << " looks like radians\n";
    const robot::ChosenDock chosen = robot::chooseDock(home, given);
    if (chosen.source == robot::DockSource::Placed)
        std::cerr << "vemra: " << home.file << " names no dock; it is put at --dock "
                  << robot::toText(chosen.dock) << '\n';
    return chosen.dock;
}

void loadTrees(BT::BehaviorTreeFactory& factory, const RunOptions& options, const std::string& tree)
{
    loadTreeLibrary(factory, options.plugin);
    if (!factory.hasTree(tree))
        throw UserError("there is no tree '" + tree + "'" + didYouMean(tree, factory.treeNames()));
}

/// The tree of the run: the option's, or the scenario's, or that of the whole robot.
std::string treeOf(const RunOptions& options, const robot::Scenario& scenario)
{
    return options.tree.value_or(scenario.tree.empty() ? "RobotNode" : scenario.tree);
}

std::filesystem::path homeOf(const RunOptions& options, const robot::Scenario& scenario)
{
    return options.home.value_or(scenario.home.empty() ? robot::sampleFile("homes/flat/flat.yaml")
                                                       : scenario.home);
}

std::optional<robot::PointMm> goalOf(const RunOptions& options, const robot::Scenario& scenario)
{
    if (options.goal.empty())
        return scenario.goal;
    const auto metres = robot::numbersOfText(options.goal, 2);
    if (!metres)
        throw robot::InputError("--goal", 0,
                                "\"" + options.goal + "\": expected X,Y in metres, as in 1.25,-0.4");
    return robot::PointMm{1e3 * metres->at(0), 1e3 * metres->at(1)};
}

/// --pose puts the robot down there, whatever the scenario says.
void putAt(robot::ScenarioStart& start, const std::string& pose)
{
    if (pose.empty())
        return;
    const auto at = robot::numbersOfText(pose, 3);
    if (!at)
        throw robot::InputError(
            "--pose", 0, "\"" + pose + "\": expected X,Y,DEG in metres and degrees, as in 1.25,-0.4,90");
    start.on_dock = false;
    start.pose = robot::PoseMm{{1e3 * at->at(0), 1e3 * at->at(1)}, {at->at(2)}};
}

/// What the scenario expected in vain goes to standard error too: whoever runs many reads it there.
int verdict(const Robot& robot, const std::string& scenario)
{
    for (const robot::Unmet& unmet : robot.unmet())
        std::cerr << "vemra: " << scenario << ':' << unmet.line << ": frame " << unmet.frame << ": "
                  << unmet.text << '\n';
    return robot.unmet().empty() ? kDone : kNotAsExpected;
}

/// Without a word of the user's: the clean of a home, or a robot that waits for keys.
std::filesystem::path scenarioOf(const RunOptions& options)
{
    return options.scenario.value_or(
        robot::sampleFile(options.keyboard ? "scenarios/by_keyboard.yaml" : "scenarios/whole_home.yaml"));
}

/// What is printed while the run goes on; nothing beside a watch or a map, which print of themselves.
std::unique_ptr<robot::LogSink> printerOf(const RunOptions& options)
{
    using robot::TimelinePrinter;
    if (options.json)
        return std::make_unique<robot::JsonLines>(std::cout);
    if (!options.watch.empty() || options.keyboard)
        return nullptr;
    return std::make_unique<TimelinePrinter>(
        std::cout, robot::isColourTerminal(1) ? TimelinePrinter::Colour::On : TimelinePrinter::Colour::Off);
}

std::unique_ptr<TreeWatch> watchOf(const RunOptions& options)
{
    if (options.watch.empty())
        return nullptr;
    const WatchedPart part = watchedPartOf(options.watch);
    return std::make_unique<TreeWatch>(std::cout, TreeLibrary(options.plugin).build(part.tree), part.top);
}

int run(const RunOptions& options)
{
    robot::Scenario scenario = robot::readScenario(scenarioOf(options));
    const std::string scenario_file = scenario.file;
    putAt(scenario.start, options.pose);
    const robot::HomeFile home = robot::readHome(homeOf(options, scenario));
    const robot::Dock dock = dockOf(options, home);
    const std::uint64_t frames = options.frames.value_or(scenario.frames);
    const std::string title = scenario.name;
    const std::string tree = treeOf(options, scenario);
    const std::optional<robot::PointMm> goal = goalOf(options, scenario);
    // They are said of the tree that the scenario was written for.
    if (options.tree && *options.tree != (scenario.tree.empty() ? "RobotNode" : scenario.tree))
        scenario.expectations.clear();
    const std::unique_ptr<robot::LogSink> shown = printerOf(options);
    const std::unique_ptr<TreeWatch> watch = watchOf(options);
    std::optional<RunRecords> records;
    robot::VisitCounter counter;
    Robot robot({.load_trees = [&](BT::BehaviorTreeFactory& factory) { loadTrees(factory, options, tree); },
                 .home = home.home,
                 .dock = dock,
                 .cliffs = home.cliffs,
                 .scenario = std::move(scenario),
                 .seed = options.seed,
                 .tree = tree,
                 .goal = goal});
    const double reachable_m2 = std::max(1.0, robot.report().at("reachable_m2").get<double>());
    Progress progress(frames, [&robot, reachable_m2] {
        const robot::PointMm at = robot.body().truePose().at;
        return fmt::format("; {}, {:.1f} % swept, at {:.1f}, {:.1f} m",
                           robot::timeOfFrame(robot.frame()).substr(0, 7),
                           100 * std::min(1.0, robot.sweptM2() / reachable_m2), at.x / 1e3, at.y / 1e3);
    });
    if (options.out)
        records.emplace(*options.out).follow(robot);
    if (options.visits)
        robot.addObserver(counter);
    if (watch)
        robot.addObserver(*watch);
    if (!options.keyboard)
        robot.addSink(progress);
    if (shown)
        robot.addSink(*shown);

    const Interrupt interrupt;
    auto keyboard = options.keyboard ? std::make_unique<Keyboard>() : nullptr;
    const auto begun = std::chrono::steady_clock::now();
    while (robot.frame() < frames && !robot.over() && !interrupt.waits() &&
           !(keyboard && keyboard->isToEnd())) {
        if (keyboard)
            keyboard->frame(robot);
        robot.step();
        if (records)
            records->frame(robot);
        if (watch)
            watch->frame(robot.frame() - 1);
        if (!keyboard)
            progress.tell(robot.frame());
    }
    keyboard.reset();
    robot.finish();
    if (records)
        records->write(robot, title, options.field,
                       std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count());
    if (options.visits)
        robot::writeFile(*options.visits, robot::visitFileText(counter, title, robot.frame()));
    if (interrupt.waits())
        std::cerr << "vemra: stopped after " << robot.frame() << " of " << frames << " frames\n";
    std::cout.flush();
    return verdict(robot, scenario_file);
}

}  // namespace

void addRunCommand(CLI::App& program, int& exit_code)
{
    auto options = std::make_shared<RunOptions>();
    options->plugin = ownTreeLibrary();

    CLI::App* command = program.add_subcommand("run", "Play a scenario in a home and print its time line");
    command
        ->add_option(
            "--home", options->home,
            "Map of the home (YAML as map_server writes it); without it the scenario's, or a sample flat")
        ->type_name("FILE");
    command
        ->add_option("--scenario", options->scenario,
                     "What happens when; without it the robot cleans the whole home, or waits for keys")
        ->type_name("FILE");
    command->add_option("--dock", options->dock, "Where the dock stands, in metres and degrees")
        ->type_name("X,Y,DEG");
    command->add_option("--pose", options->pose, "Where the robot stands at first, off the dock")
        ->type_name("X,Y,DEG");
    command->add_option("--seed", options->seed, "Seed of the run's chance")
        ->check(wholeNumber(0))
        ->type_name("N")
        ->capture_default_str();
    command->add_option("--frames", options->frames, "Frames of 20 ms to run, instead of the scenario's")
        ->check(wholeNumber(1, kMostFrames))
        ->type_name("N");
    command
        ->add_option("--tree", options->tree,
                     "The tree that is ticked; without it the scenario's, or RobotNode")
        ->type_name("TREE");
    command
        ->add_option(
            "--goal", options->goal,
            "With --tree: search the way to this place first, in metres, so that a tree that drives along "
            "a plan has one")
        ->type_name("X,Y");
    auto* out =
        command->add_option("--out", options->out, "Folder for time line, events, track, report and pictures")
            ->type_name("DIR");
    command->add_flag("--field", options->field, "With --out: show in home.png where the dock is heard")
        ->needs(out);
    command->add_option("--visits", options->visits, "File for what was visited: see trees visits")
        ->type_name("FILE");
    auto* watch = command
                      ->add_option("--watch", options->watch,
                                   "Print what is ticked of this tree, or from this line of it on, whenever "
                                   "that changes, instead "
                                   "of the time line")
                      ->type_name("TREE[:LINE]");
    auto* json = command->add_flag("--json", options->json, "Print one JSON object a line, the report last")
                     ->excludes(watch);
    command
        ->add_flag("--keyboard", options->keyboard,
                   "Drive the robot by the keys of the terminal, and show what it knows around it")
        ->excludes(watch, json);
    command->add_option("--plugin", options->plugin, "Library of trees, instead of the program's own")
        ->type_name("FILE");
    command->callback([options, &exit_code] { exit_code = run(*options); });
}

}  // namespace vemra::app
