#pragma once

/// What the user asks of the robot: its keys and the commands of the app.

#include "description/tree.h"

namespace vemra::trees::robot_node {

/// Takes a key or an app command; a tick that brings neither goes to `health_check`.
Node commands(Node health_check);

/// The step of `commands` that deals with the robot's own keys.
Node key_process();

/// The step of `commands` that deals with a command of the app.
Node app_mode_switch();

/// Takes up the kind of task that is open, or starts a cleaning of the whole home.
Node dual_clean_mode_select();

/// Of a product whose station washes: the robot was paused on its way there.
Nodes paused_on_way_to_wash();

/// The child lock is on: keys may stop the robot, and nothing else.
inline Node child_lock_is_on()
{
    return key::RobotChildLockStatus.above(0);
}

/// The battery is too low to start a task.
inline Node too_low_to_start()
{
    return RobotPowerGetLowerThan{"15"};
}

/// A command from the user ends the silencing of the charge voice.
Node revert_charge_music();

}  // namespace vemra::trees::robot_node
