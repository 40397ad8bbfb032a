#pragma once

#include "robot/services/navigation/goals/frontier_book.h"
#include "robot/services/navigation/search/navigation_search.h"

namespace vemra::robot {

// How a search picks its goal by itself. Each is a GoalRule.

/// The nearest known floor that the robot's body has not been over.
std::optional<GridPath> nearestUncovered(const SearchGround& ground);
/// The nearest known floor beside enough of the unknown that the book still has open; it is entered there.
std::optional<GridPath> nearestFrontier(const SearchGround& ground, FrontierBook& book);
/// Where a charger is known to be (`charger_position`, `only_charger_in_map`, `global_charger_pose`), else
/// the known floor that lies farthest from where the robot has been.
std::optional<GridPath> chargerOrFarthest(const SearchGround& ground);

}  // namespace vemra::robot
