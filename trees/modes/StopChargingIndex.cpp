#include "trees/idioms.h"
#include "trees/modes/shared.h"

namespace {

// --- arrival ------------------------------------------------------------------------------------

// A wake-up out of a sleep on the charger keeps the count of quiet time; any other start of charging begins
// it anew.
Node restart_quiet_count()
{
    return ForceSuccess(
        Sequence(Inverter(SequenceStar(key::annoy_active_tick_flag.take(),
                                       SaySomething{"reset annoy_active_tick avoid! sleep enter!"})),
                 key::annoy_active_tick.erase(), SaySomething{"reset annoy_active_tick"},
                 key::AnnoyModeActiveFlag.erase(), SaySomething{"reset AnnoyModeActiveFlag"}));
}

Node back_to(const char* paused_state, const char* state)
{
    return SequenceStar(key::task_state.is(paused_state), key::task_state.set(state));
}

// A task that was paused on its way to be recharged has reached the charger after all and waits for charge
// again, provided that nobody has moved the robot. A robot that was carried to the charger has lost its task.
Node decide_on_paused_task()
{
    return ForceSuccess(FallbackStar(
        SequenceStar(key::breakpoint_getcharger.present(), Inverter(key::moved_during_pause.is_true()),
                     FallbackStar(back_to("lowpower_pause", "lowpower"),
                                  back_to("zone_lowpower_pause", "zone_lowpower"),
                                  back_to("area_lowpower_pause", "area_lowpower"),
                                  back_to("point_lowpower_pause", "point_lowpower"))),
        Sequence(key::LastRobotMode.present(), key::LastRobotMode.is("14")),
        SequenceStar(
            key::moved_during_pause.is_true(),
            close_task(SequenceStar(SaySomething{"StopChargingIndex.xml wifi 0"},
                                    SubtreeCondition{"SearchChargeEnding"}),
                       SequenceStar(SaySomething{"StopChargingIndex.xml wifi 1"},
                                    key::stop_charging_flag.set(1), SubtreeCondition{"AdvCleanComplete"})),
            key::task_type.set("Idle"))));
}

// --- taking up the task -------------------------------------------------------------------------

// Goes back to work as soon as the charge suffices for the rest of the task. Nothing is taken up for a dirty
// mop, without the dust box, in quiet hours, or against the user's setting.
Node resume_check()
{
    return Sequence(
        key::mop_is_dirty.absent(),

        break_point_wanted_or_close(
            SaySomething{"StopChargingIndex.xml wifi 2"}, key::stop_charging_flag.set(1),
            SubtreeCondition{"AdvCleanComplete"}, key::task_state.set("init"), key::task_type.set("Idle"),
            ChargingReloc{},
            IfThenElseStar(Sequence(switched_off(), DoesTuobuInstall{}),
                           SaySomething{"lowpower but not break point, tuobu install so wash and dry"},
                           SaySomething{"lowpower but not break point,end task."})),
        task_waits_for_charge(),

        BreakPointElecCalculate{}, RobotPowerGetHigherThan{"${Elec_BreakPoint}"},
        key::breakpoint_wash_flag.flag(),

        dust_box_is_in(), IfThenElse(switched_off(), IsStationNormal{}, AlwaysSuccess{}),

        FallbackStar(Sequence(IsRobotInAnnoyMode{}, key::mop_is_dirty.absent()),
                     complain_of_missing_dust_box(), ForceFailure(key::ElecCalculate.set("false")),
                     ForceFailure(key::mop_dirty.set_typed(0)),
                     take_up_charged_task(ChangeRobotModeTo{.IsAimMode_Auto = "true"})));
}

// --- on the charger -----------------------------------------------------------------------------

// After 30000 ticks on the charger the robot may sleep through a loss of contact in quiet hours.
Node count_quiet_time()
{
    return SequenceStar(IfThenElseStar(key::annoy_active_tick.present(), key::annoy_active_tick.plus(1),
                                       key::annoy_active_tick.set(1)),
                        key::annoy_active_tick.above(30000), key::annoy_active_tick.erase(),
                        SaySomething{"annoy mode active,ticks 30000 now!"}, SaySomething{"annoy tick end!"},
                        key::AnnoyModeActiveFlag.set("true"));
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
        SequenceStar(Led_Mode_Set{"BUTTON_LED_ChargeDone_NoTask"}, key::robot_status.set("clean_charge_done"),
                     station_light("STATTON_LED_WhiteOn"), Delay{500}, SaySomething{"error!"},
                     GetWheelsDropStateBeforeSleep{}, ChangeRobotModeTo{.IsAimMode_Sleep = "true"}),
        SequenceStar(station_light("STATTON_LED_WhiteBreath"),
                     IfThenElseStar(task_waits_for_charge(),
                                    light_by_charge("BUTTON_LED_Charging_ContinueWork_Able",
                                                    "BUTTON_LED_Charging_ContinueWork_Unable"),
                                    light_by_charge("BUTTON_LED_Charging_NoTask_Workable",
                                                    "BUTTON_LED_Charging_NoTask_UnWorkable")),
                     IfThenElseStar(RobotPowerGetHigherThan{"16"}, key::robot_status.set("clean_charging"),
                                    key::robot_status.set("clean_lowp_charging"))));
}

// A task that only came by to visit the station goes on.
Node station_charge_handle()
{
    return SubTree(
        "StationChargeHandle",
        SequenceStar(key::need_back_station.present(), Delay{100}, trace("task_type work -> ${task_type}"),
                     take_up_task(key::task_type, &Task::type, AlwaysSuccess{}),
                     key::continue_work.set("clean_none"), SaySomething{"work to station to work..."}));
}

// Contacts that do not charge are approached anew.
Node rest_or_dock_again()
{
    return IfThenElse(
        DoesGetRobotChargeWarnning{},
        SequenceStar(SaySomething{"Robot Charge Error!"}, key::robot_status.set("clean_charge_err"),
                     key::DisableErrMusic_Box.flag(), ChangeRobotModeTo{.IsAimMode_BackHome = "true"}),
        StopModeDeal{});
}

Node on_the_charger()
{
    return DoWhile(count_quiet_time(), show_charge(), SubtreeCondition{"ChargingJumpToSleepMode"},
                   RobotAnnoyModeLEDCtl{},
                   IfThenElseStar(DoesIMUDetectMoveLast2S{}, key::IMU_Changed.set("true"),
                                  key::IMU_Changed.set("false")),
                   station_charge_handle(), rest_or_dock_again());
}

// --- off the charger ----------------------------------------------------------------------------

// The robot goes home by itself, but in quiet hours it stays asleep if it has charged for long enough.
Node decide_where_to_go()
{
    return IfThenElseStar(
        IsRobotInAnnoyMode{},
        IfThenElseStar(key::AnnoyModeActiveFlag.is_true(),
                       SequenceStar(key::AnnoyModeActiveFlag.erase(), SaySomething{"enter in annoymode!"},
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
        DoWhile(SequenceStar(DoesWheelsDrop{}, key::dirty_music_judge.flag(),
                             ChangeRobotModeTo{.IsAimMode_Standby = "true"}),
                Delay{250}),
        IfThenElseStar(any_of({DoesRobotGetChargerSig{}, key::IMU_Changed.is_true()}),
                       SequenceStar(key::kicked.set("true"), key::DisableErrMusic_Box.set("value"),
                                    decide_where_to_go()),
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

        erase(key::robot_standby_flag, key::need_back_mode_changed, key::need_back_mode_temp,
              key::reuse_relocalize_just_in_init),
        key::robot_moved.set("false"), key::kicked.set("false"), restart_quiet_count(),

        report_standing_still(), key::dust_handle.flag(), key::record_charge_pose_start.set("false"),
        key::wash_handle.flag(), SubtreeCondition{"StopModePreset"},

        light_by_charge("BUTTON_LED_Charging_NoTask_Workable", "BUTTON_LED_Charging_NoTask_UnWorkable"),

        // What became of the task.
        when(Sequence(Inverter(DoesTuobuInstall{}), key::task_state.is("precleaning")),
             key::task_state.set("init"), key::task_type.set("Idle")),
        when(key::task_state.is("search_charge"), SaySomething{"StopChargingIndex.xml wifi -1"},
             SubtreeCondition{"SearchChargeEnding"}),
        decide_on_paused_task(), when(task_waits_for_charge(), key::breakpoint_getcharger.flag()),

        SetLastRobotMode{}, key::virtual_moved_during_pause.flag(), key::search_charger_time.set(0),

        // The place of the charger is a fix for the map, but a task that goes on keeps its own.
        trace("StopChargingIndex before ChargingReloc task_state = ${task_state}"),
        unless(task_waits_for_charge(), ChargingReloc{}), key::No_Box_Music.erase(),

        DoWhile(resume_check(), IfThenElse(DoesRobotGetCharger{}, on_the_charger(), off_the_charger())));
}
