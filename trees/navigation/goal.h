#pragma once

/// Where the robot stands against the goal of its navigation, `navi_target_point`.

#include "description/tree.h"

namespace vemra::trees {

/// The robot stands within `distance_mm` of the goal.
inline Node goal_within(const char* distance_mm)
{
    return near(key::navi_target_point, distance_mm);
}

}  // namespace vemra::trees
