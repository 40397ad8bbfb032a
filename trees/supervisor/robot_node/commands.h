#pragma once

/// What the user asks of the robot: its keys and the commands of the app.

#include "description/tree.h"

namespace vemra::trees::robot_node {

/// Takes a key or an app command; a tick that brings neither goes to `health_check`.
Node commands(Node health_check);

/// A command from the user ends the silencing of the charge voice.
Node revert_charge_music();

}  // namespace vemra::trees::robot_node
