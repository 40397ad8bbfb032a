#include "trees/conditions.h"

namespace {

// The user wants no more of the task, whatever its state.
Node close_for_standby()
{
    return optionally(
        present("ForceStandby"), erase("ForceStandby"),
        IfThenElseStar(
            key_is_any("task_state", {"init", "precleaning"}),
            SequenceStar(
                SetBlackboard{"task_state", "init"}, SetBlackboard{"task_type", "Idle"},
                when(present("clear_map_flag"), SetBlackboard{"CleanCompleteWithoutCleaningLog", "true"},
                     SubtreeCondition{"SearchChargeEnding"})),
            IfThenElseStar(
                key_is("task_state", "search_charge"),
                SequenceStar(SaySomething{"StopModePreset.xml wifi 0"},
                             SubtreeCondition{"SearchChargeEnding"}, SetBlackboard{"task_type", "Idle"}),
                SequenceStar(SaySomething{"StopModePreset.xml wifi 1"}, SubtreeCondition{"AdvCleanComplete"},
                             SetBlackboard{"task_type", "Idle"}))));
}

// A spot cleaning does not survive a pause.
Node close_spot_cleaning()
{
    return optionally(any_of({key_is("task_state", "part_cleaning"), key_is("task_state", "part_lowpower"),
                              present("ForceStandby")}),
                      when(present("ForceStandby"), erase("ForceStandby")),
                      SaySomething{"StopModePreset.xml wifi 2"}, SubtreeCondition{"AdvCleanComplete"},
                      SetBlackboard{"task_type", "Idle"});
}

// A task on its way to be recharged, stopped before it got there.
Node mark_as_paused(const char* state, const char* paused_state)
{
    return optionally(key_is("task_state", state), Inverter(in_mode("ChargingMode")),
                      SetBlackboard{"task_state", paused_state});
}

}  // namespace

// Settles a half-finished task before the robot pauses, stands by, charges or reports an error: a completed
// one is forgotten, an unwanted one is closed, and one on its way to the charger is marked as paused.
TREE(StopModePreset)
{
    return SequenceStar(ForceSuccess(erase("just_damode_reuse_failed")),

                        optionally(key_is("task_state", "complete"), SetBlackboard{"task_state", "init"},
                                   SetBlackboard{"task_type", "Idle"}),

                        close_for_standby(), close_spot_cleaning(),

                        mark_as_paused("lowpower", "lowpower_pause"),
                        mark_as_paused("zone_lowpower", "zone_lowpower_pause"),
                        mark_as_paused("area_lowpower", "area_lowpower_pause"),
                        mark_as_paused("point_lowpower", "point_lowpower_pause"));
}
