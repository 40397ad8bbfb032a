#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "app/batch/batch_case.h"
#include "robot/world/random_home.h"

namespace vemra::app {

/// The clean of a home that was made from a seed: from the dock, by the start key, with a full battery.
/// Throws UserError where no wall has room for the dock.
BatchCase caseOfHome(const robot::RandomHome& made, std::uint64_t seed);

/// Writes map and scenario into a folder, and gives the command that plays them.
std::string keepHome(const robot::RandomHome& made, std::uint64_t seed, const std::filesystem::path& folder);

}  // namespace vemra::app
