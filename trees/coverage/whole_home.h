#pragma once

/// The home as a whole: proof that the robot can still get back to where it began.

#include "trees/coverage/shared.h"

namespace vemra::trees {

/// Passes when the way to the origin is sound, or when nothing but a polygon wall of the user bars it. A
/// doubtful way is driven by `prove`, and the cycle begins again from there. Where there is no way, `OnElave`
/// says so.
Node prove_way_home(const Node& prove);

/// A check of virtual walls that is never entered.
Node parked_wall_check();

}  // namespace vemra::trees
