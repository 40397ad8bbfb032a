#pragma once

/// Docking in two stages: up to the dock head first, a turn, and backwards onto the contacts.

#include "trees/dock/docking.h"

namespace vemra::trees {

Node docking_loop_clean_dock();

/// The sector tree of this dock.
Node sector_lds_7001();

/// The final approach and what follows of its failures.
Node final_approach_clean_dock();

/// Some distance is measured, and it is less than `limit_mm`.
inline Nodes nearer_than(const char* limit_mm)
{
    return row(RangeFinder{"front_distance"}, key::front_distance.below(limit_mm));
}

/// A half turn on the spot, signed degrees.
inline Node half_turn(const char* angle_deg, const char* deg_s)
{
    return Rotate{
        .angle_deg = angle_deg, .angular_velocity_deg_s = deg_s, .false_relative_true_absolute = "false"};
}

/// A dock is known by the stored map or by this run.
inline Node charger_is_known()
{
    return FallbackStar(GetChargerFromReuseInfo{"trash"}, key::only_charger_in_map.present());
}

}  // namespace vemra::trees
