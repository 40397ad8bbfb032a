#pragma once

/// The task of a cleaning mode, from its start to the way home. The modes differ in what they clean, how they
/// take up input and what they say.

#include "trees/cleaning/shared.h"

namespace vemra::trees {

/// The texts by which task_state names the stages of a mode's task.
struct TaskStates
{
    const char* cleaning;
    const char* lowpower;
    const char* lowpower_pause;
};

struct CleaningMode
{
    TaskStates states;
    const char* task_type;
    const char* mode_name;      ///< under last_clean_mode
    const char* continue_work;  ///< what can be taken up again

    // Entry.
    Nodes take_input;         ///< at the start of a new task
    Nodes mode_gate_early{};  ///< before the task is noted
    Nodes mode_gate_late{};   ///< after it
    const char* entry_message;
    Nodes presets_before{};  ///< of this entry, before the common ones
    Nodes presets_after{};

    // Start.
    Node scheduled_start;  ///< a task that a schedule began
    Node start_music;
    Node leave_dock;      ///< and what is noted about it
    Nodes mapping_run{};  ///< a task that an automatic mapping run began

    // Restart or resume.
    Nodes closed_search_states;  ///< a mere search for the dock is closed first
    Nodes mark_reloc{};          ///< marks that the place is being found for this mode
    Nodes forget_input{};        ///< of the app, once it was taken
    const char* no_restart_message;
    Nodes other_task;       ///< tests that another task is open
    Node give_up_old_task;  ///< the place was not found on a resume

    // Run.
    Nodes companions{};
    Nodes take_new_input{};
    Nodes turn_start_pose{};
    Node first_turn;
    Node wash_condition;  ///< a task with a cloth goes home to wash it in between
    Node wash_account;
    Nodes set_area{};  ///< what is to be cleaned; where it cannot be set the robot stands by
    Node coverage;

    // End.
    Nodes on_success;
    Nodes before_trap_report{};
    const char* dirty_record;
    Nodes at_low_power{};
};

/// The task as a tree.
Node cleaning_task(const CleaningMode& mode);

// --- what the modes put in ----------------------------------------------------------------------

/// task_state is one of those that other tasks leave behind.
inline Nodes states(std::initializer_list<const char*> texts)
{
    Nodes tests;
    for (const char* text : texts)
        tests.push_back(key::task_state.is(text));
    return tests;
}

/// The mode of the last clean was another one.
inline Node last_mode_was_not(const char* mode)
{
    return Sequence(key::last_clean_mode.present(), Inverter(key::last_clean_mode.is(mode)));
}

/// The user's settings are put back after a scheduled clean.
inline Node restore_clean_mode()
{
    return when(key::cleanmode_restore.is_true(), key::cleanmode_restore.erase(), RestoreCleanMode{});
}

/// A trap is reported once a task: as a closed door where little floor can be reached.
inline Node report_trap()
{
    const auto report = [](const Key& kind) {
        return SequenceStar(kind.flag(), key::have_trapped_type.flag(), Delay{50});
    };
    return unless(key::have_trapped_type.present(),
                  IfThenElseStar(AreaCheck{.source_point = "${current_coord}", .threshold = "400"},
                                 report(key::close_door_trapped), report(key::automode_trapped)));
}

/// Which map of rooms a task with an order of rooms uses.
inline Node choose_map_of_rooms()
{
    return IfThenElseStar(Sequence(key::is_ordering_task.holds("true"), key::order_map.present()),
                          key::segment_map_info.set("order_map"), key::segment_map_info.set("segment_map"));
}

/// After an error the little that was cleaned is cleaned again.
inline Node restart_after_error()
{
    return when(key::restart_cleaning_from_err_mode.present(), key::restart_cleaning_from_err_mode.erase(),
                when(CleanAreaTooSmall{}, ResetMap{}));
}

/// `work`, and after it `steps`, whichever way it ends.
inline Node whichever_way(const Node& work, const Nodes& steps)
{
    return IfThenElseStar(work, SequenceStar(steps, AlwaysSuccess{}), fail_after(steps));
}

/// The robot turns once before the map is used.
inline Node turn_half_round()
{
    return Rotate{
        .angle_deg = "180", .angular_velocity_deg_s = "60", .false_relative_true_absolute = "false"};
}

}  // namespace vemra::trees
