#pragma once

/// The second half of a search: into the sector before the dock, along the middle line onto the contacts, and
/// back out for another try.

#include "trees/dock/search.h"
#include "trees/idioms.h"

namespace vemra::trees {

/// One side of the dock's signal: the receivers and sectors as the robot meets them there, and the sense of
/// turns.
struct Side
{
    int sign;  ///< of the turn back to the dock: +1 to the left
    const char* name;
    const char* side_signal;
    const char* central_signal;
    const char* other_side_signal;
    const char* other_central_signal;
    const char* near_receiver;  ///< the front receiver on this side
    const char* far_receiver;
};
inline constexpr Side left_side{+1, "left", "Left", "CentralLeft", "Right", "CentralRight", ml, mr};
inline constexpr Side right_side{-1, "right", "Right", "CentralRight", "Left", "CentralLeft", mr, ml};

inline std::string turned(const Side& side, int degrees)
{
    return std::to_string(side.sign * degrees);
}

/// A guarded turn towards this side.
inline Node turn(const Side& side, int degrees, const char* deg_s)
{
    return guarded_turn(turned(side, degrees), deg_s);
}

/// Left as soon as the robot is on the line.
inline constexpr BreakKey sector_approach{key::go_to_sector_lds};

/// The approach to the sector is over: the robot is taken to be on the line.
inline Nodes reached_sector()
{
    return sector_approach.leave();
}

/// One of the front receivers hears this side.
inline Node hears_side(const Side& side)
{
    return Fallback(
        hears(side.near_receiver, side.side_signal), hears(side.near_receiver, side.central_signal),
        hears(side.far_receiver, side.side_signal), hears(side.far_receiver, side.central_signal));
}

/// After an arc from this side the front receivers are one sector short of the line.
inline Node stops_short_of_line(const Side& side)
{
    const auto heard = [](const char* mr_signal, const char* ml_signal) {
        return Sequence(hears(mr, mr_signal), hears(ml, ml_signal));
    };
    return Fallback(side.sign > 0 ? heard("CentralLeft", "Middle") : heard("Middle", "CentralRight"),
                    heard("CentralLeft", "CentralRight"));
}

/// Stands still for some ticks, during which what stands before it in a `Fallback` is asked again. Always
/// fails.
inline Node hold_still(const char* ticks)
{
    return Inverter(Repeat(ticks, Stop{}));
}

/// Whether the near field is felt; later speeds depend on it.
inline Node note_field()
{
    return IfThenElseStar(InDockField{}, key::in_dock_field_lds.set("true"),
                          key::in_dock_field_lds.set("false"));
}

struct Wheels
{
    const char* left_mm_s;
    const char* right_mm_s;
};

/// A drive whose speeds depend on the near field.
inline Node drive_by_field(const char* frames, const Wheels& within_field, const Wheels& outside)
{
    return IfThenElseStar(key::in_dock_field_lds.is_true(),
                          drive_for(frames, within_field.left_mm_s, within_field.right_mm_s),
                          drive_for(frames, outside.left_mm_s, outside.right_mm_s));
}

/// The limit of arcs across the field.
inline Nodes count_arc()
{
    return row(unless(key::sector_arc_times.below(5), break_docking()), key::sector_arc_times.plus(1));
}

/// Arcs until the sector is reached; a contact is followed round.
Node approach(const Side& side, const Nodes& begin, const Node& arc, const Node& after_bump);

/// A step aside: a quarter turn, a short drive and back.
Node side_step(const Side& side);

/// A rectangle around the bump in which the robot looks for a way past the obstacle.
Node greedy_way_past_obstacle();

/// Loop of the approach to the sector and the final approach, until the cycle is broken off.
Nodes docking_loop(const Nodes& steps);

/// A sector tree: the first row of the table that holds.
Node sector_tree(const char* name, const Nodes& rows);

// --- the final approach -------------------------------------------------------------------------

/// The senses that do not count while the robot docks.
struct DockingForm
{
    bool scanner_off;  ///< of the laser
    bool cliff_off;
    Node follow;  ///< along the middle line
};
Node docking(const DockingForm& form);

/// Backs off the dock, steps aside by what the receivers weigh, and counts.
Node smart_back_40cm(const Node& back);

}  // namespace vemra::trees
