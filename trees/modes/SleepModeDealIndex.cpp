#include "trees/idioms.h"
#include "trees/modes/shared.h"

namespace {

// The quiet time that began on the charger goes on in sleep.
Node count_quiet_time()
{
    return when(key::annoy_active_tick.present(), key::annoy_active_tick_flag.set("true"),
                key::annoy_active_tick.plus(1),
                when(key::annoy_active_tick.above(30000), SaySomething{"annoy tick here more than 30000"},
                     key::annoy_active_tick.erase(), key::AnnoyModeActiveFlag.set("true")));
}

// The user looks for the robot, lifts it, or, outside quiet hours, it was knocked off the charger.
Node shall_wake()
{
    return FallbackStar(DoesReceiveFindRobot{}, DoesWheelsChangedWhenSleep{},
                        SequenceStar(count_quiet_time(), Inverter(IsRobotInAnnoyMode{}),
                                     key::kicked.present(), key::kicked.is_true()));
}

// The charge suffices for the rest of the task.
Node may_resume()
{
    return Sequence(key::mop_is_dirty.absent(), key::hand_wash_flag.absent(), Inverter(IsRobotInAnnoyMode{}),
                    break_point_wanted_or_close(SubtreeCondition{"AdvCleanComplete"},
                                                key::task_state.set("init"), key::task_type.set("Idle")),
                    task_waits_for_charge(), BreakPointElecCalculate{},
                    RobotPowerGetHigherThan{"${Elec_BreakPoint}"}, dust_box_is_in());
}

Node resume()
{
    return FallbackStar(complain_of_missing_dust_box(), ForceFailure(key::ElecCalculate.set("false")),
                        take_up_charged_task(AlwaysSuccess{}));
}

// On the charger the clock of the long sleep stays at zero. Off it, twelve hours or a battery under ten
// percent end the sleep for good.
Node sleep_on()
{
    return keep_choosing({{SequenceStar(DoesRobotGetCharger{}, RobotTimer_s_Init{}),
                           SequenceStar(SetDustLight{"STATTON_LED_WhiteOff"}, SleepModeDeal{})},
                          {any_of({RobotTimerLongerThan_s{"43200"}, RobotPowerGetLowerThan{"10"}}),
                           SequenceStar(key::longtimepoweroff.flag(), key::update_offline_map_flag.set(1),
                                        ChangeRobotModeTo{.IsAimMode_PowerOff = "true"})}},
                         SleepModeDeal{});
}

}  // namespace

// Sleep: lights out, until somebody wakes the robot or its task can go on.
TREE(SleepModeDealIndex)
{
    return SequenceStar(
        Stop{}, SetCleanSystem{.Brush = "1", .Fan = "1", .Pump = "0", .SideBrush = "1"},
        IfThenElse(switched_off(), AlwaysSuccess{}, key::robot_status.set("clean_sleep_done")), SlamPause{},
        Led_Mode_Set{"BUTTON_LED_OFF"}, RobotIRSwitch{.Cliff_ON = "true", .Front_ON = "false"},
        RobotTimer_s_Init{}, when(key::RobotFindSet.present(), key::RobotFindSet.erase()),

        // The mode to which a wake-up returns.
        key::Sleep_LastRobotMode.set_typed(key::LastRobotMode.value()), SetLastRobotMode{},

        keep_choosing({{shall_wake(), SubtreeCondition{"WakeFromSleep"}}, {may_resume(), resume()}},
                      sleep_on()));
}
