#pragma once

/// The running mode: what a change of mode cleans up, which tree a mode has, and what goes on around it.

#include "description/tree.h"

namespace vemra::trees::robot_node {

/// One round of the mode: cleans up after a change of mode, runs the self test, or runs the mode's tree.
Node run_mode();

/// The self test of the factory: single tests as the app asks for them, or all of them in a row.
Node self_test();

/// Water box and mop cloth: wakes the robot when they come or go, and tells by music.
Node box_check();

}  // namespace vemra::trees::robot_node
