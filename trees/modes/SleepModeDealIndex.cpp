#include "trees/conditions.h"
#include "trees/modes/shared.h"

namespace {

// The quiet time that began on the charger goes on in sleep.
Node count_quiet_time()
{
    return when(present("annoy_active_tick"), SetBlackboard{"annoy_active_tick_flag", "true"},
                IntAdd{.int_a = "${annoy_active_tick}", .int_b = "1", .out_sum = "annoy_active_tick"},
                when(IsAGreaterThanBInt{.A = "${annoy_active_tick}", .B = "30000"},
                     SaySomething{"annoy tick here more than 30000"}, erase("annoy_active_tick"),
                     SetBlackboard{"AnnoyModeActiveFlag", "true"}));
}

// The user looks for the robot, lifts it, or, outside quiet hours, it was knocked off the charger.
Node shall_wake()
{
    return FallbackStar(DoesReceiveFindRobot{}, DoesWheelsChangedWhenSleep{},
                        SequenceStar(count_quiet_time(), Inverter(IsRobotInAnnoyMode{}), present("kicked"),
                                     key_is_true("kicked")));
}

// The charge suffices for the rest of the task.
Node may_resume()
{
    return Sequence(
        absent("mop_is_dirty"), absent("hand_wash_flag"), Inverter(IsRobotInAnnoyMode{}),
        break_point_wanted_or_close(SubtreeCondition{"AdvCleanComplete"}, SetBlackboard{"task_state", "init"},
                                    SetBlackboard{"task_type", "Idle"}),
        task_waits_for_charge(), BreakPointElecCalculate{}, RobotPowerGetHigherThan{"${Elec_BreakPoint}"},
        dust_box_is_in());
}

Node resume()
{
    return FallbackStar(complain_of_missing_dust_box(), ForceFailure(SetBlackboard{"ElecCalculate", "false"}),
                        take_up_charged_task(AlwaysSuccess{}));
}

// On the charger the clock of the long sleep stays at zero. Off it, twelve hours or a battery under ten
// percent end the sleep for good.
Node sleep_on()
{
    return IfThenElse(
        SequenceStar(DoesRobotGetCharger{}, RobotTimer_s_Init{}),
        SequenceStar(SetDustLight{"STATTON_LED_WhiteOff"}, SleepModeDeal{}),
        IfThenElse(any_of({RobotTimerLongerThan_s{"43200"}, RobotPowerGetLowerThan{"10"}}),
                   SequenceStar(set_flag("longtimepoweroff"), SetBlackboard{"update_offline_map_flag", "1"},
                                ChangeRobotModeTo{.IsAimMode_PowerOff = "true"}),
                   SleepModeDeal{}));
}

}  // namespace

// Sleep: lights out, until somebody wakes the robot or its task can go on.
TREE(SleepModeDealIndex)
{
    return SequenceStar(
        Stop{}, SetCleanSystem{.Brush = "1", .Fan = "1", .Pump = "0", .SideBrush = "1"},
        IfThenElse(switched_off(), AlwaysSuccess{}, SetBlackboard{"robot_status", "clean_sleep_done"}),
        SlamPause{}, Led_Mode_Set{"BUTTON_LED_OFF"}, RobotIRSwitch{.Cliff_ON = "true", .Front_ON = "false"},
        RobotTimer_s_Init{}, when(present("RobotFindSet"), erase("RobotFindSet")),

        // The mode to which a wake-up returns.
        SetBlackboardWithType{.key = "Sleep_LastRobotMode", .type = "int", .value = "${LastRobotMode}"},
        SetLastRobotMode{},

        IfThenElse(shall_wake(), SubtreeCondition{"WakeFromSleep"},
                   IfThenElse(may_resume(), resume(), sleep_on())));
}
