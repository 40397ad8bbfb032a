#pragma once

#include "trees/idioms.h"

namespace vemra::trees {

/// One manner of following a wall.
struct FollowWallManner
{
    /// The wall is followed even where the base station's field would turn the robot away.
    const char* ignore_base = "false";

    /// Close to the outline and slowly turning, for a stretch too short to overshoot a corner.
    const char* precise = "false";
};

/// The order that settles how the wall is followed. It is given once; what is followed after it comes frame
/// by frame.
Node order_follow(const FollowWallManner& manner);

/// Fails when the way since the start of the follow has closed on itself. Without `base` the leaf looks at
/// the way that it takes by itself.
Node not_looped();
Node not_looped(const char* base);

/// Gives the order and follows the wall. A finished escape ends the follow, since the robot then no longer
/// stands where the order was meant.
Node follow_wall(const FollowWallManner& manner);

/// Takes `follow`, a follow that never succeeds by itself, up to the edge of the rectangle around the place
/// where it began. Leaving the rectangle is success, any other end failure; either way the robot steps back
/// from the wall.
Node follow_till_rect_limit(const char* label, const Node& follow);

}  // namespace vemra::trees
