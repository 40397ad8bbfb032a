#pragma once

/// Rooms one after the other: which comes next, how the robot gets there, and what is done in it.

#include "trees/coverage/shared.h"

namespace vemra::trees {

/// The first of the ways that finds a room or a spot in one.
Node select_room();

/// Drives to what was selected, unless the robot is there.
Node go_to_room();

/// The passes over a room, and the floor beside it that the map of rooms left out.
Node clean_room();

/// A trap is reported once a task.
template <Steps... Children>
Node report_once(Children&&... steps)
{
    return FallbackStar(key::have_trapped_type.present(), SequenceStar(std::forward<Children>(steps)...));
}

/// The room in work has this number; some numbers have a meaning of their own.
inline Node room_is(const char* number, const char* answer)
{
    return BoolMatch{"${current_area_val}==" + std::string(number), answer};
}

/// All passes of a planner over the room.
inline Node plan_room(const char* in_area, Node planner)
{
    return DoWhile(UpdateSegmentMap{in_area}, sensor_on("SegmentVirtualWallMap"), std::move(planner));
}

}  // namespace vemra::trees
