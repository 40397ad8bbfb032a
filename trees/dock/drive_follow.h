#pragma once

/// The drive to the dock along the wall of what stands in the way, forwards and back.

#include "trees/dock/drive_to_dock.h"

namespace vemra::trees {

/// Along the wall until the dock is heard again. Out of range it fails.
Node go_toward_charger_follow_wall(const DriveForm& form);

/// Back along the wall, and on round its other side.
Node go_toward_charger_reverse_follow_wall(const DriveForm& form);

}  // namespace vemra::trees
