#pragma once

#include "trees/idioms.h"
#include "trees/navigation/goal.h"

namespace vemra::trees {

/// One form of the drive to `navi_target_point`. The forms differ in what they take for a near goal,
/// in what the map learns on the way, and in the plan by which a far goal is reached.
struct NavigationForm
{
    /// A goal that needs no plan.
    Node is_near = goal_within("100");

    /// The straight run to a near goal; it leaves no mark on the map.
    Node near_run =
        SequenceStar(SetMapDrawMode{.draw_mode = "None"}, SubtreeCondition{"NaviOnePointProc.xml"});

    /// The walk along the plan to a far goal.
    Node far_walk;
};

/// Goes straight to a near goal, by the plan to a far one.
Node navigate(const NavigationForm& form);

/// Runs `navigation` and forgets the bridges of its plan, whatever came of it. The result is that of
/// `navigation`.
Node forget_bridges_after(const Node& navigation);

}  // namespace vemra::trees
