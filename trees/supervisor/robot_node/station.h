#pragma once

/// The base station as the supervisor drives it beside the running mode: emptying the dust box into it,
/// watching its health, and the washing of the mop, which this product's station does not have.

#include "description/tree.h"

namespace vemra::trees::robot_node {

// --- dust ---------------------------------------------------------------------------------------

/// Gives up whatever emptying is under way and puts the station at rest.
Node dust_init_subtree();

/// The emptying that the user asked for.
Node manual_dust();

/// The emptying that a cleaning has made due.
Node auto_dust();

// --- health -------------------------------------------------------------------------------------

/// Stops the robot, tells what ails the station and goes to the error mode.
Node station_status_detect();

/// Watches the station while the robot itself is well, and takes up an emptying that an error cut short.
Node station_health_check();

// --- wash ---------------------------------------------------------------------------------------

Node station_base_handle();
Node auto_wash();
Node manual_wash();

/// Watches the wash station for errors, and takes up a wash that one cut short.
Node wash_station_err_check();

/// Gives up whatever washing or drying is under way.
Node wash_init_subtree();

/// The same, whenever the robot has left the charger.
Node wash_init();

}  // namespace vemra::trees::robot_node
