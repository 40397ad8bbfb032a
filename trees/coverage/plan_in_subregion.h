#pragma once

/// The planner that covers a part of the floor: first the walls of what it meets, then lines between them, in
/// turn until no wall is open, no obstacle is untraced and no line is left.

#include "trees/coverage/shared.h"

namespace vemra::trees {

/// Where the two planners of this kind differ.
struct PartPlanner
{
    /// Plans the next line from `source_point`.
    Node (*plan_line)(const char* source_point);
    /// A line of no more cells is not worth a drive along it.
    const char* too_short_cells;
    /// The start of each line is kept apart from the goal of the drive to it.
    bool keeps_line_start;
};

Node plan_in_subregion(const PartPlanner& planner);

// --- the phases ---------------------------------------------------------------------------------

/// Walls: traces what was bumped into, and looks for more. Fails when there is nothing left to go to while
/// lines have run out.
Node wall_phase();

/// The traces of one round, and the ways to the next.
Node gong_follow_wall();

/// Lines, until none is left or a bridge was crossed.
Node zigzag_phase(const PartPlanner& planner);

/// Leads a robot that has left the part back to it.
Node way_back();

// --- what the phases share ----------------------------------------------------------------------

/// A zigzag is in hand.
inline Node zigzag_is_on()
{
    return Sequence(key::gong_motion_type.present(), key::gong_motion_type.holds("true"));
}

inline Node set_bool(const char* key, const char* value)
{
    return SetBlackboardWithType{key, "bool", value};
}

/// A new chain, with the wall on the right.
inline Nodes begin_chain()
{
    return row(key::current_chain_id.set_typed(0), set_bool("follow_wall_dir", "true"));
}

inline Node close_chain()
{
    return CloseChain{.chain_id = "${current_chain_id}", .true_back_false_front = "${follow_wall_dir}"};
}

/// The thing that was met is to be traced.
inline Node contact_needs_tracing()
{
    return GongNeedFollowWall{"${chain_layer_id}"};
}

/// A companion that tells the track why the robot moves.
inline Node traced_as(const char* why)
{
    return key::trace_token.set(why);
}

inline Node make_map_of_part()
{
    return MakeMap{.roi = "${current_subregion}"};
}

}  // namespace vemra::trees
