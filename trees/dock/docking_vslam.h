#pragma once

/// Docking by circling the dock.

#include "trees/dock/docking.h"

namespace vemra::trees {

Node docking_loop_vslam();

/// To the dock's middle line, by the side on which it is heard.
Node go_to_dock_sector();

/// Round the dock to one side until its line is passed, and what follows of a contact on the way.
Node circle_dock(const Side& side);

/// Round the dock at a distance, one way or the other.
Node go_to_dock_sector_indirect();

/// The same, or else a walk and the end of the cycle.
inline Node indirect_or_break()
{
    return FallbackStar(go_to_dock_sector_indirect(), walk_and_break_docking());
}

/// The receiver at the side, as against those in front.
inline const char* side_receiver(const Side& side)
{
    return side.sign > 0 ? left : right;
}

/// Any receiver hears this side of the dock.
inline Node any_hears_side(const Side& side)
{
    return Fallback(hears("Any", side.central_signal), hears("Any", side.side_signal));
}

}  // namespace vemra::trees
