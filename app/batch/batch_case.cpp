#include "app/batch/batch_case.h"

#include <algorithm>
#include <cmath>
#include <mutex>

#include "app/trees/tree_library.h"
#include "robot/base/clock.h"
#include "robot/host/robot.h"

namespace vemra::app {
namespace {

using robot::Robot;

constexpr double kFramesPerSecond = 1000.0 / robot::kFrameMs;
constexpr double kSweptStepM2 = 0.05;
/// The floor is looked at so often.
constexpr std::uint64_t kLookEvery = 25;
/// Till then it comes up on its dock.
constexpr std::uint64_t kUpFrames = 50;
constexpr std::uint64_t kGivenUpFrames = 500;
constexpr double kTimesIdeal = 4;
constexpr double kBesidesS = 300;
/// A contact in passing is none.
constexpr std::uint64_t kHoldsFrames = 50;
// The limits of a search.
constexpr int kTurns = 5;
constexpr int kWalks = 5;

// They run beside what moves the robot.
constexpr std::string_view kCompanions[] = {"Delay", "ForceRunning", "StackBlackboard",
                                            "TemporarilyDisableSensor", "TemporarilyEnableSensor"};

/// The leaf that began to run last.
class LeafWatch final : public BT::StatusObserver
{
public:
    void onStatusChange(const BT::TreeNode& node, BT::NodeStatus /*before*/, BT::NodeStatus now) override
    {
        if (now == BT::NodeStatus::RUNNING && node.type() == BT::NodeType::ACTION &&
            !std::binary_search(std::begin(kCompanions), std::end(kCompanions), node.registrationName()))
            leaf_ = node.registrationName();
    }
    [[nodiscard]] const std::string& leaf() const { return leaf_; }

private:
    std::string leaf_;
};

/// The longest time without newly swept floor while the robot cleans.
class StallWatch
{
public:
    void look(const Robot& robot, const LeafWatch& leaves)
    {
        const double swept = robot.passSweptM2();
        const bool cleans = robot.state().modes.current() == robot::Mode::AutoClean;
        if (!cleans || swept < swept_ || swept >= swept_ + kSweptStepM2) {
            swept_ = swept;
            since_ = robot.frame();
            return;
        }
        if (robot.frame() - since_ > longest_) {
            longest_ = robot.frame() - since_;
            leaf_ = leaves.leaf();
        }
    }
    [[nodiscard]] double seconds() const { return static_cast<double>(longest_) / kFramesPerSecond; }
    [[nodiscard]] const std::string& leaf() const { return leaf_; }

private:
    double swept_ = 0;
    std::uint64_t since_ = 0;
    std::uint64_t longest_ = 0;
    std::string leaf_;
};

// The library of trees catches what is printed while it loads, and that is the process's one output.
std::mutex& loading()
{
    static std::mutex mutex;
    return mutex;
}

// What the search has told by its keys when it ends in vain.
std::string whyInVain(robot::Robot& robot, const std::string& ended, bool heard)
{
    const auto text = [&robot](const char* key) {
        std::string value;
        robot.blackboard().get(key, value);
        return value;
    };
    const auto spent = [&robot](const char* key, int limit) {
        int value = 0;
        return robot.blackboard().get(key, value) && value >= limit;
    };
    const std::string marked = text("marker_signal_type");
    if (!heard)
        return "the dock was never heard";
    if (ended == "time")
        return "out of time";
    if (spent("random_walk_times", kWalks))
        return "walks spent";
    if (marked == "None")
        return "a marking turn heard nothing";
    if (marked == "Mixed")
        return "a marking turn heard both sides alike";
    if (spent("full_round_turn_times", kTurns))
        return "turns spent";
    return ended;
}

double tenths(double value)
{
    return std::round(value * 10) / 10;
}

}  // namespace

std::unique_ptr<Robot> makeRobot(const BatchCase& one, const std::filesystem::path& plugin)
{
    const std::lock_guard<std::mutex> lock(loading());
    return std::make_unique<Robot>(robot::RobotSetup{
        .load_trees = [&](BT::BehaviorTreeFactory& factory) { loadTreeLibrary(factory, plugin); },
        .home = one.home,
        .dock = one.dock,
        .cliffs = one.cliffs,
        .scenario = one.scenario,
        .seed = one.seed,
        .tree = one.tree});
}

nlohmann::ordered_json runCase(const BatchCase& one, const std::filesystem::path& plugin)
{
    robot::LogKeeper traps(
        [](const robot::Event& event) { return std::holds_alternative<robot::event::TrapReport>(event); });
    const std::unique_ptr<Robot> made = makeRobot(one, plugin);
    Robot& robot = *made;
    robot.addSink(traps);
    const double ideal_s = one.cleans ? robot.report().at("ideal_time_s").get<double>() : 0;
    const auto limit = [&] {
        return one.cleans ? static_cast<std::uint64_t>(
                                (kTimesIdeal * ideal_s * static_cast<double>(robot.passes()) + kBesidesS) *
                                kFramesPerSecond)
                          : one.scenario.frames;
    };
    LeafWatch leaves;
    StallWatch stall;
    if (one.cleans)
        robot.addObserver(leaves);
    std::string ended = "time";
    bool left_dock = !one.cleans;
    std::uint64_t stands_by_frames = 0;
    std::optional<std::uint64_t> heard;
    std::uint64_t touches_frames = 0;
    while (robot.frame() < limit()) {
        if (robot.over()) {
            ended = "off";
            break;
        }
        robot.step();
        const auto& state = robot.state();
        if (!heard && std::any_of(robot.body().dockHearing().begin(), robot.body().dockHearing().end(),
                                  [](const robot::Heard& one_heard) { return one_heard.strength > 0; }))
            heard = robot.frame();
        left_dock = left_dock || (robot.frame() > kUpFrames && !state.contacts.touching());
        const robot::Mode mode = state.modes.current();
        touches_frames = left_dock && state.contacts.touching() ? touches_frames + 1 : 0;
        // What follows a clean on the dock belongs to it: the robot may yet go on.
        if (one.cleans ? touches_frames > 0 && mode == robot::Mode::Charging
                       : touches_frames >= kHoldsFrames) {
            ended = "docked";
            break;
        }
        stands_by_frames = left_dock && mode == robot::Mode::Standby ? stands_by_frames + 1 : 0;
        if (one.cleans && stands_by_frames > kGivenUpFrames) {
            ended = "gave up";
            break;
        }
        if (!one.cleans && robot.rootFailures() > 0) {
            ended = "tree failed";
            break;
        }
        if (one.cleans && robot.frame() % kLookEvery == 0)
            stall.look(robot, leaves);
    }
    // A search is over when the contacts first touched.
    const std::uint64_t frames = robot.frame() - (one.cleans || ended != "docked" ? 0 : kHoldsFrames - 1);
    const nlohmann::ordered_json report = robot.report();
    nlohmann::ordered_json line{{"seed", one.seed},
                                {"good", ended == "docked"},
                                {"ended", ended},
                                {"frames", frames},
                                {"time_s", tenths(static_cast<double>(frames) / kFramesPerSecond)}};
    line.update(one.about);
    if (!one.cleans) {
        line["attempts"] = report.at("docking_attempts");
        if (ended != "docked")
            line["why"] = whyInVain(robot, ended, heard.has_value());
    }
    if (heard && !one.cleans)
        line["after_hearing_s"] = tenths(static_cast<double>(frames - *heard) / kFramesPerSecond);
    if (one.cleans) {
        line["coverage"] = report.at("coverage");
        line["reachable_m2"] = report.at("reachable_m2");
        line["recleaned_m2"] = report.at("recleaned_m2");
        for (const char* figure : {"ideal_time_s", "t90_s", "t97_s", "turns", "bumps", "escapes", "stalls"})
            line[figure] = report.at(figure);
        line["stall_s"] = tenths(stall.seconds());
        line["stall_leaf"] = stall.leaf();
        line["passes"] = report.at("passes");
        line["trap_reports"] = traps.entries().size();
    }
    line["run_m"] = tenths(report.at("run_mm").get<double>() / 1e3);
    line["replay"] = one.replay;
    return line;
}

}  // namespace vemra::app
