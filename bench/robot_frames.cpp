// Plays frames of a robot that rests in the sample flat, on its dock ("charging") or beside it ("standby"),
// to be counted by callgrind. Prints as JSON when the mode was entered and what the last frames took from the
// heap; with "visits" it goes on to watch some more, and prints how many nodes they visited.
//     robot_frames charging|standby [FRAMES [visits]]
#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <string_view>

#include "bench/heap_count.h"
#include "robot/host/robot.h"
#include "robot/world/map_file.h"

namespace {

using vemra::bench::heapCount;
using vemra::robot::Mode;
using vemra::robot::Robot;

constexpr int kLast = 200;

struct Visits final : BT::StatusObserver
{
    void onStatusChange(const BT::TreeNode&, BT::NodeStatus, BT::NodeStatus) override {}
    void onTick(const BT::TreeNode&, BT::NodeStatus) override { ++count; }
    long count = 0;
};

}  // namespace

int main(int argc, char** argv)
{
    const bool charging = argc > 1 && std::string_view(argv[1]) == "charging";
    const int frames = argc > 2 ? std::max(std::atoi(argv[2]), 0) : 2000;
    const auto flat = vemra::robot::readHome(VEMRA_SOURCE_DIR "/homes/flat/flat.yaml");
    vemra::robot::Scenario scenario;
    scenario.start.on_dock = charging;
    Robot robot(
        {.load_trees = [](BT::BehaviorTreeFactory& factory) { factory.registerFromPlugin(VEMRA_TREES); },
         .home = flat.home,
         .dock = vemra::robot::chooseDock(flat, {}).dock,
         .scenario = scenario});

    const Mode mode = charging ? Mode::Charging : Mode::Standby;
    int entered = -1;
    long allocations = 0;
    long last_in_mode = 0;
    for (int i = 0; i < frames; ++i) {
        const long before = heapCount().allocations;
        robot.step();
        const bool in_mode = robot.state().modes.current() == mode;
        if (in_mode && entered < 0)
            entered = i;
        if (i >= frames - kLast) {
            allocations += heapCount().allocations - before;
            last_in_mode += in_mode ? 1 : 0;
        }
    }
    std::cout << "{\"entered\": " << entered << ", \"rested\": " << last_in_mode
              << ", \"allocations\": " << static_cast<double>(allocations) / kLast;
    if (argc > 3 && std::string_view(argv[3]) == "visits") {
        Visits visits;
        robot.addObserver(visits);
        for (int i = 0; i < kLast; ++i)
            robot.step();
        std::cout << ", \"visited\": " << visits.count / kLast;
    }
    std::cout << "}\n";
    return 0;
}
