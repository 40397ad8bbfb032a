#pragma once

/// What the modes have in common that clean less than the whole home.

#include "trees/cleaning/cleaning_mode.h"

namespace vemra::trees {

/// A task on a lost map becomes a clean of the whole home, without a sound.
inline Node clean_the_home_instead()
{
    return ForceFailure(
        SequenceStar(queue(31), SubtreeCondition{"AdvCleanComplete"}, key::WorkStartMusic_shield.set("true"),
                     key::moved_during_pause.set("false"), key::task_state.set("init"),
                     key::just_damode_reuse_failed.set("true"), ChangeRobotModeTo{.IsAimMode_Auto = "true"}));
}

/// The station calls the robot home in between.
inline Node go_home_when_called(const char* continue_work)
{
    return when(key::need_back_station.present(), SaySomething{"need back to home..."},
                key::continue_work.set(continue_work), go_home());
}

inline Node wash_by_area()
{
    return Sequence(uses_mop(), key::wash_mop_mode.present(), BoolMatch{"${wash_mop_mode} > 0", "true"});
}

inline Node account_washes_by_area()
{
    return IfThenElseStar(wash_by_area(),
                          AlwaysSuccess{.area_reset = "${wash_mop_mode}", .ticks = "999999999"},
                          Delay{999999999});
}

inline Node turn_once()
{
    return Sequence(SubtreeCondition{"EscapeCoat"}, ActionDecorator(SubtreeCondition{"Back2cm"}),
                    SetMapDrawMode{.draw_mode = "None"}, turn_half_round());
}

/// A task that did not reach all it should ends without a sound.
inline Nodes end_selected_task()
{
    return row(
        restore_clean_mode(),
        ForceSuccess(FallbackStar(
            key::have_trapped_type.present(),
            SequenceStar(key::prompt_zone_not_reached.present(), key::have_trapped_type.flag()), play(12))),
        Delay{5}, go_home());
}

inline Node clean_drawn()
{
    return SequenceStar(key::is_draw_area_cleaning.set("true"), restart_after_error(),
                        SubtreeCondition{"CleanSelectedAreas.xml"});
}

/// Where a selected task stopped for low power.
inline Nodes note_place_of_low_power()
{
    return row(key::current_coord.copy_to(key::lowpower_coord_save));
}

}  // namespace vemra::trees
