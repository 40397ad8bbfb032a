#pragma once

/// The search by odometry alone: relative turns, and what the four receivers hear at the moment.

#include "trees/dock/docking.h"

namespace vemra::trees {

// --- turns --------------------------------------------------------------------------------------

/// A turn by `turn_target_angle_relative` to the side of `turn_target_angle_dir`.
Node turn_relative();

/// A turn by so many degrees to one side.
Node turn_by(const char* side, const char* degrees);

/// The same, ended by `heard`.
inline Node turn_by_until(Node heard, const char* side, const char* degrees)
{
    return Fallback(std::move(heard), turn_by(side, degrees));
}

inline Node both_hear()
{
    return Sequence(hears(ml), hears(mr));
}

// --- stages of the search -----------------------------------------------------------------------

/// A hunt for the signal by whole turns.
Node turn_find_signal();

/// Which side of the middle line the robot is on, by what it hears.
Node update_charger_direction();

/// Follows the middle of the signal, round what is met.
Node go_toward_charger_with_find_center();

/// The heading in which the dock is heard best.
Node find_best_direction();

/// Round the near field until a front receiver hears the middle line.
Node surround_field_find_middle();

/// A contact by a bumper; a virtual wall does not count.
Node any_bumper_bumped();

Node final_approach_without_map();

}  // namespace vemra::trees
