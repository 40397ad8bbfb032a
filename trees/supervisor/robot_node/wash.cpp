// The wash station: washing and drying the mop, its light, and its errors. The station of this product has
// none of it, and a switch at the head of each of its trees keeps them still.

#include "trees/idioms.h"
#include "trees/supervisor/robot_node/commands.h"
#include "trees/supervisor/robot_node/station.h"

namespace vemra::trees::robot_node {

namespace {

// --- the work of the station --------------------------------------------------------------------

// One wash of the mop. A wash that closes a task is the thorough one; any other goes by the water that the
// user has set.
Node wash_mop()
{
    return SequenceStar(SetWashStatus{"WASH_RUNNING"}, Delay{"50"}, SetWashStatus{"WASH_IDLE"},
                        IfThenElse(present("mop_clean_task_end"), SweepStationContorl{"102"},
                                   SweepStationContorl{"${station_water}"}),
                        SetBlackboard{"robot_status", "clean_washing"}, StopWashHandle{},
                        StationRobotLEDRecover{},
                        SetBlackboardWithType{.key = "mop_dirty", .type = "float", .value = "0"});
}

// Warm air for as long as a build option says.
Node run_dryer()
{
    return SequenceStar(
        SetWashStatus{"WASH_DRYING"}, set_flag("dry_procssing"), Delay{"200"}, music("107", "true"),
        IfThenElse(switched_off(), SetDryHandleTime{"360000"}, SetDryHandleTime{"540000"}), DryingHandle{},
        SetWashStatus{"WASH_IDLE"}, erase("dry_procssing"), StationRobotLEDRecover{});
}

// A wash begins only where none is under way.
Node wash_rests()
{
    return FallbackStar(DoesWashStatus{"WASH_IDLE"}, DoesWashStatus{"WASH_DONE"},
                        DoesWashStatus{"WASH_INTERRUPT"});
}

// Whoever asked for the wash has been served.
Node wash_is_over()
{
    return SequenceStar(erase("wash_handle"), erase("handle_wash_task"), erase("need_back_station"));
}

Node dry_mop()
{
    return SequenceStar(music("113", "true"), set_flag("uv_contrl"),
                        SetBlackboard{"robot_status", "clean_drying"}, run_dryer(), set_flag("wash_dry_end"),
                        SaySomething{"drying end..."});
}

Node task_low_on_power()
{
    return key_is_any("task_state", {"lowpower", "zone_lowpower", "area_lowpower", "point_lowpower"});
}

// --- the base of the station --------------------------------------------------------------------

// Without a cloth there is nothing to wash.
Node idle_without_cloth()
{
    return SequenceStar(Inverter(DoesTuobuInstall{}), Inverter(DoesWashStatus{"WASH_IDLE"}),
                        SetWashStatus{"WASH_IDLE"});
}

// What a wash has left in the dish is pumped out when the task was given up.
Node force_pump()
{
    return SubTree("ForcePump",
                   SequenceStar(present("force_start_sewage"), DoesRobotGetCharger{}, IsStationNormal{},
                                erase("force_start_sewage"), SewagePumpHandle{"200"}));
}

Node wake_for_station()
{
    return SequenceStar(present("station_awaken_flag"), erase("station_awaken_flag"),
                        SubtreeCondition{"WakeFromSleep"});
}

Node tell_on_charger()
{
    return SequenceStar(present("charger_audio"), erase("charger_audio"), music("18", "true"));
}

// The station's button breaks off its work, and the dirty water goes out of the dish.
Node station_button()
{
    return SequenceStar(key_is("station_button_work", "workpush"), erase("station_button_work"),
                        wash_or_dry_runs(), SaySomething{"wash pause..."}, interrupt_wash(), UvStop{},
                        music("11", "true"), SewagePumpHandle{"150"});
}

// A cover that is taken off holds up the wash until it is on again.
Node station_cover()
{
    return SequenceStar(DoesStationCoverDrop{}, DoesWashStatus{"WASH_RUNNING"}, SetWashStatus{"WASH_PAUSE"},
                        StopWashHandle{}, RetryUntilSuccesful("-1", DoesStationCoverOn{}));
}

// The user turned mopping on or off under way: the robot is to call at the station before it goes on.
Node mop_mode_changed()
{
    return SequenceStar(
        RobotCleanModeChanged{}, key_is_any("changed_mop_mode", {"1", "2", "3", "5"}),
        key_is_any("task_state", {"cleaning", "zone_cleaning", "area_cleaning", "point_cleaning"}),
        set_flag("need_back_mode_temp"), set_flag("need_back_mode_changed"));
}

Node uv_ordered()
{
    return SequenceStar(uv_order_handle{}, SetUvTime{"180000"}, set_flag("uv_contrl"));
}

// The ultraviolet light shines on the charger alone. A robot that was away meanwhile gets the rest of its
// time.
Node uv_light()
{
    return IfThenElse(
        present("uv_contrl"),
        IfThenElse(DoesRobotGetCharger{},
                   SequenceStar(IfThenElseStar(DoesUvLightStatus{"UV_PAUSE"}, UvLightHandle{},
                                               SequenceStar(SetUvTime{"180000"}, UvLightHandle{})),
                                UvStop{}, erase("uv_contrl")),
                   SequenceStar(UvStop{}, SetUvLightStatus{"UV_PAUSE"})),
        AlwaysSuccess{});
}

Node wash_without_mop()
{
    return SequenceStar(present("Qo_Wash_with_NoMop"), erase("Qo_Wash_with_NoMop"), music("156", "true"));
}

// A standby stops the dryer.
Node stop_drying()
{
    return SequenceStar(present("wash_dry_stop_flag"), erase("wash_dry_stop_flag"),
                        DoesWashStatus{"WASH_DRYING"}, SetWashStatus{"WASH_INTERRUPT"}, StopWashHandle{});
}

// A standby or an error broke off the drying: back on the charger it is done again from the start.
Node resume_drying()
{
    return SequenceStar(key_is_true("wash_dry_pause_falg"), DoesRobotGetCharger{},
                        in_any_mode({"ChargingMode", "SleepMode"}), IsStationNormal{}, DoesTuobuInstall{},
                        FallbackStar(DoesWashStatus{"WASH_DRYING"}, DoesWashStatus{"WASH_INTERRUPT"},
                                     DoesWashStatus{"WASH_PAUSE"}),
                        SaySomething{"nolp test enter dry handle"}, erase("wash_dry_pause_falg"),
                        run_dryer());
}

// --- a wash after cleaning ----------------------------------------------------------------------

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

Node task_goes_on_after_wash()
{
    return FallbackStar(present("mop_is_dirty"), present("breakpoint_wash"));
}

// --- a wash by hand -----------------------------------------------------------------------------

Node hand_back_button()
{
    return SetBlackboard{"station_button_value", "normal"};
}

Node wash_and_dry()
{
    return SubTree("wash_and_dry", SequenceStar(set_flag("handle_wash_task"), music("106", "true"),
                                                wash_mop(), wash_is_over(), dry_mop()));
}

// A short push: a wash, after which the task goes on as it stood.
Node short_push()
{
    return IfThenElse(
        DoesTuobuInstall{},
        SequenceStar(wash_rests(), IsStationNormal{}, set_flag("handle_wash_task"), music("106", "true"),
                     wash_mop(), wash_is_over(), erase("hand_wash_flag"), hand_back_button()),
        SequenceStar(SaySomething{"need put on mop shortpush..."}, set_flag("Qo_Wash_with_NoMop"),
                     wash_is_over(), hand_back_button()));
}

// A long push: a wash and a drying. A task that waits for its battery is over with it.
Node long_push()
{
    return IfThenElse(
        DoesTuobuInstall{},
        SequenceStar(wash_rests(), IsStationNormal{},
                     optionally(task_low_on_power(), SubtreeCondition{"AdvCleanComplete"},
                                SetBlackboard{"task_state", "init"}, SetBlackboard{"task_type", "Idle"}),
                     wash_and_dry(), erase("hand_wash_flag"), hand_back_button()),
        SequenceStar(SaySomething{"need put on mop longpush..."}, set_flag("Qo_Wash_with_NoMop"),
                     wash_is_over(), hand_back_button()));
}

// --- errors of the wash station -----------------------------------------------------------------

// The dish is told about once, when it is first missed.
Node dish_watch()
{
    return IfThenElse(station_error("WASHDISH_NOTINSTALLED"),
                      FallbackStar(present("washdish_not_install_flag"),
                                   SequenceStar(set_flag("washdish_not_install_flag"), music("104", "true"))),
                      erase("washdish_not_install_flag"));
}

// Too much water in the dish is pumped away before it becomes an error.
Node dish_level_watch()
{
    return SequenceStar(DoesHappenStationWarning{"OLO_HEALTH_STATUS_TYPE_WASHDISH_WATERLEVE"}, PumpHandle{});
}

Node wash_recovery()
{
    return SequenceStar(present("handle_wash_task"), RetryUntilSuccesful("-1", IsStationNormal{}),
                        key_is_true("StationNotNormal"), SetBlackboard{"StationNotNormal", "false"},
                        music("103", "true"));
}

Node wash_run_watch()
{
    return IfThenElse(Sequence(wash_or_dry_runs(), Inverter(IsStationNormal{})),
                      FallbackStar(key_is_true("StationNotNormal"), in_mode("WIFISetMode"),
                                   ForceFailure(erase("OrderAutoClean")), station_status_detect()),
                      AlwaysSuccess{});
}

// An error broke off a wash with dirty water in the dish.
Node sewage_work()
{
    return SubTree("SewageWork",
                   SequenceStar(present("station_err_sewage"), DoesRobotGetCharger{}, IsStationNormal{},
                                Inverter(station_error("DIRT_WATERTANK_NOTINSTALLED")),
                                erase("station_err_sewage"), SewagePumpHandle{"500"}));
}

Node restart_wash()
{
    return IfThenElse(Sequence(DoesRobotGetCharger{}, DoesWashStatus{"WASH_PAUSE"}, IsStationNormal{}),
                      SequenceStar(SetWashStatus{"WASH_RUNNING"}, Delay{"50"}, SetWashStatus{"WASH_IDLE"},
                                   SweepStationContorl{"${station_water}"}, StopWashHandle{}),
                      AlwaysFailure{});
}

}  // namespace

Node wash_or_dry_runs()
{
    return FallbackStar(DoesWashStatus{"WASH_RUNNING"}, DoesWashStatus{"WASH_DRYING"});
}

Node interrupt_wash()
{
    return SequenceStar(SetWashStatus{"WASH_INTERRUPT"}, StopWashHandle{}, StationRobotLEDRecover{});
}

// What the station needs of the robot beside a wash itself.
Node station_base_handle()
{
    return SubTree(
        "StationBaseHandle",
        Sequence(
            switched_off(),
            DoWhile(SequenceStar(DoesChargerGetOn{}, erase("need_back_mode_temp"), erase("handle_wash_task")),
                    idle_without_cloth(), force_pump(), wake_for_station(), tell_on_charger(),
                    station_button(), station_cover(), mop_mode_changed(), uv_ordered(), uv_light(),
                    wash_without_mop(), stop_drying(), resume_drying(), ForceRunning{})));
}

// Back from a cleaning with the cloth on: the mop is washed, and then either the task goes on, or the mop
// is dried.
Node auto_wash()
{
    return SubTree("AUTO_WASH",
                   Sequence(switched_off(), in_mode("ChargingMode"), DoesTuobuInstall{},
                            key_is("station_button_value", "normal"), key_is_true("clean_task_end"),
                            SequenceStar(present("wash_handle"), wash_rests(), IsStationNormal{},
                                         SaySomething{"clean done wash..."},
                                         SaySomething{"auto wash handle..."}, set_flag("handle_wash_task"),
                                         FallbackStar(task_goes_on_after_wash(), music("106", "true")),
                                         wash_mop(), wash_is_over(), erase("mop_clean_task_end"),
                                         IfThenElse(task_goes_on_after_wash(), wash_back_to_last_clean_mode(),
                                                    dry_mop()),
                                         SetBlackboard{"clean_task_end", "false"})));
}

// The station's own button asks for a wash, or for a wash and a drying.
Node manual_wash()
{
    return SubTree(
        "Manual_Wash",
        Sequence(switched_off(), DoesRobotGetCharger{}, in_any_mode({"ChargingMode", "SleepMode"}),
                 IfThenElse(key_is("station_button_value", "shortpush"), short_push(),
                            IfThenElse(key_is_any("station_button_value", {"longpush", "longpush_daley"}),
                                       long_push(), AlwaysFailure{}))));
}

Node wash_station_err_check()
{
    return SubTree("WashStationErrCheck",
                   Sequence(switched_off(), DoWhile(dish_watch(), dish_level_watch(), wash_recovery(),
                                                    wash_run_watch(), sewage_work(), restart_wash())));
}

Node wash_init_subtree()
{
    return SubTree(
        "WashInit_Subtree",
        ForceSuccess(Sequence(
            SetWashStatus{"WASH_IDLE"}, StopWashHandle{}, StationRobotLEDRecover{}, hand_back_button(),
            SetBlackboard{"StationNotNormal", "false"}, erase("wash_handle"), erase("handle_wash_task"),
            erase("hand_wash_flag"), erase("mop_clean_task_end"), erase("wash_dry_end"),
            erase("wash_dry_pause_falg"), erase("wash_dry_time_ticks"), erase("dry_procssing"),
            erase("station_err_sewage"), erase("washdish_not_install_flag"))));
}

// The robot has left the charger: no wash is under way any more.
Node wash_init()
{
    return SubTree("WashInit", SequenceStar(switched_off(), DoesChargerDrop{}, wash_init_subtree()));
}

}  // namespace vemra::trees::robot_node
