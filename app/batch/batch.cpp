#include "app/batch/batch.h"

#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <atomic>
#include <cmath>
#include <filesystem>
#include <functional>
#include <iostream>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "app/batch/batch_case.h"
#include "app/batch/batch_compare.h"
#include "app/batch/batch_figures.h"
#include "app/batch/batch_file.h"
#include "app/batch/batch_picture.h"
#include "app/batch/batch_summary.h"
#include "app/batch/home_case.h"
#include "app/batch/lost_case.h"
#include "app/batch/shrink.h"
#include "app/interrupt.h"
#include "app/trees/tree_library.h"
#include "app/user_error.h"
#include "app/whole_number.h"
#include "robot/base/chance.h"
#include "robot/base/input_error.h"
#include "robot/base/output_file.h"
#include "robot/drawing/distribution_picture.h"
#include "robot/host/sample_files.h"
#include "robot/world/map_file.h"
#include "robot/world/random_home.h"
#include "robot/world/reach.h"

namespace vemra::app {
namespace {

constexpr double kLeastAwayMm = 600;
constexpr double kAsideDeg = 55;
constexpr double kOffWallsMm = 300;
constexpr int kTries = 10000;

struct BatchOptions
{
    std::uint64_t homes = 0;
    std::uint64_t poses = 0;
    std::uint64_t lost = 0;
    std::filesystem::path scenario;
    std::optional<std::filesystem::path> home;
    std::string tree;
    double within_m = 2.5;
    bool anywhere = false;
    std::uint64_t seed = 1;
    unsigned jobs = 2;
    std::optional<std::filesystem::path> out;
    std::optional<std::filesystem::path> picture;
    std::optional<std::filesystem::path> keep;
    std::optional<std::uint64_t> shrink;
    std::filesystem::path plugin;
};

using Cases = std::function<BatchCase(std::uint64_t seed)>;

Cases homeCases(const BatchOptions& options)
{
    return [options](std::uint64_t seed) {
        const robot::RandomHome made = robot::randomHome(seed);
        BatchCase one = caseOfHome(made, seed);
        if (options.keep)
            one.replay = keepHome(made, seed, *options.keep);
        return one;
    };
}

// A place in sight of the dock's face on which the robot fits.
robot::PoseMm poseBefore(const robot::Home& home, const robot::Dock& dock, double within_mm,
                         robot::Chance& chance)
{
    for (int i = 0; i < kTries; ++i) {
        const double away = kLeastAwayMm + chance.uniform() * (within_mm - kLeastAwayMm);
        const robot::Degrees bearing{dock.face.yaw.value + (2 * chance.uniform() - 1) * kAsideDeg};
        const robot::PointMm at = dock.face.at + away * robot::direction(bearing);
        const bool seen =
            !home.castRay(at, {bearing.value + 180}, away - 2 * robot::Home::kCellMm).has_value();
        if (seen && home.isDiscFree(at, robot::kRobotRadiusMm + 10))
            return {{std::round(at.x), std::round(at.y)}, {std::round(chance.uniform() * 360 - 180)}};
    }
    throw UserError("there is no free place before the dock within --within");
}

// A place from which the robot can drive to the dock.
robot::PoseMm poseAnywhere(const robot::Home& home, const robot::Reach& reach, const robot::Dock& dock,
                           robot::Chance& chance)
{
    const robot::PointMm low = home.origin();
    const robot::PointMm size = home.farCorner() - low;
    const robot::PointMm out =
        dock.face.at + (robot::kRobotRadiusMm + kOffWallsMm) * robot::direction(dock.face.yaw);
    const int floor = reach.regionOf(home.cellOf(out));
    for (int i = 0; i < kTries; ++i) {
        const robot::PointMm at{std::round(low.x + chance.uniform() * size.x),
                                std::round(low.y + chance.uniform() * size.y)};
        if (home.isDiscFree(at, kOffWallsMm) && reach.regionOf(home.cellOf(at)) == floor)
            return {at, {std::round(chance.uniform() * 360 - 180)}};
    }
    throw UserError("there is no free place 300 mm off the walls from which the dock can be reached");
}

// The shipped one whose robot and dock the tree is made for.
std::filesystem::path scenarioFor(std::string_view tree)
{
    return robot::sampleFile(tree.ends_with("_CleanDock") ? "scenarios/back_onto_the_dock.yaml"
                                                          : "scenarios/search_for_the_dock.yaml");
}

Cases poseCases(const BatchOptions& options)
{
    const std::filesystem::path played =
        options.scenario.empty() ? scenarioFor(options.tree) : options.scenario;
    const robot::Scenario scenario = robot::readScenario(played);
    const std::filesystem::path file = std::filesystem::weakly_canonical(options.home.value_or(
        scenario.home.empty() ? robot::sampleFile("homes/room/room.yaml") : scenario.home));
    const robot::HomeFile home = robot::readHome(file);
    const robot::Dock dock = robot::chooseDock(home, std::nullopt).dock;
    const std::string tree = !options.tree.empty()   ? options.tree
                             : scenario.tree.empty() ? "SearchForCharger_lds"
                                                     : scenario.tree;
    TreeLibrary(options.plugin).expect(tree);
    const robot::Reach reach(home.home, robot::kRobotRadiusMm);
    return [=](std::uint64_t seed) {
        robot::Chance chance(seed);
        const robot::PoseMm pose = options.anywhere
                                       ? poseAnywhere(home.home, reach, dock, chance)
                                       : poseBefore(home.home, dock, 1e3 * options.within_m, chance);
        robot::Scenario own = scenario;
        own.start.on_dock = false;
        own.start.pose = pose;
        own.expectations.clear();
        return BatchCase{
            .seed = seed,
            .home = home.home,
            .dock = dock,
            .cliffs = home.cliffs,
            .scenario = std::move(own),
            .tree = tree,
            .replay = fmt::format(
                "vemra run --scenario {} --home {} --tree {} --pose {:.3f},{:.3f},{:.0f} --seed {}",
                played.string(), file.string(), tree, pose.at.x / 1e3, pose.at.y / 1e3, pose.yaw.value, seed),
            .cleans = false,
            .about = {{"pose", {pose.at.x / 1e3, pose.at.y / 1e3, pose.yaw.value}},
                      {"away_mm", std::round(robot::distance(pose.at, dock.face.at))}}};
    };
}

Cases lostCases(const BatchOptions& options)
{
    const std::filesystem::path file =
        std::filesystem::weakly_canonical(options.home.value_or(robot::sampleFile("homes/flat/flat.yaml")));
    return [home = robot::readHome(file), file](std::uint64_t seed) { return caseOfLost(home, file, seed); };
}

class Batch
{
public:
    Batch(const BatchOptions& options, Cases cases, std::uint64_t count)
        : options_(options), cases_(std::move(cases)), lines_(count)
    {}

    // A line for each run, in the order of the seeds.
    std::vector<nlohmann::ordered_json> play()
    {
        const Interrupt interrupt;
        std::vector<std::thread> workers;
        for (unsigned i = 0; i < options_.jobs; ++i)
            workers.emplace_back([this, &interrupt] {
                for (std::uint64_t next = begun_++; next < lines_.size() && !interrupt.waits() && !failed();
                     next = begun_++)
                    one(next);
            });
        for (std::thread& worker : workers)
            worker.join();
        if (fault_)
            std::rethrow_exception(fault_);
        std::erase_if(lines_, [](const auto& line) { return line.is_null(); });
        if (interrupt.waits())
            std::cerr << "vemra: stopped after " << lines_.size() << " runs\n";
        return std::move(lines_);
    }

private:
    void one(std::uint64_t number)
    {
        try {
            const BatchCase wanted = cases_(options_.seed + number);
            nlohmann::ordered_json line =
                options_.lost > 0 ? runLost(wanted, options_.plugin) : runCase(wanted, options_.plugin);
            const std::lock_guard<std::mutex> lock(mutex_);
            good_ += line.at("good").get<bool>() ? 1 : 0;
            lines_[number] = std::move(line);
            ++done_;
            if (::isatty(STDERR_FILENO) == 1)
                std::cerr << fmt::format("\r{} of {} runs, {} came out well", done_, lines_.size(), good_)
                          << (done_ == lines_.size() ? "\r\033[K" : "") << std::flush;
        } catch (...) {
            const std::lock_guard<std::mutex> lock(mutex_);
            fault_ = std::current_exception();
        }
    }

    bool failed()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        return fault_ != nullptr;
    }

    const BatchOptions& options_;
    Cases cases_;
    std::vector<nlohmann::ordered_json> lines_;
    std::atomic<std::uint64_t> begun_{0};
    std::mutex mutex_;
    std::uint64_t done_ = 0;
    std::uint64_t good_ = 0;
    std::exception_ptr fault_;
};

int batch(const BatchOptions& options)
{
    if (options.shrink)
        return shrink(*options.shrink, options.keep, options.plugin);
    const std::uint64_t runs = options.homes + options.poses + options.lost;
    if (runs == 0 || runs != std::max({options.homes, options.poses, options.lost}))
        throw UserError("expected --homes N, --poses N, --lost N or --shrink SEED");
    if (options.homes > 0 && options.picture)
        throw UserError("--picture goes with --poses or --lost");
    const Cases cases = options.homes > 0  ? homeCases(options)
                        : options.lost > 0 ? lostCases(options)
                                           : poseCases(options);
    const auto lines = Batch(options, cases, runs).play();
    if (options.out) {
        std::string text;
        for (const auto& line : lines)
            text += line.dump() + "\n";
        robot::writeFile(*options.out, text);
    }
    if (options.picture)
        writeBatchPicture(*options.picture, cases(options.seed), lines);
    printSummary(std::cout, lines);
    return kDone;
}

// What is told of a batch as a picture: how its figures are distributed.
void plot(const std::filesystem::path& file, const std::filesystem::path& out)
{
    const auto lines = readBatchFile(file);
    std::vector<robot::Distribution> panels;
    for (const BatchFigure& figure : kBatchFigures) {
        robot::Distribution panel;
        panel.title = *figure.unit == '\0' ? figure.title : fmt::format("{}, {}", figure.title, figure.unit);
        for (const auto& line : lines) {
            if (const auto value = figureOf(line, figure))
                panel.values.push_back(*value);
            else
                ++panel.failed;
        }
        if (!panel.values.empty())
            panels.push_back(std::move(panel));
    }
    const auto good = std::count_if(lines.begin(), lines.end(),
                                    [](const auto& line) { return line.at("good").template get<bool>(); });
    const std::string title = fmt::format("{} runs, {} came out well", lines.size(), good);
    constexpr double kPixelsAPoint = 1.5;
    const robot::Picture picture = robot::distributionPicture(title, std::move(panels));
    robot::writeFile(
        out, out.extension() == ".svg" ? robot::svgBytes(picture) : robot::pngBytes(picture, kPixelsAPoint));
}

void addCompareCommand(CLI::App& batch, int& exit_code)
{
    struct Files
    {
        std::filesystem::path before;
        std::filesystem::path after;
    };
    auto files = std::make_shared<Files>();
    CLI::App* command =
        batch.add_subcommand("compare", "Tell seed by seed what has changed between two batches");
    command->add_option("BEFORE", files->before, "File that batch --out wrote")->required();
    command->add_option("AFTER", files->after, "Another over the same seeds")->required();
    command->callback([files, &exit_code] {
        printComparison(std::cout, readBatchFile(files->before), readBatchFile(files->after));
        exit_code = kDone;
    });
}

void addPlotCommand(CLI::App& batch, int& exit_code)
{
    struct Files
    {
        std::filesystem::path batch;
        std::filesystem::path out;
    };
    auto files = std::make_shared<Files>();
    CLI::App* command = batch.add_subcommand("plot", "Draw how the figures of a batch are distributed");
    command->add_option("BATCH", files->batch, "File that batch --out wrote")->required();
    command->add_option("--out", files->out, "The picture: .png or .svg")->required()->type_name("FILE");
    command->callback([files, &exit_code] {
        plot(files->batch, files->out);
        exit_code = kDone;
    });
}

}  // namespace

void addBatchCommand(CLI::App& program, int& exit_code)
{
    auto options = std::make_shared<BatchOptions>();
    options->plugin = ownTreeLibrary();
    CLI::App* command =
        program.add_subcommand("batch", "Play many runs from seeds and tell how they came out");
    command->add_option("--homes", options->homes, "Clean so many furnished homes that are made from seeds")
        ->check(wholeNumber(1, 1'000'000))
        ->type_name("N");
    command
        ->add_option("--poses", options->poses,
                     "Search for the dock from so many places, before it unless told otherwise")
        ->check(wholeNumber(1, 1'000'000))
        ->type_name("N");
    command
        ->add_option("--lost", options->lost,
                     "Let so many robots that know the home, and not where they stand, find their place")
        ->check(wholeNumber(1, 1'000'000))
        ->type_name("N");
    command
        ->add_option(
            "--scenario", options->scenario,
            "With --poses: home, tree, dock and length of the searches; without it the shipped one that "
            "is made for the tree")
        ->type_name("FILE");
    command->add_option("--home", options->home, "With --poses or --lost: another home")->type_name("FILE");
    command->add_option("--tree", options->tree, "With --poses: another tree")->type_name("TREE");
    CLI::Option* within =
        command
            ->add_option("--within", options->within_m, "With --poses: metres from the dock's face, at most")
            ->check(CLI::Range(0.7, 10.0))
            ->capture_default_str();
    command
        ->add_flag("--anywhere", options->anywhere,
                   "With --poses: anywhere in the home, 300 mm off its walls, not in sight of the dock alone")
        ->excludes(within);
    command->add_option("--seed", options->seed, "Seed of the first run; the next has the next")
        ->check(wholeNumber(0))
        ->type_name("N")
        ->capture_default_str();
    command->add_option("--jobs", options->jobs, "Runs at a time")
        ->check(CLI::Range(1, 256))
        ->capture_default_str();
    command->add_option("--out", options->out, "File for one JSON object a run, by seed")->type_name("FILE");
    command
        ->add_option("--keep", options->keep,
                     "With --homes or --shrink: folder for the homes, to play them again")
        ->type_name("DIR");
    command
        ->add_option(
            "--picture", options->picture,
            "With --poses or --lost: picture (PNG) of where the runs began, and which came out well; "
            "with --poses of where the dock is heard, too")
        ->type_name("FILE");
    command
        ->add_option("--shrink", options->shrink,
                     "Take furniture out of the home of a seed that does not come out well, as long as it "
                     "still does not")
        ->check(wholeNumber(0))
        ->type_name("SEED");
    command->add_option("--plugin", options->plugin, "Library of trees, instead of the program's own")
        ->type_name("FILE");
    addCompareCommand(*command, exit_code);
    addPlotCommand(*command, exit_code);
    command->callback([options, command, &exit_code] {
        if (command->get_subcommands().empty())
            exit_code = batch(*options);
    });
}

}  // namespace vemra::app
