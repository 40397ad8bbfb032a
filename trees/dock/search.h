#pragma once

/// What all searches for the dock share: what the receivers hear, moves by the wheels, and how a search is
/// left.

#include "trees/navigation/search.h"

namespace vemra::trees {

// --- the receivers: two in front, one on each side ----------------------------------------------

inline constexpr const char* ml = "MiddleLeft";
inline constexpr const char* mr = "MiddleRight";
inline constexpr const char* left = "Left";
inline constexpr const char* right = "Right";

/// A receiver hears a sector of the dock's signal, or anything at all.
inline Node hears(const char* receiver, const char* signal = "Any")
{
    return ChargerReceiverPickedUpSignal{.receiver = receiver, .signal = signal};
}

/// One of the front receivers hears `signal`. Asked anew on each tick.
inline Node front_hears(const char* signal = "Any")
{
    return Fallback(hears(ml, signal), hears(mr, signal));
}

/// Both hear what they are said to.
inline Node both(const char* ml_signal, const char* mr_signal)
{
    return Sequence(hears(ml, ml_signal), hears(mr, mr_signal));
}

inline Node marked(const char* signal)
{
    return SignalTypeMatch{"${marker_signal_type}", signal};
}

// --- moves --------------------------------------------------------------------------------------

/// The wheels turn until something above ends it; mm/s.
inline Node wheels(const char* left_mm_s, const char* right_mm_s)
{
    return OpenCloseMove{.left_mm_s = left_mm_s, .right_mm_s = right_mm_s};
}

/// The wheels turn for so many frames.
inline Node drive_for(const char* frames, const char* left_mm_s, const char* right_mm_s)
{
    return ForceSuccess(Frameout(frames, wheels(left_mm_s, right_mm_s)));
}

inline Node no_bump()
{
    return Inverter(SensorCheckBumped{"bump_dir"});
}

/// A drive that a contact ends in failure.
inline Node drive_unless_bumped(const char* frames, const char* left_mm_s, const char* right_mm_s)
{
    return Sequence(no_bump(), drive_for(frames, left_mm_s, right_mm_s));
}

/// A turn to an absolute heading, which an escape ends in failure.
inline Node guarded_turn_to(const char* heading_deg, const char* deg_s)
{
    return RetryUntilSuccesful(1, guarded(Rotate{.angle_deg = heading_deg,
                                                 .angular_velocity_deg_s = deg_s,
                                                 .false_relative_true_absolute = "true"}));
}

inline Node turn_to_target_angle()
{
    return SubTree("TurnToTargetAngle", guarded_turn_to("${turn_target_angle}", "60"));
}

/// The turn halts as soon as `heard` passes.
inline Node turn_until(Node heard, const char* angle_deg, const char* deg_s)
{
    return Fallback(std::move(heard), guarded_turn(angle_deg, deg_s));
}

/// The same, and a contact that ends it early is no failure.
inline Node drive_till_bump(const char* frames, const char* left_mm_s, const char* right_mm_s)
{
    return ForceSuccess(Sequence(no_bump(), Frameout(frames, wheels(left_mm_s, right_mm_s))));
}

inline Node back2cm()
{
    return SubtreeCondition{"Back2cm"};
}

inline Node random_walk()
{
    return ForceSuccess(SubtreeCondition{"SearchForChargerRandomWalk"});
}

// --- headings -----------------------------------------------------------------------------------

inline Node offset_yaw(const char* of, const char* by_deg, const char* into)
{
    return FloatAdd{.a = of, .b = by_deg, .out_sum = into};
}

inline Node yaw_above(const char* limit)
{
    return key::current_yaw_deg.above(limit);
}

inline Node yaw_below(const char* limit)
{
    return key::current_yaw_deg.below(limit);
}

// --- how a search is left -----------------------------------------------------------------------

inline constexpr BreakKey docking_cycle{key::docking_big_loop_break};
inline constexpr BreakKey drive_to_charger{key::go_toward_charger_loop_break};

inline Nodes break_docking()
{
    return docking_cycle.leave();
}

inline Nodes break_drive()
{
    return drive_to_charger.leave();
}

inline Node break_docking_step()
{
    return SequenceStar(break_docking());
}

/// The robot walks a little and the search begins again with a new marking turn.
inline Node walk_and_break_docking()
{
    return SequenceStar(random_walk(), break_docking());
}

/// Why a wall follow ended.
inline Node because(const char* reason)
{
    return key::break_condition.set(reason);
}

inline Node follow_wall_command(const char* lowspeed)
{
    return SetFollowWallCmd{.ignorebase = "true", .lowspeed = lowspeed, .precise = "false"};
}

inline Node wall_is_not_looped()
{
    return FollowWallNotLooped{.out_loop_num = ""};
}

inline Node within(const char* distance_mm, const char* of)
{
    return points_within(distance_mm, "${current_pose}", of);
}

/// Follows the wall on.
inline Node follow_on(Node wall_tree)
{
    return guarded(std::move(wall_tree));
}

inline Node wall_on_right(const char* answer)
{
    return key::follow_wall_dir.holds(answer);
}

inline Node set_wall_side(const char* value)
{
    return key::follow_wall_dir.set(value);
}

inline Node turn_wall_side()
{
    return IfThenElseStar(wall_on_right("true"), set_wall_side("false"), set_wall_side("true"));
}

inline Nodes note_bump()
{
    return row(key::current_pose.copy_to(key::initial_bump_pose),
               key::current_yaw_deg.copy_to(key::initial_bump_yaw));
}

/// Brings the heading of the bump within half a round of where the robot looks.
inline Nodes normalise_bump_yaw()
{
    return row(offset_yaw("${current_yaw_deg}", "-180", "trash"),
               FloatModulus{.bias = "${trash}",
                            .dividend = "${initial_bump_yaw}",
                            .divisor = "360",
                            .out_remainder = "initial_bump_yaw"});
}

}  // namespace vemra::trees
