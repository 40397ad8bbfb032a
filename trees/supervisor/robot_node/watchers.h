#pragma once

/// What looks after the robot beside the running mode, whatever mode it is in. Each watcher is ticked on
/// every tick; its result means nothing.

#include "description/tree.h"

namespace vemra::trees::robot_node {

/// Battery, charger and being moved by hand.
Node robot_state_watch();

/// Stops an unhealthy robot, tells by music what ails it and goes to the error mode.
Node health_check();

/// The infrared sensors look ahead and for edges, except while charging or asleep.
Node ir_switch();

/// The charge tune, once for each landing on the charger.
Node charge_music();

/// Warnings that are no errors: told by music once each time they come up, or answered by going home.
Node warning_music();

/// Keeps `just_on_charger` for 100 ticks after the charger is lost.
Node charger_sig_delay();

/// Logs each change of `task_state` once.
Node log_task_state();

/// Takes away a lock of the mode switch that has stood for 100 ticks in a row.
Node lock_watchdog();

}  // namespace vemra::trees::robot_node
