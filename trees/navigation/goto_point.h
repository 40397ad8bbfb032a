#pragma once

#include <optional>

#include "trees/idioms.h"

namespace vemra::trees {

/// One form of the walk along a plan. The forms share the course of the walk; each takes from the rest what
/// its task has no use for.
struct PlanWalk
{
    /// Label of the whole in a viewer. The forms made from the plain one kept its label.
    const char* label = "GotoPoint";

    /// A one-shot token asks for a segment whose trajectory counts as traced; it is granted for paths of
    /// fewer cells than this. Without a value the walk knows no token.
    std::optional<int> trace_paths_below_cells{};

    /// An exploration has no reason to drive on once its target has come into view.
    bool stop_when_target_is_clear = false;

    /// After a failed bridge the robot backs off and drops the bump, so that the caller does not take the
    /// bridge for an obstacle to be followed.
    bool back_off_after_failed_bridge = false;

    /// A failed temporary bridge may leave the robot inside a virtual wall, out of which it must be led. An
    /// exploration goes without.
    bool check_virtual_wall_after_failed_bridge = true;
};

/// Walks the segments of the last plan, one after the other. Success means that the robot stands at the goal,
/// even where the plan broke off.
Node walk_the_plan(const PlanWalk& walk);

}  // namespace vemra::trees
