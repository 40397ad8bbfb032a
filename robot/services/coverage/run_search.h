#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "robot/planning/cleaning_lines.h"
#include "robot/services/coverage/offers.h"
#include "robot/services/navigation/search/navigation_search.h"

namespace vemra::robot {

/// May a search give this way? One over a gap that may be too narrow (a trial bridge) counts as an offer of
/// that gap, whatever the goal behind it, and is worth it only for floor that the robot can get about on:
/// more than there is between the legs of a chair.
[[nodiscard]] bool isOpenWay(const SearchGround& ground, const GridPath& way, const OfferBook& offers);
/// It is given; false if it may not be.
bool takeWay(const SearchGround& ground, const GridPath& way, OfferBook& offers);

/// The way to the nearest end of the runs that may be given. `takes` is asked for each candidate, the nearest
/// first; the first that it takes is given.
[[nodiscard]] std::optional<GridPath> wayToNearestRun(const SearchGround& ground,
                                                      std::vector<CleaningRun> runs, OfferBook& offers,
                                                      const std::function<bool(const CleaningRun&)>& takes);

}  // namespace vemra::robot
