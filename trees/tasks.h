#pragma once

/// The kinds of task that a user starts: how `task_state` and `task_type` name each, and the mode that does
/// it.

#include "trees/idioms.h"

namespace vemra::trees {

struct Task
{
    const char* type;
    const char* cleaning;
    const char* lowpower;
    const char* lowpower_pause;

    /// Changes to its mode, where it begins or goes on.
    ChangeRobotModeTo take_up;

    /// Under way, or waiting for charge.
    [[nodiscard]] Node open() const { return key::task_state.is_any({cleaning, lowpower, lowpower_pause}); }
    [[nodiscard]] Node starting() const
    {
        return Sequence(key::task_state.is("precleaning"), key::task_type.is(type));
    }
    [[nodiscard]] Node open_or_starting() const
    {
        return FallbackStar(key::task_state.is(cleaning), key::task_state.is(lowpower),
                            key::task_state.is(lowpower_pause), starting());
    }
};

inline Task whole_home()
{
    return {"AutoClean", "cleaning", "lowpower", "lowpower_pause", {.IsAimMode_Auto = "true"}};
}
inline Task drawn_zones()
{
    return {
        "ZoneClean", "zone_cleaning", "zone_lowpower", "zone_lowpower_pause", {.IsAimMode_DrawArea = "true"}};
}
inline Task chosen_rooms()
{
    return {"AreaClean",
            "area_cleaning",
            "area_lowpower",
            "area_lowpower_pause",
            {.IsAimMode_AreaSelect = "true"}};
}
inline Task chosen_points()
{
    return {"PointClean",
            "point_cleaning",
            "point_lowpower",
            "point_lowpower_pause",
            {.IsAimMode_PointSelect = "true"}};
}

/// A cleaning task was broken off for want of charge and waits on the charger to be taken up again.
inline Node task_waits_for_charge()
{
    return key::task_state.is_any({"lowpower", "zone_lowpower", "area_lowpower", "point_lowpower"});
}

/// Changes to the mode of the task that `key` names by `name`: `&Task::type` or one of its states.
inline Node take_up_task(const Key& key, const char* Task::*name, Node otherwise)
{
    std::vector<Case> rows;
    for (const Task& task : {whole_home(), drawn_zones(), chosen_rooms(), chosen_points()})
        rows.push_back({key.is(task.*name), task.take_up});
    return choose(std::move(rows), std::move(otherwise));
}

/// The same for a task that has waited for charge.
inline Node take_up_charged_task(Node otherwise)
{
    return take_up_task(key::task_state, &Task::lowpower, std::move(otherwise));
}

}  // namespace vemra::trees
