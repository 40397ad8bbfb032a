#include "trees/idioms.h"

namespace {

// The user wants no more of the task, whatever its state.
Node close_for_standby()
{
    return optionally(
        key::ForceStandby.take(),
        choose({{key::task_state.is_any({"init", "precleaning"}),
                 SequenceStar(
                     key::task_state.set("init"), key::task_type.set("Idle"),
                     when(key::clear_map_flag.present(), key::CleanCompleteWithoutCleaningLog.set("true"),
                          SubtreeCondition{"SearchChargeEnding"}))},
                {key::task_state.is("search_charge"),
                 SequenceStar(SaySomething{"StopModePreset.xml wifi 0"},
                              SubtreeCondition{"SearchChargeEnding"}, key::task_type.set("Idle"))}},
               SequenceStar(SaySomething{"StopModePreset.xml wifi 1"}, SubtreeCondition{"AdvCleanComplete"},
                            key::task_type.set("Idle"))));
}

// A spot cleaning does not survive a pause.
Node close_spot_cleaning()
{
    return optionally(any_of({key::task_state.is("part_cleaning"), key::task_state.is("part_lowpower"),
                              key::ForceStandby.present()}),
                      when(key::ForceStandby.present(), key::ForceStandby.erase()),
                      SaySomething{"StopModePreset.xml wifi 2"}, SubtreeCondition{"AdvCleanComplete"},
                      key::task_type.set("Idle"));
}

// A task on its way to be recharged, stopped before it got there.
Node mark_as_paused(const char* state, const char* paused_state)
{
    return optionally(key::task_state.is(state), Inverter(in_mode("ChargingMode")),
                      key::task_state.set(paused_state));
}

}  // namespace

// Settles a half-finished task before the robot pauses, stands by, charges or reports an error: a completed
// one is forgotten, an unwanted one is closed, and one on its way to the charger is marked as paused.
TREE(StopModePreset)
{
    return SequenceStar(
        ForceSuccess(key::just_damode_reuse_failed.erase()),

        optionally(key::task_state.is("complete"), key::task_state.set("init"), key::task_type.set("Idle")),

        close_for_standby(), close_spot_cleaning(),

        mark_as_paused("lowpower", "lowpower_pause"), mark_as_paused("zone_lowpower", "zone_lowpower_pause"),
        mark_as_paused("area_lowpower", "area_lowpower_pause"),
        mark_as_paused("point_lowpower", "point_lowpower_pause"));
}
