#pragma once

/// The first half of a search: a marking turn gives the direction, and the robot drives along the signal,
/// round what it meets, until it is within the dock's near field.

#include "trees/dock/search.h"

namespace vemra::trees {

/// A wall follow or an arc to one side. To the left the obstacle is kept on the right, and the dock is heard
/// on the right first; to the right all is mirrored.
struct Sense
{
    int sign;                    ///< of a turn: +1 to the left
    const char* wall_on_right;   ///< the value of follow_wall_dir that takes this side
    const char* front_receiver;  ///< that hears the dock first
    const char* side_receiver;
};
inline constexpr Sense leftwards{+1, "false", mr, right};
inline constexpr Sense rightwards{-1, "true", ml, left};

/// By follow_wall_dir.
template <class Body>
Node by_wall_side(const Body& body)
{
    return IfThenElseStar(wall_on_right("false"), body(leftwards), body(rightwards));
}

inline std::string turned(const Sense& sense, int degrees)
{
    return std::to_string(sense.sign * degrees);
}

/// The heading has passed `limit`, in the sense of the turn.
inline Node yaw_past(const Sense& sense, const char* limit)
{
    return sense.sign > 0 ? yaw_above(limit) : yaw_below(limit);
}

/// A follow that ends for a reason.
struct FollowLadder
{
    Node middle;                      ///< the dock's middle line is heard
    Node (*good)(const Sense&);       ///< the dock is heard again
    Node out_of_range;                ///< too far from where it began
    Node (*wall_tree)(const Sense&);  ///< which manner of following
};

/// Where the searches with a drive of this kind differ.
struct DriveForm
{
    Node leave_field;           ///< away from the dock first, where it is too near to be marked
    Node heard_in_field;        ///< the drive has done its part
    const char* slow_arc_mm_s;  ///< of the outer wheel
    Nodes before_follow{};      ///< one step of a drive, before the signal is followed
    Node still_touching;        ///< backing off goes on
    Node (*arc_heard)(const Sense&);
    Nodes alternate_manner{};  ///< consecutive follows change the manner
    FollowLadder first_follow;
    Node reverse_middle;
    Node reverse_out_of_range;
    Node reverse_wall_tree;
    FollowLadder last_follow;
};

/// One cycle: the marking turn, the drive, unless the dock is `heard` in its field already, and then
/// `docking`.
Node searching_cycle(const Node& leave_field, const Node& heard, const Node& drive, const Node& docking);
Node searching_cycle(const DriveForm& form, const Node& docking);

/// What a search begins with: its counts and its marks.
Nodes begin_search(const Nodes& own);

/// The marking turn, three times at a bad place.
Node marking_turn();

/// A direction came of it.
Nodes direction_is_known();

/// A trapped cycle does not use up a marking turn.
Node count_trapped_cycle();

/// Away from the dock, whose direction the turn has marked.
Node turn_away_and(Node drive);

/// Turns to the dock, with an arc for a robot that stands aside.
Node turn_to_charger(const char* slow_arc_mm_s);

/// Off an obstacle, until `frames` after it is free.
Node back_off(const Node& still_touching, const char* frames);

/// A second bump at the same place: the middle line does not end a wall follow there.
Node mark_place_of_bump();

/// Of an arc around an obstacle.
struct Arc
{
    int limit_deg;      ///< from where it begins; 0: the limit of the arc before stands
    int turn_away_deg;  ///< first
    const char* turn_deg_s;
    const char* slow_mm_s;  ///< of the inner wheel
    const char* fast_mm_s;
};
Node swing(const Arc& arc, const Sense& sense, Node (*heard)(const Sense&));

/// An arc by the side of the bump; a virtual wall gets none.
Nodes first_arc(const Nodes& side_of_wall, const Arc& after_middle, const Arc& after_side,
                Node (*heard)(const Sense&));

}  // namespace vemra::trees
