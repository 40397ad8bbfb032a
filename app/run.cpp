#include "app/run.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>

#include "app/interrupt.h"
#include "app/near_names.h"
#include "app/progress.h"
#include "app/trees/tree_library.h"
#include "app/user_error.h"
#include "app/whole_number.h"
#include "robot/base/input_error.h"
#include "robot/base/output_file.h"
#include "robot/drawing/home_picture.h"
#include "robot/drawing/run_picture.h"
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

/// What goes into the folder of --out, kept until the run is over.
struct Records
{
    std::ostringstream timeline;
    std::ostringstream json;
    robot::TimelinePrinter printer{timeline, robot::TimelinePrinter::Colour::Off};
    robot::JsonLines lines{json};

    void follow(Robot& robot)
    {
        robot.addSink(printer);
        robot.addSink(lines);
    }
};

std::vector<std::vector<robot::PointMm>> trackOf(const robot::Body& body)
{
    std::vector<std::vector<robot::PointMm>> stretches;
    for (const robot::Body::TrackPoint& point : body.track()) {
        if (stretches.empty() || point.carried_here)
            stretches.emplace_back();
        stretches.back().push_back(point.pose.at);
    }
    return stretches;
}

void writeFolder(const std::filesystem::path& folder, const Robot& robot, const Records& records,
                 const std::string& title)
{
    robot::writeFile(folder / "timeline.txt", records.timeline.view());
    robot::writeFile(folder / "events.jsonl", records.json.view());
    robot::writeFile(folder / "report.json", robot.report().dump(2) + "\n");
    robot::writePng(folder / "timeline.png", robot::runPicture(robot.log().entries(), robot.frame(), title),
                    2);
    robot::writePng(folder / "home.png",
                    robot::homePicture(robot.home(), {.title = title,
                                                      .dock = robot.dock(),
                                                      .robot = robot.body().truePose(),
                                                      .track = trackOf(robot.body())}),
                    2);
}

void makeFolder(const std::filesystem::path& folder)
{
    std::error_code fault;
    std::filesystem::create_directories(folder, fault);
    if (fault || ::access(folder.c_str(), W_OK) != 0)
        throw robot::InputError(folder.string(), 0, "expected a folder that can be written to");
}

void run(const RunOptions& options)
{
    robot::Scenario scenario = robot::readScenario(options.scenario);
    const robot::HomeFile home = robot::readHome(options.home);
    const robot::Dock dock = dockOf(options, home);
    const std::uint64_t frames = options.frames.value_or(scenario.frames);
    const std::string title = scenario.name;
    Robot robot({.load_trees = [&](BT::BehaviorTreeFactory& factory) { loadTrees(factory, options); },
                 .home = home.home,
                 .dock = dock,
                 .cliffs = home.cliffs,
                 .scenario = std::move(scenario),
                 .seed = options.seed,
                 .tree = options.tree});
    if (options.out)
        makeFolder(*options.out);

    std::unique_ptr<robot::LogSink> shown;
    if (options.json)
        shown = std::make_unique<robot::JsonLines>(std::cout);
    else
        shown = std::make_unique<robot::TimelinePrinter>(
            std::cout, robot::isColourTerminal(1) ? robot::TimelinePrinter::Colour::On
                                                  : robot::TimelinePrinter::Colour::Off);
    Progress progress(frames);
    robot.addSink(progress);
    robot.addSink(*shown);
    Records records;
    if (options.out)
        records.follow(robot);
    const Interrupt interrupt;
    while (robot.frame() < frames && !robot.over() && !interrupt.waits()) {
        robot.step();
        progress.tell(robot.frame());
    }
    robot.finish();
    if (options.out)
        writeFolder(*options.out, robot, records, title);
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
    command->add_option("--out", options->out, "Folder for time line, events, report and pictures")
        ->type_name("DIR");
    command->add_flag("--json", options->json, "Print one JSON object a line, the report last");
    command->add_option("--plugin", options->plugin, "Library of trees, instead of the program's own")
        ->type_name("FILE");
    command->callback([options] { run(*options); });
}

}  // namespace vemra::app
