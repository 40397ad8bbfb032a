// Washing and drying the mop: by itself after a cleaning, and by the station's own button. The station of
// this product has none of it, and a switch at the head of each tree keeps it still.

#include "trees/supervisor/robot_node/wash.h"

#include "trees/idioms.h"
#include "trees/supervisor/robot_node/commands.h"
#include "trees/supervisor/robot_node/station.h"

namespace vemra::trees::robot_node {

namespace {

// What earlier washes and dryings have left behind, for the steps here and for the displays of app and
// station.
Node forget_earlier_washes()
{
    return SequenceStar(erase("wash_handle"), erase("wash_dry_time_ticks"), erase("wash_dry_pause_falg"),
                        erase("wash_dry_end"), erase("dry_procssing"), erase("need_dry_flag"),
                        erase("station_err_sewage"), erase("mop_wash_end"), erase("mop_task_done"),
                        erase("wash_task_end"), erase("station_show_clean_complete"));
}

Node task_low_on_power()
{
    return key_is_any("task_state", {"lowpower", "zone_lowpower", "area_lowpower", "point_lowpower"});
}

// The wash was an interruption: the task wanted a clean mop, or power, and is not done.
Node task_goes_on_after_wash()
{
    return FallbackStar(present("mop_is_dirty"), present("breakpoint_wash"));
}

// The task that the wash has interrupted is taken up again in its own mode.
Node wash_back_to_last_clean_mode()
{
    return SubTree(
        "WashBackToLastCleanMode",
        FallbackStar(
            SequenceStar(open_or_starting({"cleaning", "lowpower", "lowpower_pause"}, "AutoClean"),
                         ChangeRobotModeTo{.IsAimMode_Auto = "true"}),
            SequenceStar(
                open_or_starting({"zone_cleaning", "zone_lowpower", "zone_lowpower_pause"}, "ZoneClean"),
                ChangeRobotModeTo{.IsAimMode_DrawArea = "true"}),
            SequenceStar(
                open_or_starting({"area_cleaning", "area_lowpower", "area_lowpower_pause"}, "AreaClean"),
                ChangeRobotModeTo{.IsAimMode_AreaSelect = "true"}),
            SequenceStar(
                open_or_starting({"point_cleaning", "point_lowpower", "point_lowpower_pause"}, "PointClean"),
                ChangeRobotModeTo{.IsAimMode_PointSelect = "true"}),
            SaySomething{"none task..."}));
}

// --- the station's button -----------------------------------------------------------------------

Node button_is_barred()
{
    return SequenceStar(set_flag("Child_Lock_Flag"), hand_back_button());
}

Node ask_for_mop(const char* message)
{
    return SequenceStar(SaySomething{message}, set_flag("Qo_Wash_with_NoMop"), wash_is_over(),
                        erase("hand_wash_flag"), hand_back_button());
}

// A mop whose drying was broken off by the button is clean already.
Node wash_and_dry()
{
    return SubTree(
        "wash_and_dry",
        SequenceStar(IfThenElseStar(present("need_dry_flag"), AlwaysSuccess{},
                                    SequenceStar(music("106", "true"), wash_mop(), wash_is_over())),
                     dry_mop()));
}

// A short push: a wash, after which an interrupted task goes on.
Node short_push()
{
    return IfThenElse(DoesTuobuInstall{},
                      SequenceStar(wash_rests(), IsStationNormal{}, music("106", "true"), wash_mop(),
                                   wash_is_over(), erase("hand_wash_flag"), hand_back_button(),
                                   IfThenElseStar(task_goes_on_after_wash(), wash_back_to_last_clean_mode(),
                                                  AlwaysSuccess{})),
                      ask_for_mop("need put on mop shortpush..."));
}

// A long push: a wash and a drying. A task that waits for its battery is over with it.
Node long_push()
{
    return IfThenElse(
        DoesTuobuInstall{},
        SequenceStar(wash_rests(), IsStationNormal{},
                     optionally(task_low_on_power(), SubtreeCondition{"AdvCleanComplete"},
                                SetBlackboard{"task_state", "init"}, SetBlackboard{"task_type", "Idle"},
                                erase("mop_is_dirty"), erase("breakpoint_wash"),
                                erase("breakpoint_wash_flag"), set_flag("mop_task_done")),
                     wash_and_dry(), erase("hand_wash_flag"), hand_back_button()),
        ask_for_mop("need put on mop longpush..."));
}

}  // namespace

// --- what all washes share ----------------------------------------------------------------------

Node wash_mop()
{
    return SequenceStar(forget_earlier_washes(), set_flag("handle_wash_task"),
                        SetBlackboard{"StationNotNormal", "false"}, set_flag("not_change_mode"),

                        SetWashStatus{"WASH_RUNNING"}, Delay{"50"}, SetWashStatus{"WASH_IDLE"},
                        IfThenElse(present("mop_clean_task_end"), SweepStationContorl{"102"},
                                   SweepStationContorl{"${station_water}"}),
                        SetBlackboard{"robot_status", "clean_washing"}, StopWashHandle{},

                        StationRobotLEDRecover{},
                        SetBlackboardWithType{.key = "mop_dirty", .type = "float", .value = "0"},
                        erase("not_change_mode"), set_flag("mop_wash_end"));
}

Node run_dryer()
{
    return SequenceStar(
        SetWashStatus{"WASH_DRYING"}, set_flag("dry_procssing"), Delay{"200"}, music("107", "true"),
        IfThenElse(switched_off(), SetDryHandleTime{"360000"}, SetDryHandleTime{"540000"}), DryingHandle{},
        SetWashStatus{"WASH_IDLE"}, erase("dry_procssing"), StationRobotLEDRecover{});
}

Node dry_mop()
{
    return IfThenElseStar(
        DoesTuobuInstall{},
        SequenceStar(music("113", "true"), set_flag("uv_contrl"),
                     SetBlackboard{"robot_status", "clean_drying"}, run_dryer(), erase("need_dry_flag"),
                     set_flag("wash_dry_end"), SaySomething{"drying end..."}),
        erase("need_dry_flag"));
}

Node wash_rests()
{
    return FallbackStar(DoesWashStatus{"WASH_IDLE"}, DoesWashStatus{"WASH_DONE"},
                        DoesWashStatus{"WASH_INTERRUPT"});
}

Node wash_is_over()
{
    return SequenceStar(erase("wash_handle"), erase("handle_wash_task"), erase("need_back_station"));
}

Node hand_back_button()
{
    return SetBlackboard{"station_button_value", "normal"};
}

// Back from a cleaning with the cloth on: the mop is washed, and then either the task goes on, or the mop
// is dried.
Node auto_wash()
{
    return SubTree(
        "AUTO_WASH",
        Sequence(switched_off(), in_mode("ChargingMode"), DoesTuobuInstall{},
                 key_is("station_button_value", "normal"), key_is_true("clean_task_end"),
                 SequenceStar(present("wash_handle"), wash_rests(), IsStationNormal{},
                              SaySomething{"clean done wash..."}, SaySomething{"auto wash handle..."},
                              FallbackStar(task_goes_on_after_wash(), music("106", "true")), wash_mop(),
                              wash_is_over(), erase("mop_clean_task_end"),
                              IfThenElseStar(task_goes_on_after_wash(), wash_back_to_last_clean_mode(),
                                             SequenceStar(dry_mop(), set_flag("wash_task_end"),
                                                          set_flag("station_show_clean_complete"))),
                              SetBlackboard{"clean_task_end", "false"})));
}

// The station's own button asks for a wash, or for a wash and a drying. Under the child lock it does nothing.
Node manual_wash()
{
    return SubTree("Manual_Wash",
                   Sequence(switched_off(), DoesRobotGetCharger{}, in_any_mode({"ChargingMode", "SleepMode"}),
                            key_is_any("station_button_value", {"shortpush", "longpush", "longpush_daley"}),
                            IfThenElse(child_lock_is_on(), button_is_barred(),
                                       IfThenElse(key_is("station_button_value", "shortpush"), short_push(),
                                                  long_push()))));
}

}  // namespace vemra::trees::robot_node
