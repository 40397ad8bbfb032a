#pragma once

/// What the trees of a cleaning task have in common.

#include "trees/idioms.h"

namespace vemra::trees {

/// Goes home; the reason stands in task_state by then.
inline Node go_home()
{
    return ChangeRobotModeTo{.IsAimMode_BackHome = "true"};
}

inline Node go_to_standby()
{
    return ChangeRobotModeTo{.IsAimMode_Standby = "true"};
}

/// A step that another tree does; if it fails, the task goes on all the same.
inline Node first_escape()
{
    return ForceSuccess(SubtreeCondition{"EscapeCoat"});
}

/// The cleaning system as it stands while the robot looks for its place.
inline Node quiet_cleaning_system()
{
    return SetCleanSystem{.Brush = "60", .Fan = "55", .Pump = "0", .SideBrush = "35"};
}

/// The mop's gear, where there is a mop.
inline Node set_mop_gear()
{
    return optionally(key::mop_mode.present(), RobotMopGearSet{"34"});
}

/// The same as a step that may fail.
inline Node set_mop_gear_if_any()
{
    return when(key::mop_mode.present(), RobotMopGearSet{"34"});
}

/// The heading drifted while the robot stood on its dock.
inline Node note_drift_on_dock()
{
    return when(Sequence(key::start_from_charger.is_true(), DoesInitialIMUPoseDriftEnable{}),
                key::IMUInitDriftEvent.flag());
}

/// The cloth is used in this task.
inline Node uses_mop()
{
    return key::use_mop.holds("true");
}

/// The task runs on a stored map that is cut into rooms.
inline Node on_map_with_rooms(const char* answer = "true")
{
    return BoolMatch{"${reuse_cleaning}==1", answer};
}

}  // namespace vemra::trees
