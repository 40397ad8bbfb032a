#pragma once

/// Docking by quarter turns across the field.

#include "trees/dock/docking.h"

namespace vemra::trees {

/// The loop of sector and final approach, with the sector trees of the sister robots beside the one that
/// runs.
Node docking_loop_lds();

/// Backs off as far as `distance_mm`, for so many frames.
Node back_off_dock(const char* distance_mm, const char* frames);

// --- the sector trees ---------------------------------------------------------------------------

/// Where the sector trees differ.
struct SectorForm
{
    const char* name;
    Nodes head;                    ///< rows before the approaches
    Node (*mid_arc)(const Side&);  ///< the arc of this pass is of middle length
    const char* long_frames;
    Nodes (*after_turn)(const Side&);  ///< the passes' own steps once the robot faces the dock
    Nodes matches;                     ///< what ends a pass on the left
    Node right_approach;
};
Node sector_lds(const SectorForm& form);

/// The sector tree of the live dock, and those of its sisters.
Node sector_lds_7002();
Node sector_lds_7003();
Node sector_lds_first();

// --- what they share ----------------------------------------------------------------------------

/// A pass of the left approach, or its mirror image.
struct ArcPass
{
    Node mid_arc;
    const char* long_frames;
    Nodes own_steps;
    Nodes matches;
};
Node arc_pass(const Side& side, const ArcPass& pass);

/// The right approach of the live dock, which is no mirror image: one long arc, after which the robot looks
/// back.
Node right_approach_in_one_arc(const Node& short_arc);

/// Follows the wall of what was met on an arc.
Node wall_branch(const Side& side);

}  // namespace vemra::trees
