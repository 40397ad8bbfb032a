#pragma once

#include "robot/scenario/scenario.h"
#include "robot/world/home.h"

namespace vemra::robot {

/// Holds the places of a scenario against the home that it is to happen in: all lie within the map, and where
/// the robot is put it has room. Throws InputError with file, line and what was expected.
void checkPlaces(const Scenario& scenario, const Home& home);

}  // namespace vemra::robot
