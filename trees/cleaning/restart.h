#pragma once

/// What a restart of the task sets back, on a new map and on a stored one.

#include "trees/cleaning/shared.h"

namespace vemra::trees {

/// Where the two restarts differ in what they set back.
struct TaskReset
{
    Nodes after_clean_complete{};  ///< beside the other keys of the clean
    Nodes before_origin_in_enclave{};
    Nodes before_warning{};
    Nodes at_end{};
};

/// The keys of a task as they are before it begins.
inline Nodes reset_task(const TaskReset& differences)
{
    return row(erase("robot_trajectory"), erase("follow_trajectory"), erase("only_charger_in_map"),
               erase("first_potential_charger"), erase("first_potential_charger_failed"),
               erase("second_potential_charger"), erase("second_potential_charger_failed"),
               erase("origin_point"), erase("has_charger_in_map"), erase("clean_complete"),
               erase("second_time_cleaning"), differences.after_clean_complete, erase("lowpower_coord_save"),
               erase("generate_points"), erase("current_area_val"), erase("reuse_automode"),
               SetBlackboard{"gong_complete", "false"}, differences.before_origin_in_enclave,
               SetBlackboard{"origin_in_enclave", "false"}, SetBlackboard{"search_charger_time", "0"},
               SetBlackboard{"explore_init", "true"}, SetBlackboard{"appmap_reset_flag", "true"},
               differences.before_warning, differences.at_end);
}

/// The marks of a start on a stored map are used up.
inline Nodes forget_start()
{
    return row(erase("on_charger_pose"), erase("reuse_from_charger"), erase("just_damode_reuse_failed"),
               erase("disable_reuse_reloc_once"), ClearUpdateWarning{}, erase("clear_map_flag"));
}

}  // namespace vemra::trees
