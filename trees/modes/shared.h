#pragma once

/// What the modes in which the robot does not clean, and the small trees beside them, have in common.

#include <utility>

#include "trees/tasks.h"

namespace vemra::trees {

// --- the open task ------------------------------------------------------------------------------

/// Leaves a task that has not begun as it is, and closes any other: a mere search for the charger by
/// `close_search`, everything else by `close_cleaning`.
inline Node close_task(const Node& close_search = SubtreeCondition{"SearchChargeEnding"},
                       const Node& close_cleaning = SubtreeCondition{"AdvCleanComplete"})
{
    return FallbackStar(key::task_state.is("init"), key::task_state.is("precleaning"),
                        IfThenElseStar(key::task_state.is("search_charge"), close_search, close_cleaning));
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
    return IfThenElse(IsError_Box{}, fail_after(key::No_Box_Music.absent(), key::No_Box_Music.set("true")),
                      AlwaysSuccess{});
}

/// Passes, and so ends the search for a mode, when the dust box is missing. It is told by music once.
inline Node complain_of_missing_dust_box()
{
    return IfThenElseStar(IsError_Box{},
                          optionally(key::No_Box_Music.absent(), play(34), key::No_Box_Music.set("true")),
                          AlwaysFailure{});
}

// --- services -----------------------------------------------------------------------------------

/// Asks a service by the flag `request` for what it shall write under `answer`, waits ten ticks at most, and
/// says what came, behind `label`.
inline Node ask_service_for(const Key& request, const Key& answer, const char* label)
{
    return optionally(request.flag(), RetryUntilSuccesful(10, answer.present()), SaySomething{label},
                      SaySomething{answer.value()});
}

// --- reports ------------------------------------------------------------------------------------

inline Node report_standing_still()
{
    return MotionActionAccount{.bb = "current_motion_type", .cur_mode = "Motion", .detail_type = "Stop"};
}

}  // namespace vemra::trees
