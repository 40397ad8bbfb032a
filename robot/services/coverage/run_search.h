#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "robot/planning/cleaning_lines.h"
#include "robot/services/navigation/search/navigation_search.h"

namespace vemra::robot {

/// The way leads over a gap that may be too narrow.
[[nodiscard]] bool leadsOverBridge(const SearchGround& ground, const GridPath& way);

/// A way over such a gap is tried only for floor that the robot can get about on: more than there is between
/// the legs of a chair. Any other is worth it.
[[nodiscard]] bool isWorthIt(const SearchGround& ground, const GridPath& way);

/// The way to the nearest end of the runs that is worth it. `takes` is asked for each candidate, the nearest
/// first, with whether its way leads over a bridge; the first that it takes is given.
[[nodiscard]] std::optional<GridPath> wayToNearestRun(
    const SearchGround& ground, std::vector<CleaningRun> runs,
    const std::function<bool(const CleaningRun& run, bool over_bridge)>& takes);

}  // namespace vemra::robot
