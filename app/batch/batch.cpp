#include "app/batch/batch.h"

#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
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
#include "app/batch/batch_picture.h"
#include "app/batch/batch_summary.h"
#include "app/interrupt.h"
#include "app/trees/tree_library.h"
#include "app/user_error.h"
#include "app/whole_number.h"
#include "robot/base/chance.h"
#include "robot/base/input_error.h"
#include "robot/base/output_file.h"
#include "robot/host/sample_files.h"
#include "robot/world/map_file.h"
#include "robot/world/random_home.h"

namespace vemra::app {
namespace {

constexpr double kLeastAwayMm = 600;
constexpr double kAsideDeg = 55;

struct BatchOptions
{
    std::uint64_t homes = 0;
    std::uint64_t poses = 0;
    std::filesystem::path scenario;
    std::optional<std::filesystem::path> home;
    std::string tree;
    double within_m = 2.5;
    std::uint64_t seed = 1;
    unsigned jobs = 2;
    std::optional<std::filesystem::path> out;
    std::optional<std::filesystem::path> picture;
    std::optional<std::filesystem::path> keep;
    std::filesystem::path plugin;
};

using Cases = std::function<BatchCase(std::uint64_t seed)>;

robot::Scenario wholeHome(const std::vector<robot::BoxMm>& low)
{
    robot::Scenario scenario;
    scenario.name = "whole home";
    scenario.start.battery = 100;
    int number = 0;
    for (const robot::BoxMm& box : low)
        scenario.events.push_back(
            {0, robot::PutDown{fmt::format("low {}", ++number), {box.low, box.high}, true}, 0, "put down"});
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

Cases homeCases(const BatchOptions& options)
{
    if (options.keep)
        std::filesystem::create_directories(*options.keep);
    return [options](std::uint64_t seed) {
        const robot::RandomHome made = robot::randomHome(seed);
        std::string replay = fmt::format("vemra batch --homes 1 --seed {} --keep DIR", seed);
        if (options.keep) {
            const auto file = [&](const char* end) { return *options.keep / (made.plan.name + end); };
            robot::writeFile(file(".pgm"), robot::pgmBytes(robot::drawPlan(made.plan)));
            robot::writeFile(file(".yaml"), robot::mapYaml(made.plan));
            robot::writeFile(file(".scenario.yaml"), scenarioText(made));
            replay = fmt::format("vemra run --scenario {} --seed {}", file(".scenario.yaml").string(), seed);
        }
        if (!made.plan.dock)
            throw UserError(fmt::format("the home of seed {} has no wall for a dock", seed));
        return BatchCase{.seed = seed,
                         .home = robot::homeOfPlan(made.plan),
                         .dock = *made.plan.dock,
                         .cliffs = {},
                         .scenario = wholeHome(made.low),
                         .tree = "RobotNode",
                         .replay = std::move(replay),
                         .cleans = true,
                         .about = {{"rooms", made.rooms},
                                   {"furnished", std::round(100 * made.furnished) / 100},
                                   {"low_things", made.low.size()}}};
    };
}

// A place in sight of the dock's face on which the robot fits.
robot::PoseMm poseBefore(const robot::Home& home, const robot::Dock& dock, double within_mm,
                         robot::Chance& chance)
{
    constexpr int kTries = 10000;
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

Cases poseCases(const BatchOptions& options)
{
    const robot::Scenario scenario = robot::readScenario(options.scenario);
    const std::filesystem::path file = std::filesystem::weakly_canonical(options.home.value_or(
        scenario.home.empty() ? robot::sampleFile("homes/room/room.yaml") : scenario.home));
    const robot::HomeFile home = robot::readHome(file);
    const robot::Dock dock = robot::chooseDock(home, std::nullopt).dock;
    const std::string tree = !options.tree.empty()   ? options.tree
                             : scenario.tree.empty() ? "SearchForCharger_lds"
                                                     : scenario.tree;
    TreeLibrary(options.plugin).expect(tree);
    return [=](std::uint64_t seed) {
        robot::Chance chance(seed);
        const robot::PoseMm pose = poseBefore(home.home, dock, 1e3 * options.within_m, chance);
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
                options.scenario.string(), file.string(), tree, pose.at.x / 1e3, pose.at.y / 1e3,
                pose.yaw.value, seed),
            .cleans = false,
            .about = {{"pose", {pose.at.x / 1e3, pose.at.y / 1e3, pose.yaw.value}},
                      {"away_mm", std::round(robot::distance(pose.at, dock.face.at))}}};
    };
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
            nlohmann::ordered_json line = runCase(cases_(options_.seed + number), options_.plugin);
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
    if ((options.homes > 0) == (options.poses > 0))
        throw UserError("expected --homes N or --poses N");
    const bool cleans = options.homes > 0;
    if (cleans && options.picture)
        throw UserError("--picture goes with --poses");
    const Cases cases = cleans ? homeCases(options) : poseCases(options);
    const auto lines = Batch(options, cases, cleans ? options.homes : options.poses).play();
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

}  // namespace

void addBatchCommand(CLI::App& program, int& exit_code)
{
    auto options = std::make_shared<BatchOptions>();
    options->scenario = robot::sampleFile("scenarios/search_for_the_dock.yaml");
    options->plugin = ownTreeLibrary();
    CLI::App* command =
        program.add_subcommand("batch", "Play many runs from seeds and tell how they came out");
    command->add_option("--homes", options->homes, "Clean so many furnished homes that are made from seeds")
        ->check(wholeNumber(1, 1'000'000))
        ->type_name("N");
    command->add_option("--poses", options->poses, "Search for the dock from so many places before it")
        ->check(wholeNumber(1, 1'000'000))
        ->type_name("N");
    command
        ->add_option("--scenario", options->scenario,
                     "With --poses: home, tree, dock and length of the searches")
        ->type_name("FILE");
    command->add_option("--home", options->home, "With --poses: another home")->type_name("FILE");
    command->add_option("--tree", options->tree, "With --poses: another tree")->type_name("TREE");
    command->add_option("--within", options->within_m, "With --poses: metres from the dock's face, at most")
        ->check(CLI::Range(0.7, 10.0))
        ->capture_default_str();
    command->add_option("--seed", options->seed, "Seed of the first run; the next has the next")
        ->check(wholeNumber(0))
        ->type_name("N")
        ->capture_default_str();
    command->add_option("--jobs", options->jobs, "Runs at a time")
        ->check(CLI::Range(1, 256))
        ->capture_default_str();
    command->add_option("--out", options->out, "File for one JSON object a run, by seed")->type_name("FILE");
    command
        ->add_option("--picture", options->picture,
                     "With --poses: picture (PNG) of where the dock is heard and which runs docked")
        ->type_name("FILE");
    command->add_option("--keep", options->keep, "With --homes: folder for the homes, to play them again")
        ->type_name("DIR");
    command->add_option("--plugin", options->plugin, "Library of trees, instead of the program's own")
        ->type_name("FILE");
    command->callback([options, &exit_code] { exit_code = batch(*options); });
}

}  // namespace vemra::app
