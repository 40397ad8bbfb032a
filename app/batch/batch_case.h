#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "robot/host/robot.h"
#include "robot/scenario/scenario.h"
#include "robot/world/dock.h"
#include "robot/world/home.h"

namespace vemra::app {

/// One run of a batch.
struct BatchCase
{
    std::uint64_t seed = 1;
    robot::Home home;
    robot::Dock dock;
    std::vector<robot::BoxMm> cliffs;
    robot::Scenario scenario;
    std::string tree;
    std::string replay;   ///< the command that plays it again
    bool cleans = false;  ///< it is over when the clean is, not at the first contact with the dock
    nlohmann::ordered_json about;
};

/// The robot of a run, before its first frame. Several may be made at a time.
std::unique_ptr<robot::Robot> makeRobot(const BatchCase& one, const std::filesystem::path& plugin);

/// What came of it, one JSON line of a batch.
///
/// `ended`: "docked", for a search by a contact that holds for a second; "gave up", when the robot stands by
/// without its dock; "tree failed"; "time", when the run was not over at its limit; "off". `why` says of a
/// search that failed what it was spent on. `good` says that it came out as it was meant to. A clean has its
/// figures of floor; `trap_reports` tells how often the robot told that it is shut in; `stall_s` is the
/// longest time in which no floor was newly swept while it cleaned, and `stall_leaf` what ran then.
nlohmann::ordered_json runCase(const BatchCase& one, const std::filesystem::path& plugin);

}  // namespace vemra::app
