#pragma once

/// Steps that several tasks take before the run.

#include "trees/cleaning/shared.h"

namespace vemra::trees {

/// Leaves the dock, with what the level sensor reads before and after.
Node leave_dock_and_watch_level();

/// Half a turn, during which the span of roll and pitch is taken.
Node turn_and_watch_level();

/// The dock's place from the drive off it.
Node calc_charger_position_or_not();

}  // namespace vemra::trees
