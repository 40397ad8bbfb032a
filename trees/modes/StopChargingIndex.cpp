#include "trees/conditions.h"
#include "trees/modes/shared.h"

namespace {

// --- arrival ------------------------------------------------------------------------------------

// A wake-up out of a sleep on the charger keeps the count of quiet time; any other start of charging begins
// it anew.
Node restart_quiet_count()
{
    return ForceSuccess(
        Sequence(Inverter(SequenceStar(present("annoy_active_tick_flag"), erase("annoy_active_tick_flag"),
                                       SaySomething{"reset annoy_active_tick avoid! sleep enter!"})),
                 erase("annoy_active_tick"), SaySomething{"reset annoy_active_tick"},
                 erase("AnnoyModeActiveFlag"), SaySomething{"reset AnnoyModeActiveFlag"}));
}

Node back_to(const char* paused_state, const char* state)
{
    return SequenceStar(key_is("task_state", paused_state), SetBlackboard{"task_state", state});
}

// A task that was paused on its way to be recharged has reached the charger after all and waits for charge
// again, provided that nobody has moved the robot. A robot that was carried to the charger has lost its task.
Node decide_on_paused_task()
{
    return ForceSuccess(FallbackStar(
        SequenceStar(present("breakpoint_getcharger"), Inverter(key_is_true("moved_during_pause")),
                     FallbackStar(back_to("lowpower_pause", "lowpower"),
                                  back_to("zone_lowpower_pause", "zone_lowpower"),
                                  back_to("area_lowpower_pause", "area_lowpower"),
                                  back_to("point_lowpower_pause", "point_lowpower"))),
        key_is("LastRobotMode", "14"),
        SequenceStar(key_is_true("moved_during_pause"),
                     close_task(SequenceStar(SaySomething{"StopChargingIndex.xml wifi 0"},
                                             SubtreeCondition{"SearchChargeEnding"}),
                                SequenceStar(SaySomething{"StopChargingIndex.xml wifi 1"},
                                             SetBlackboard{"stop_charging_flag", "1"},
                                             SubtreeCondition{"AdvCleanComplete"})),
                     SetBlackboard{"task_type", "Idle"})));
}

// --- taking up the task -------------------------------------------------------------------------

// Goes back to work as soon as the charge suffices for the rest of the task. Nothing is taken up for a dirty
// mop, without the dust box, in quiet hours, or against the user's setting.
Node resume_check()
{
    return Sequence(
        absent("mop_is_dirty"),

        break_point_wanted_or_close(
            SaySomething{"StopChargingIndex.xml wifi 2"}, SetBlackboard{"stop_charging_flag", "1"},
            SubtreeCondition{"AdvCleanComplete"}, SetBlackboard{"task_state", "init"},
            SetBlackboard{"task_type", "Idle"}, ChargingReloc{},
            IfThenElseStar(SequenceStar(switched_off(), DoesTuobuInstall{}),
                           SaySomething{"lowpower but not break point, tuobu install so wash and dry"},
                           SaySomething{"lowpower but not break point,end task."})),
        task_waits_for_charge(),

        BreakPointElecCalculate{}, RobotPowerGetHigherThan{"${Elec_BreakPoint}"},
        set_flag("breakpoint_wash_flag"),

        dust_box_is_in(), IfThenElse(switched_off(), IsStationNormal{}, AlwaysSuccess{}),

        FallbackStar(SequenceStar(IsRobotInAnnoyMode{}, absent("mop_is_dirty")),
                     complain_of_missing_dust_box(), ForceFailure(SetBlackboard{"ElecCalculate", "false"}),
                     ForceFailure(SetBlackboardWithType{.key = "mop_dirty", .type = "float", .value = "0"}),
                     take_up_charged_task(ChangeRobotModeTo{.IsAimMode_Auto = "true"})));
}

// --- on the charger -----------------------------------------------------------------------------

// After 30000 ticks on the charger the robot may sleep through a loss of contact in quiet hours.
Node count_quiet_time()
{
    return SequenceStar(
        IfThenElseStar(present("annoy_active_tick"),
                       IntAdd{.int_a = "${annoy_active_tick}", .int_b = "1", .out_sum = "annoy_active_tick"},
                       SetBlackboard{"annoy_active_tick", "1"}),
        IsAGreaterThanBInt{.A = "${annoy_active_tick}", .B = "30000"}, erase("annoy_active_tick"),
        SaySomething{"annoy mode active,ticks 30000 now!"}, SaySomething{"annoy tick end!"},
        SetBlackboard{"AnnoyModeActiveFlag", "true"});
}

// A station in trouble shows it in orange, whatever the charge.
Node station_light(const char* when_normal)
{
    return IfThenElseStar(IsStationNormal{}, SetDustLight{when_normal},
                          SetDustLight{"STATTON_LED_OrangeBreath"});
}

Node light_by_charge(const char* enough_to_work, const char* too_little)
{
    return IfThenElseStar(RobotPowerGetHigherThan{"16"}, Led_Mode_Set{enough_to_work},
                          Led_Mode_Set{too_little});
}

// A full battery is shown for a while, then the robot goes to sleep.
Node show_charge()
{
    return IfThenElseStar(
        RobotPowerGetHigherThan{"100"},
        SequenceStar(Led_Mode_Set{"BUTTON_LED_ChargeDone_NoTask"},
                     SetBlackboard{"robot_status", "clean_charge_done"}, station_light("STATTON_LED_WhiteOn"),
                     Delay{500}, SaySomething{"error!"}, GetWheelsDropStateBeforeSleep{},
                     ChangeRobotModeTo{.IsAimMode_Sleep = "true"}),
        SequenceStar(
            station_light("STATTON_LED_WhiteBreath"),
            IfThenElseStar(task_waits_for_charge(),
                           light_by_charge("BUTTON_LED_Charging_ContinueWork_Able",
                                           "BUTTON_LED_Charging_ContinueWork_Unable"),
                           light_by_charge("BUTTON_LED_Charging_NoTask_Workable",
                                           "BUTTON_LED_Charging_NoTask_UnWorkable")),
            IfThenElseStar(RobotPowerGetHigherThan{"16"}, SetBlackboard{"robot_status", "clean_charging"},
                           SetBlackboard{"robot_status", "clean_lowp_charging"})));
}

// A task that only came by to visit the station goes on.
Node station_charge_handle()
{
    return SubTree(
        "StationChargeHandle",
        SequenceStar(
            present("need_back_station"), Delay{100}, trace("task_type work -> ${task_type}"),
            take_up_task("task_type", {"AutoClean", "ZoneClean", "AreaClean", "PointClean"}, AlwaysSuccess{}),
            SetBlackboard{"continue_work", "clean_none"}, SaySomething{"work to station to work..."}));
}

// Contacts that do not charge are approached anew.
Node rest_or_dock_again()
{
    return IfThenElse(
        DoesGetRobotChargeWarnning{},
        SequenceStar(SaySomething{"Robot Charge Error!"}, SetBlackboard{"robot_status", "clean_charge_err"},
                     set_flag("DisableErrMusic_Box"), ChangeRobotModeTo{.IsAimMode_BackHome = "true"}),
        StopModeDeal{});
}

Node on_the_charger()
{
    return DoWhile(count_quiet_time(), show_charge(), SubtreeCondition{"ChargingJumpToSleepMode"},
                   RobotAnnoyModeLEDCtl{},
                   IfThenElseStar(DoesIMUDetectMoveLast2S{}, SetBlackboard{"IMU_Changed", "true"},
                                  SetBlackboard{"IMU_Changed", "false"}),
                   station_charge_handle(), rest_or_dock_again());
}

// --- off the charger ----------------------------------------------------------------------------

// The robot goes home by itself, but in quiet hours it stays asleep if it has charged for long enough.
Node decide_where_to_go()
{
    return IfThenElseStar(
        IsRobotInAnnoyMode{},
        IfThenElseStar(key_is_true("AnnoyModeActiveFlag"),
                       SequenceStar(erase("AnnoyModeActiveFlag"), SaySomething{"enter in annoymode!"},
                                    ChangeRobotModeTo{.IsAimMode_Sleep = "true"}),
                       SequenceStar(SaySomething{"annoy mode but not match 30000ticks"},
                                    SaySomething{"${annoy_active_tick}"},
                                    ChangeRobotModeTo{.IsAimMode_BackHome = "true"})),
        ChangeRobotModeTo{.IsAimMode_BackHome = "true"});
}

// Lifted up, the robot stands by. Knocked off, which it knows by the dock's signal or by the jolt, it goes
// home. Otherwise it was taken off on purpose.
Node off_the_charger()
{
    return SequenceStar(
        DoWhile(SequenceStar(DoesWheelsDrop{}, set_flag("dirty_music_judge"),
                             ChangeRobotModeTo{.IsAimMode_Standby = "true"}),
                Delay{250}),
        IfThenElseStar(any_of({DoesRobotGetChargerSig{}, key_is_true("IMU_Changed")}),
                       SequenceStar(SetBlackboard{"kicked", "true"},
                                    SetBlackboard{"DisableErrMusic_Box", "value"}, decide_where_to_go()),
                       ChangeRobotModeTo{.IsAimMode_Standby = "true"}));
}

}  // namespace

// Charging: the robot stands on the charger. It settles what became of its task, takes it up again when it
// has the charge for it, and watches that it stays on the contacts.
TREE(StopChargingIndex)
{
    return SequenceStar(
        NeedInitialStopMode{}, SetCleanSystem{.Brush = "1", .Fan = "0", .Pump = "0", .SideBrush = "0"},
        Stop{}, Delay{5}, SlamPause{},

        erase("robot_standby_flag"), erase("need_back_mode_changed"), erase("need_back_mode_temp"),
        erase("reuse_relocalize_just_in_init"), SetBlackboard{"robot_moved", "false"},
        SetBlackboard{"kicked", "false"}, restart_quiet_count(),

        report_standing_still(), set_flag("dust_handle"), SetBlackboard{"record_charge_pose_start", "false"},
        set_flag("wash_handle"), SubtreeCondition{"StopModePreset"},

        light_by_charge("BUTTON_LED_Charging_NoTask_Workable", "BUTTON_LED_Charging_NoTask_UnWorkable"),

        // What became of the task.
        when(SequenceStar(Inverter(DoesTuobuInstall{}), key_is("task_state", "precleaning")),
             SetBlackboard{"task_state", "init"}, SetBlackboard{"task_type", "Idle"}),
        when(key_is("task_state", "search_charge"), SaySomething{"StopChargingIndex.xml wifi -1"},
             SubtreeCondition{"SearchChargeEnding"}),
        decide_on_paused_task(), when(task_waits_for_charge(), set_flag("breakpoint_getcharger")),

        SetLastRobotMode{}, set_flag("virtual_moved_during_pause"), SetBlackboard{"search_charger_time", "0"},

        // The place of the charger is a fix for the map, but a task that goes on keeps its own.
        trace("StopChargingIndex before ChargingReloc task_state = ${task_state}"),
        unless(task_waits_for_charge(), ChargingReloc{}), erase("No_Box_Music"),

        DoWhile(resume_check(), IfThenElse(DoesRobotGetCharger{}, on_the_charger(), off_the_charger())));
}
