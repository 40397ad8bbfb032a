#pragma once

/// Bringing the robot up, and the two services that start-up shares with the running robot.

#include "description/tree.h"

namespace vemra::trees::robot_node {

/// Exchanges the parameters with the board, waiting for it without limit, and presets the keys that every
/// mode relies on.
Node robot_sys_init();

/// Goes to the charging mode on the charger and to the standby mode elsewhere.
Node first_mode();

/// Loads the saved map when asked by `Start_Map_Load`; fails while nobody asks. A map that does not hold
/// together is cleared.
Node map_load();

/// Closes a cleaning task when asked by `AdvCleanCompleteStart`, which it waits for, and answers by
/// `AdvCleanCompleteEnd`. Clears the map as well where `clear_map_flag` says so.
Node adv_clean_complete_impl();

}  // namespace vemra::trees::robot_node
