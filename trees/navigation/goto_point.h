#pragma once

/// The walk along a plan, segment by segment, and what its forms have of their own.

#include "trees/idioms.h"

namespace vemra::trees {

/// The local planner drives along the path, the map is renewed behind it.
Nodes drive_along_path();

/// The same; but the one-shot token makes the trajectory of a path of fewer than `below_cells` count as
/// traced.
Nodes drive_traced_on_request(int below_cells);

/// What becomes of a bridge that was not crossed: it is recorded.
Node record_failed_crossing();

/// The same; and out of a virtual wall, in which a failed temporary bridge may have left the robot, it is
/// led.
Nodes record_and_leave_virtual_wall();

/// One form of the walk. The forms share the course of the walk.
struct PlanWalk
{
    /// In a viewer. The forms made from the plain one kept its label.
    const char* label = "GotoPoint";

    /// The robot's motion on a vector segment, after the gates that stop it.
    Nodes drive;

    /// What is done about a bridge that was not crossed. The segment has failed in any case.
    Node after_failed_bridge;
};

/// Walks the segments of the last plan, one after the other. Success means that the robot stands at the goal,
/// even where the plan broke off.
Node walk_the_plan(const PlanWalk& walk);

}  // namespace vemra::trees
