#pragma once

/// The mode in which the robot goes home: what it was doing is closed down, the dock is searched, and the
/// task is closed or left open.

#include "trees/cleaning/shared.h"

namespace vemra::trees {

/// A robot that was knocked off its contacts, or whose contacts do not charge, stands at or near its dock.
Node kicked_branch();

/// A finished task, a low battery, or a command.
Node normal_branch();

// --- the task -----------------------------------------------------------------------------------

inline Node task_is(const char* state)
{
    return key::task_state.is(state);
}

inline Node set_task(const char* state)
{
    return key::task_state.set(state);
}

inline Node low_power()
{
    return SubTree("TypeOfLowpower", Fallback(task_is("lowpower"), task_is("area_lowpower"),
                                              task_is("point_lowpower"), task_is("zone_lowpower")));
}

/// The last row stands twice; nothing rests on it.
inline Node low_power_pause()
{
    return SubTree(
        "TypeOfLowpowerPause",
        Fallback(task_is("lowpower_pause"), task_is("zone_lowpower_pause"), task_is("point_lowpower_pause"),
                 task_is("area_lowpower_pause"), task_is("point_lowpower_pause")));
}

struct StateChange
{
    const char* from;
    const char* to;
};

inline Node change_task(std::initializer_list<StateChange> changes)
{
    std::vector<Case> rows;
    for (const StateChange& change : changes)
        rows.push_back({task_is(change.from), set_task(change.to)});
    return choose(std::move(rows));
}

/// The robot washes its cloth on this way home.
inline Node goes_home_to_wash()
{
    return Sequence(key::hand_wash_flag.present(), DoesTuobuInstall{});
}

inline Node in_fast_mapping()
{
    return in_mode("FastMapBuildMode");
}

/// Drives off the dock forwards. Stands behind a test that is off.
inline Node drive_forward_40cm()
{
    return SequenceStar(
        SubtreeCondition{"EscapeCoat"}, key::current_odom.copy_to(key::back_origin_pose),
        ForceSuccess(
            Frameout(750, Named("GoForward40cm",
                                Sequence(ArePointsTooClose{"660", "${current_odom}", "${back_origin_pose}"},
                                         SubtreeCondition{"Escape"}, OpenCloseMove{"100", "100"})))),
        Stop{});
}

/// No dock was found: music, and the count of failures.
inline Nodes give_up_search(const Node& music)
{
    return row(music, key::backhome_fail_flag.flag());
}

inline Node count_failure()
{
    return key::backhome_fail_times.plus(1);
}

inline Node go_charging_mode()
{
    return ChangeRobotModeTo{.IsAimMode_Charging = "true"};
}

}  // namespace vemra::trees
