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
    return row(
        erase(key::robot_trajectory, key::follow_trajectory, key::only_charger_in_map,
              key::first_potential_charger, key::first_potential_charger_failed,
              key::second_potential_charger, key::second_potential_charger_failed, key::origin_point,
              key::has_charger_in_map, key::clean_complete, key::second_time_cleaning),
        differences.after_clean_complete,
        erase(key::lowpower_coord_save, key::generate_points, key::current_area_val, key::reuse_automode),
        key::gong_complete.set("false"), differences.before_origin_in_enclave,
        key::origin_in_enclave.set("false"), key::search_charger_time.set(0), key::explore_init.set("true"),
        key::appmap_reset_flag.set("true"), differences.before_warning, differences.at_end);
}

/// The marks of a start on a stored map are used up.
inline Nodes forget_start()
{
    return row(erase(key::on_charger_pose, key::reuse_from_charger, key::just_damode_reuse_failed,
                     key::disable_reuse_reloc_once),
               ClearUpdateWarning{}, key::clear_map_flag.erase());
}

}  // namespace vemra::trees
