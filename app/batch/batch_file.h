#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <vector>

namespace vemra::app {

/// The lines that `vemra batch --out` wrote, by their order in the file. Throws robot::InputError with file
/// and line where one is no run of a batch.
std::vector<nlohmann::ordered_json> readBatchFile(const std::filesystem::path& file);

}  // namespace vemra::app
