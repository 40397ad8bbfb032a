#include "trees/cleaning/shared.h"

namespace {

Node wash_is_due()
{
    return Sequence(DoesRobotGetCharger{},
                    FallbackStar(key::need_back_station.present(), key::breakpoint_wash_flag.present(),
                                 key::breakpoint_wash.present(), key::task_state.is("init"),
                                 key::task_state.is("precleaning")),
                    DoesTuobuInstall{});
}

Node wash()
{
    return SequenceStar(
        SaySomething{"first clean wash..."}, ResetMapCleanData{},

        erase(key::wash_handle, key::wash_dry_time_ticks, key::wash_dry_pause_falg, key::dry_procssing,
              key::station_err_sewage),
        key::station_button_value.set("normal"), StopWashHandle{},

        key::handle_wash_task.flag(), key::need_to_standby.flag(), SetWashStatus{"WASH_RUNNING"}, Delay{10},
        key::StationNotNormal.set("false"), key::not_change_mode.flag(), play(106),
        key::err_recover_flag.set("true"), key::robot_status.set("clean_washing"), Delay{5},

        SetWashStatus{"WASH_IDLE"}, SweepStationContorl{"101"}, Delay{50}, SetWashStatus{"WASH_IDLE"},
        StopWashHandle{}, key::mop_dirty.set_typed(0),

        erase(key::handle_wash_task, key::need_to_standby, key::not_change_mode, key::err_recover_flag),
        SaySomething{"stop wash handle..."});
}

// A robot that was taken off in the middle of the wash does not clean with a dirty cloth.
Node no_wash()
{
    return SequenceStar(erase(key::breakpoint_wash_flag, key::breakpoint_wash),
                        when(Sequence(DoesTuobuInstall{}, key::need_to_standby.present(),
                                      key::task_state.is_any({"init", "precleaning"})),
                             go_to_standby()),
                        key::need_to_standby.erase());
}

}  // namespace

// The station washes the cloth before a task begins. Switched off in this product.
TREE(WashBeforeClean)
{
    return when(switched_off(), IfThenElseStar(wash_is_due(), wash(), no_wash()));
}
