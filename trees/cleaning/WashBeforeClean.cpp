#include "trees/cleaning/shared.h"

namespace {

Node wash_is_due()
{
    return SequenceStar(DoesRobotGetCharger{},
                        FallbackStar(present("need_back_station"), present("breakpoint_wash_flag"),
                                     present("breakpoint_wash"), key_is("task_state", "init"),
                                     key_is("task_state", "precleaning")),
                        DoesTuobuInstall{});
}

Node wash()
{
    return SequenceStar(
        SaySomething{"first clean wash..."}, ResetMapCleanData{},

        erase("wash_handle"), erase("wash_dry_time_ticks"), erase("wash_dry_pause_falg"),
        erase("dry_procssing"), erase("station_err_sewage"), SetBlackboard{"station_button_value", "normal"},
        StopWashHandle{},

        set_flag("handle_wash_task"), set_flag("need_to_standby"), SetWashStatus{"WASH_RUNNING"}, Delay{10},
        SetBlackboard{"StationNotNormal", "false"}, set_flag("not_change_mode"), play("106"),
        SetBlackboard{"err_recover_flag", "true"}, SetBlackboard{"robot_status", "clean_washing"}, Delay{5},

        SetWashStatus{"WASH_IDLE"}, SweepStationContorl{"101"}, Delay{50}, SetWashStatus{"WASH_IDLE"},
        StopWashHandle{}, SetBlackboardWithType{"mop_dirty", "float", "0"},

        erase("handle_wash_task"), erase("need_to_standby"), erase("not_change_mode"),
        erase("err_recover_flag"), SaySomething{"stop wash handle..."});
}

// A robot that was taken off in the middle of the wash does not clean with a dirty cloth.
Node no_wash()
{
    return SequenceStar(erase("breakpoint_wash_flag"), erase("breakpoint_wash"),
                        when(SequenceStar(DoesTuobuInstall{}, present("need_to_standby"),
                                          key_is_any("task_state", {"init", "precleaning"})),
                             go_to_standby()),
                        erase("need_to_standby"));
}

}  // namespace

// The station washes the cloth before a task begins. Switched off in this product.
TREE(WashBeforeClean)
{
    return IfThenElseStar(switched_off(), IfThenElseStar(wash_is_due(), wash(), no_wash()), AlwaysSuccess{});
}
