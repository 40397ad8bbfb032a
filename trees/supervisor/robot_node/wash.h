#pragma once

/// What the washes of the mop have in common, whoever asks for them.

#include "description/tree.h"

namespace vemra::trees::robot_node {

/// One wash of the mop, from the sound of it to the clean cloth. A wash that closes a task is the thorough
/// one; any other goes by the water that the user has set.
Node wash_mop();

/// Warm air for as long as a build option says.
Node run_dryer();

/// The drying that follows a wash, with music and the ultraviolet lamp; nothing if the cloth was taken off.
Node dry_mop();

/// The station is free for a wash.
Node wash_rests();

/// Whoever asked for the wash has been served.
Node wash_is_over();

/// The station's button is up again.
Node hand_back_button();

}  // namespace vemra::trees::robot_node
