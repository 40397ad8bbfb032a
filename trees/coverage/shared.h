#pragma once

/// What the trees that cover floor have in common: searches over the map, and how the robot gets to what they
/// find.

#include "trees/idioms.h"
#include "trees/navigation/search.h"

namespace vemra::trees {

/// A search within the part of the floor in work.
inline Node search_part(const char* mode, const char* target = "default", const char* chain_mask = "false")
{
    return search(
        {.mode = mode, .target = target, .region = "${current_subregion}", .chain_mask = chain_mask});
}

inline Node draw(const char* mode)
{
    return SetMapDrawMode{.draw_mode = mode, .LockState = "false"};
}

/// Inner steps cannot change it.
inline Node draw_locked(const char* mode)
{
    return SetMapDrawMode{.draw_mode = mode, .LockState = "true"};
}

inline Node bumped()
{
    return Bumped{"${bump_dir}"};
}

// --- the way home -------------------------------------------------------------------------------

/// A doubtful way is driven at once, to prove it: the laser's near points do not hold the robot back.
Node prove_way();

/// A wall of the user cuts the robot off from the rest: told once a task.
Node report_clean_blocked();

// --- second chances -----------------------------------------------------------------------------

/// Candidates are tried until `worth_the_trip` passes on one, or none is left.
Node find_second_chance(const Node& worth_the_trip);

}  // namespace vemra::trees
