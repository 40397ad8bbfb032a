#pragma once

#include <iosfwd>
#include <nlohmann/json.hpp>
#include <vector>

namespace vemra::app {

/// How many came out well, what became of the others, percentiles of the figures, and the worst runs with
/// the commands that play them again.
void printSummary(std::ostream& out, const std::vector<nlohmann::ordered_json>& lines);

}  // namespace vemra::app
