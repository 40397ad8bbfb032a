#pragma once

#include <cstdint>
#include <vector>

#include "robot/world/plan.h"

namespace vemra::robot {

/// A furnished home made from a seed, to try a robot in homes that nobody drew for it.
///
/// One to six rooms, parted by walls of 100 mm with doors of 650 to 1,000 mm; furniture on 5 to 40 % of the
/// floor: things at walls, islands, tables on legs, and things too low for the laser. The dock stands at any
/// wall that has room for it. What would cut off more than a hundredth of the floor is left out.
struct RandomHome
{
    Plan plan;               ///< named home_SEED, with its dock
    std::vector<BoxMm> low;  ///< things that only a bumper finds; not in the plan
    int rooms = 0;
    double furnished = 0;  ///< share of the floor
};

/// The same seed gives the same home.
[[nodiscard]] RandomHome randomHome(std::uint64_t seed);

}  // namespace vemra::robot
