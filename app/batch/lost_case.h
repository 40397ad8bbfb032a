#pragma once

#include <filesystem>

#include "app/batch/batch_case.h"
#include "robot/world/map_file.h"

namespace vemra::app {

/// A robot that knows the home and not where in it it stands: anywhere on the floor that hangs together with
/// the dock's, with any heading.
BatchCase caseOfLost(const robot::HomeFile& home, const std::filesystem::path& file, std::uint64_t seed);

/// What came of its search, one JSON line of a batch. `ended`: "found"; "wrong place", when it takes itself
/// to be more than 150 mm or 5 degrees from where it is; "gave up"; "time". `off_mm` and `off_deg` say how
/// far off it is where it is sure, `places` how many places it looked from beside the first.
nlohmann::ordered_json runLost(const BatchCase& one, const std::filesystem::path& plugin);

}  // namespace vemra::app
