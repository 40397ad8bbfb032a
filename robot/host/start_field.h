#pragma once

#include "robot/scenario/scenario.h"
#include "robot/world/dock_field.h"

namespace vemra::robot {

/// The infrared before a dock as a scenario has it: its emitters, dropouts and mirrors.
[[nodiscard]] DockField fieldAtStart(const Dock& dock, const DockStart& start);

}  // namespace vemra::robot
