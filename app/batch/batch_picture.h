#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "app/batch/batch_case.h"

namespace vemra::app {

/// A picture of the home: where the dock is heard, where the runs of the lines began and which of them
/// docked. `like` is any of the runs: they share home, dock and scenario.
void writeBatchPicture(const std::filesystem::path& file, const BatchCase& like,
                       const std::vector<nlohmann::ordered_json>& lines);

}  // namespace vemra::app
