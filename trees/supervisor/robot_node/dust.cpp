// Emptying the dust box into the station: on request, and by itself after enough cleanings.

#include "trees/idioms.h"
#include "trees/supervisor/robot_node/station.h"

namespace vemra::trees::robot_node {

namespace {

// The barometer behind the airflow measure is set to zero while the fan stands still; the emptying goes on
// either way.
Node calibrate_barometer()
{
    return IfThenElse(CheckBaroCali{}, SaySomething{"CheckBaroCali success..."},
                      SaySomething{"CheckBaroCali failed..."});
}

// The station cannot take the dust: `report` it, unless it was reported already, the station has come round,
// or the robot is busy with its Wi-Fi. The emptying ends in any case.
Node give_up_emptying(const Node& report)
{
    return ForceFailure(FallbackStar(key::StationNotNormal.is_true(),
                                     Sequence(IsStationNormal{}, Inverter(station_error("DUST_LOCK"))),
                                     in_mode("WIFISetMode"), report));
}

Node check_station_before_manual()
{
    return keep_choosing(
        {{Sequence(IsStationNormal{}, Inverter(station_error("DUST_LOCK"))), AlwaysSuccess{}},
         {FallbackStar(station_error("DUST_LOCK"), station_error("DUST_BLOCK"), station_error("DUST_CAP"),
                       station_error("DUST_BAG")),
          give_up_emptying(SequenceStar(SetDustTime{10000}, SaySomething{"pre handle dust."},
                                        key::pre_handle_dust.flag(), key::APPDustHandle.erase(),
                                        station_status_detect()))}},
        SaySomething{"pre handle dust block..."});
}

Node empty_on_request()
{
    return SequenceStar(SaySomething{"step 2."}, calibrate_barometer(), queue(110), Delay{100},
                        key::dust_delay_start.flag(), dust_light(), key::dust_delay_start.erase(),
                        run_dust_fan(10000), key::dust_delay_end.flag(),
                        erase(key::APPDustHandle, key::Have_dust_task));
}

// While a task waits for its battery, only the first landing may count as one: the robot comes back to the
// same dust box.
Node break_point_rule()
{
    const Node second_landing_fails =
        IfThenElse(key::breakpoint_dust_flag.present(), fail_after(key::dust_handle.erase()),
                   key::breakpoint_dust_flag.flag());
    return IfThenElse(DoesRobotBreakPointEnable{},
                      IfThenElse(key::task_state.is_any({"lowpower", "part_lowpower", "zone_lowpower",
                                                         "point_lowpower", "area_lowpower"}),
                                 second_landing_fails, key::breakpoint_dust_flag.erase()),
                      key::breakpoint_dust_flag.erase());
}

// Below the limit, only an emptying that an earlier landing owes is made up for, and not in the quiet hours.
Node only_if_owed(Node drop)
{
    return keep_choosing(
        {{Sequence(IsRobotInAnnoyMode{}, key::not_on_station.present()), fail_after(key::DustInAnnoy.flag())},
         {key::not_on_station.present(), AlwaysSuccess{}}},
        std::move(drop));
}

// A landing after a cleaning counts it, and goes on when enough of them have gathered.
Node count_the_cleaning()
{
    const Node enough = FallbackStar(key::clean_done_time.above(key::DustTimesSet.value()),
                                     Sequence(switched_off(), IsFirstOnStation{}));
    const Node owed_unless_quiet =
        IfThenElse(IsRobotInAnnoyMode{}, fail_after(key::DustInAnnoy.flag(), key::dust_handle.erase()),
                   SequenceStar(key::DustInAnnoy.erase(), key::not_on_station.flag()));
    return SequenceStar(
        SaySomething{"has dust flag.."}, key::Have_Clean_Before_AutoDust.erase(),
        key::clean_done_time.plus(1), CleanInfoSave{},
        IfThenElse(enough, owed_unless_quiet, only_if_owed(fail_after(key::dust_handle.erase()))),
        IfThenElse(key::breakpoint_dust_flag.present(),
                   fail_after(erase(key::dust_handle, key::not_on_station)), AlwaysSuccess{}),
        key::clean_done_time.set_typed(0), CleanInfoSave{});
}

Node count_rule()
{
    const Node not_cleaned =
        only_if_owed(fail_after(SaySomething{"unable dust.."}, key::dust_handle.erase()));
    return IfThenElse(
        key::dust_switch.is_true(),
        IfThenElse(key::Have_Clean_Before_AutoDust.present(), count_the_cleaning(), not_cleaned),
        fail_after(SaySomething{"auto dust not effc.."},
                   erase(key::dust_handle, key::Have_Clean_Before_AutoDust)));
}

Node check_station_before_auto()
{
    return keep_choosing(
        {{IsStationNormal{}, AlwaysSuccess{}},
         {FallbackStar(station_error("DUST_BLOCK"), station_error("DUST_CAP"), station_error("DUST_BAG")),
          give_up_emptying(SequenceStar(SetDustTime{"${dust_left_time}"}, SaySomething{"auto dust pre err."},
                                        station_status_detect()))}},
        SaySomething{"pre auto dust block..."});
}

// The emptying proper. A mode that has cleared the request since then, or a blocked duct, cuts it short.
Node empty_after_cleaning()
{
    return IfThenElse(
        key::dust_handle.present(),
        SequenceStar(key::dust_delay_start.flag(), dust_light(), run_dust_fan("${dust_left_time}"),
                     erase(key::dust_delay_start, key::dust_handle), key::dust_delay_end.flag(),
                     key::Have_dust_task.erase()),
        AlwaysSuccess{});
}

Node dust_subtree()
{
    return SubTree(
        "Dust_Subtree",
        SequenceStar(
            key::dust_handle.present(), break_point_rule(), count_rule(),

            // The robot has come to rest on the contacts and the station answers.
            Delay{200}, IsInfraredConnect{}, key::not_on_station.erase(), SaySomething{"Have on station.."},
            SaySomething{"Start auto dust..."}, key::continue_dust_flag.erase(),
            when(key::dust_number.above(1000), key::dust_number.set(0)), key::dust_number.plus(1),
            SaySomething{"dust_number is ${dust_number}"},

            // A long while without an emptying asks for a long one.
            IfThenElse(NeedLongDustHandle{}, SequenceStar(SaySomething{"Long dust..."}, SetDustTime{20000}),
                       SequenceStar(SaySomething{"Short dust..."}, SetDustTime{10000})),
            key::Have_dust_task.flag(), Delay{30}, check_station_before_auto(), calibrate_barometer(),
            queue(110), Delay{100}, empty_after_cleaning()));
}

}  // namespace

Node dust_light()
{
    return IfThenElse(RobotPowerGetHigherThan{"100"}, SetDustLight{"STATTON_LED_WhiteOn"},
                      SetDustLight{"STATTON_LED_WhiteBreath"});
}

// The robot has just come to the charger, or left it: no emptying is under way any more.
Node dust_init_subtree()
{
    return SubTree(
        "DustInit_Subtree",
        ForceSuccess(Sequence(switched_on(), SaySomething{"dust init."}, SetDustTime{0},
                              SetDustStatus{"DUST_END"}, SetDustLight{"STATTON_LED_WhiteOn"}, stop_dust_fan(),
                              key::dust_delay_end.flag(), key::StationNotNormal.set("false"),
                              erase(key::dust_handle, key::dust_delay_start, key::dust_restart,
                                    key::APPDustHandle, key::continue_dust, key::Have_dust_task))));
}

// The user asked for an emptying. A station that does not answer within 20 ticks drops it in silence.
Node manual_dust()
{
    return Sequence(
        DoesRobotGetCharger{},
        SubTree("Manul_dust_Subtree",
                SequenceStar(
                    key::APPDustHandle.present(),
                    FallbackStar(RetryUntilSuccesful("20", IsInfraredConnect{}),
                                 ForceFailure(key::APPDustHandle.erase())),
                    SaySomething{"Start manul dust..."}, key::handle_dust_numbers.plus(1),
                    trace("handle_dust_numbers is ${handle_dust_numbers}"), key::Have_dust_task.flag(),
                    key::continue_dust_flag.erase(), IsInFrequentDust{}, Delay{30},
                    check_station_before_manual(), SaySomething{"step 1."},
                    IfThenElse(key::APPDustHandle.is_true(),
                               IfThenElse(in_any_mode("ChargingMode", "StandbyMode", "SleepMode"),
                                          empty_on_request(),
                                          SequenceStar(SaySomething{"step 4."}, key::APPDustHandle.erase())),
                               SequenceStar(SaySomething{"step 3."}, key::APPDustHandle.erase())))));
}

// A cleaning mode leaves the request `dust_handle` behind; it is met at rest on the charger.
Node auto_dust()
{
    return SubTree("AUTO_DUST", Sequence(in_any_mode(kModesOnDock), dust_subtree()));
}

}  // namespace vemra::trees::robot_node
