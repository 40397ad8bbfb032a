#pragma once

#include <iosfwd>
#include <nlohmann/json.hpp>
#include <vector>

namespace vemra::app {

/// Two batches over the same seeds, seed by seed: which runs came out otherwise, how each figure has changed,
/// and the seeds in which it changed most. Seeds that one of them lacks are told and left out.
void printComparison(std::ostream& out, const std::vector<nlohmann::ordered_json>& before,
                     const std::vector<nlohmann::ordered_json>& after);

}  // namespace vemra::app
