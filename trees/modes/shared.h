#pragma once

/// What the modes in which the robot does not clean, and the small trees beside them, have in common.

#include <string>
#include <utility>

#include "trees/idioms.h"

namespace vemra::trees {

// --- the open task ------------------------------------------------------------------------------

/// A cleaning task was broken off for want of charge and waits on the charger to be taken up again.
inline Node task_waits_for_charge()
{
    return key_is_any("task_state", {"lowpower", "zone_lowpower", "area_lowpower", "point_lowpower"});
}

/// Leaves a task that has not begun as it is, and closes any other: a mere search for the charger by
/// `close_search`, everything else by `close_cleaning`.
inline Node close_task(const Node& close_search = SubtreeCondition{"SearchChargeEnding"},
                       const Node& close_cleaning = SubtreeCondition{"AdvCleanComplete"})
{
    return FallbackStar(key_is("task_state", "init"), key_is("task_state", "precleaning"),
                        IfThenElseStar(key_is("task_state", "search_charge"), close_search, close_cleaning));
}

/// How a key names each kind of task.
struct TaskNames
{
    const char* whole_home;
    const char* zone;
    const char* area;
    const char* point;
};

/// Asks for the mode that takes up the task named under `key`.
inline Node take_up_task(const std::string& key, const TaskNames& names, const Node& otherwise)
{
    return IfThenElseStar(
        key_is(key, names.whole_home), ChangeRobotModeTo{.IsAimMode_Auto = "true"},
        IfThenElseStar(
            key_is(key, names.zone), ChangeRobotModeTo{.IsAimMode_DrawArea = "true"},
            IfThenElseStar(key_is(key, names.area), ChangeRobotModeTo{.IsAimMode_AreaSelect = "true"},
                           IfThenElseStar(key_is(key, names.point),
                                          ChangeRobotModeTo{.IsAimMode_PointSelect = "true"}, otherwise))));
}

/// The same for a task that has waited for charge.
inline Node take_up_charged_task(const Node& otherwise)
{
    return take_up_task("task_state", {"lowpower", "zone_lowpower", "area_lowpower", "point_lowpower"},
                        otherwise);
}

/// Passes when the user wants tasks to be taken up after a recharge. If not, a task that waits for it is
/// closed by the steps in `close`.
template <NodeLike... Steps>
Node break_point_wanted_or_close(Steps&&... close)
{
    return FallbackStar(DoesRobotBreakPointEnable{},
                        SequenceStar(task_waits_for_charge(), std::forward<Steps>(close)...));
}

// --- the dust box -------------------------------------------------------------------------------

/// Without its dust box the robot takes up no task.
inline Node dust_box_is_in()
{
    return IfThenElse(
        IsError_Box{},
        SequenceStar(absent("No_Box_Music"), SetBlackboard{"No_Box_Music", "true"}, AlwaysFailure{}),
        AlwaysSuccess{});
}

/// Passes, and so ends the search for a mode, when the dust box is missing. It is told by music once.
inline Node complain_of_missing_dust_box()
{
    return IfThenElseStar(
        IsError_Box{},
        optionally(absent("No_Box_Music"), music("34", "true"), SetBlackboard{"No_Box_Music", "true"}),
        AlwaysFailure{});
}

// --- services -----------------------------------------------------------------------------------

/// Asks a service by the flag `request` for what it shall write under `answer`, waits ten ticks at most, and
/// says what came, behind `label`.
inline Node ask_service_for(const std::string& request, const std::string& answer, const char* label)
{
    return optionally(set_flag(request), RetryUntilSuccesful(10, present(answer)), SaySomething{label},
                      SaySomething{"${" + answer + "}"});
}

// --- reports ------------------------------------------------------------------------------------

inline Node report_standing_still()
{
    return MotionActionAccount{.bb = "current_motion_type", .cur_mode = "Motion", .detail_type = "Stop"};
}

}  // namespace vemra::trees
