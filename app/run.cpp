#include "app/run.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <optional>

#include "app/interrupt.h"
#include "app/near_names.h"
#include "app/progress.h"
#include "app/run_records.h"
#include "app/trees/tree_library.h"
#include "app/user_error.h"
#include "app/whole_number.h"
#include "robot/base/input_error.h"
#include "robot/base/number_list.h"
#include "robot/events/json_lines.h"
#include "robot/events/timeline_printer.h"
#include "robot/host/robot.h"
#include "robot/host/sample_files.h"
#include "robot/world/map_file.h"

namespace vemra::app {
namespace {

using robot::Robot;

// A thousand years.
constexpr std::uint64_t kMostFrames = 1'500'000'000'000;

struct RunOptions
{
    std::filesystem::path home;
    std::filesystem::path scenario;
    std::filesystem::path plugin;
    std::string dock;
    std::string tree = "RobotNode";
    std::string goal;
    std::uint64_t seed = 1;
    std::optional<std::uint64_t> frames;
    std::optional<std::filesystem::path> out;
    bool json = false;
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

void loadTrees(BT::BehaviorTreeFactory& factory, const RunOptions& options)
{
    loadTreeLibrary(factory, options.plugin);
    if (!factory.hasTree(options.tree))
        throw UserError("there is no tree '" + options.tree + "'" +
                        didYouMean(options.tree, factory.treeNames()));
}

std::optional<robot::PointMm> goalOf(const RunOptions& options)
{
    if (options.goal.empty())
        return std::nullopt;
    const auto metres = robot::numbersOfText(options.goal, 2);
    if (!metres)
        throw robot::InputError("--goal", 0,
                                "\"" + options.goal + "\": expected X,Y in metres, as in 1.25,-0.4");
    return robot::PointMm{1e3 * metres->at(0), 1e3 * metres->at(1)};
}

void run(const RunOptions& options)
{
    robot::Scenario scenario = robot::readScenario(options.scenario);
    const robot::HomeFile home = robot::readHome(options.home);
    const robot::Dock dock = dockOf(options, home);
    const std::uint64_t frames = options.frames.value_or(scenario.frames);
    const std::string title = scenario.name;
    std::unique_ptr<robot::LogSink> shown;
    if (options.json)
        shown = std::make_unique<robot::JsonLines>(std::cout);
    else
        shown = std::make_unique<robot::TimelinePrinter>(
            std::cout, robot::isColourTerminal(1) ? robot::TimelinePrinter::Colour::On
                                                  : robot::TimelinePrinter::Colour::Off);
    Progress progress(frames);
    std::optional<RunRecords> records;
    Robot robot({.load_trees = [&](BT::BehaviorTreeFactory& factory) { loadTrees(factory, options); },
                 .home = home.home,
                 .dock = dock,
                 .cliffs = home.cliffs,
                 .scenario = std::move(scenario),
                 .seed = options.seed,
                 .tree = options.tree,
                 .goal = goalOf(options)});
    if (options.out)
        records.emplace(*options.out).follow(robot);
    robot.addSink(progress);
    robot.addSink(*shown);

    const Interrupt interrupt;
    while (robot.frame() < frames && !robot.over() && !interrupt.waits()) {
        robot.step();
        progress.tell(robot.frame());
    }
    robot.finish();
    if (records)
        records->write(robot, title);
    if (interrupt.waits())
        std::cerr << "vemra: stopped after " << robot.frame() << " of " << frames << " frames\n";
    std::cout.flush();
}

}  // namespace

void addRunCommand(CLI::App& program, int& /*exit_code*/)
{
    auto options = std::make_shared<RunOptions>();
    options->home = robot::sampleFile("homes/flat/flat.yaml");
    options->scenario = robot::sampleFile("scenarios/day_on_the_dock.yaml");
    options->plugin = ownTreeLibrary();

    CLI::App* command = program.add_subcommand("run", "Play a scenario in a home and print its time line");
    command
        ->add_option("--home", options->home,
                     "Map of the home (YAML as map_server writes it); without it a sample flat")
        ->type_name("FILE");
    command->add_option("--scenario", options->scenario, "What happens when; without it a day on the dock")
        ->type_name("FILE");
    command->add_option("--dock", options->dock, "Where the dock stands, in metres and degrees")
        ->type_name("X,Y,DEG");
    command->add_option("--seed", options->seed, "Seed of the run's chance")
        ->check(wholeNumber(0))
        ->type_name("N")
        ->capture_default_str();
    command->add_option("--frames", options->frames, "Frames of 20 ms to run, instead of the scenario's")
        ->check(wholeNumber(1, kMostFrames))
        ->type_name("N");
    command->add_option("--tree", options->tree, "The tree that is ticked")
        ->type_name("TREE")
        ->capture_default_str();
    command
        ->add_option(
            "--goal", options->goal,
            "With --tree: search the way to this place first, in metres, so that a tree that drives along "
            "a plan has one")
        ->type_name("X,Y");
    command->add_option("--out", options->out, "Folder for time line, events, report and pictures")
        ->type_name("DIR");
    command->add_flag("--json", options->json, "Print one JSON object a line, the report last");
    command->add_option("--plugin", options->plugin, "Library of trees, instead of the program's own")
        ->type_name("FILE");
    command->callback([options] { run(*options); });
}

}  // namespace vemra::app
