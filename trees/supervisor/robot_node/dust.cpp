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
    return ForceFailure(FallbackStar(key_is_true("StationNotNormal"),
                                     Sequence(IsStationNormal{}, Inverter(station_error("DUST_LOCK"))),
                                     in_mode("WIFISetMode"), report));
}

Node check_station_before_manual()
{
    return IfThenElse(
        Sequence(IsStationNormal{}, Inverter(station_error("DUST_LOCK"))), AlwaysSuccess{},
        IfThenElse(FallbackStar(station_error("DUST_LOCK"), station_error("DUST_BLOCK"),
                                station_error("DUST_CAP"), station_error("DUST_BAG")),
                   give_up_emptying(SequenceStar(SetDustTime{"10000"}, SaySomething{"pre handle dust."},
                                                 set_flag("pre_handle_dust"), erase("APPDustHandle"),
                                                 station_status_detect())),
                   SaySomething{"pre handle dust block..."}));
}

Node empty_on_request()
{
    return SequenceStar(SaySomething{"step 2."}, calibrate_barometer(), music("110", "false"), Delay{"100"},
                        set_flag("dust_delay_start"), dust_light(), erase("dust_delay_start"),
                        DustContrlSet{.dust_status = "DUST_START", .time_set = "10000"}, DustTimeHandle{},
                        DustContrlSet{.dust_status = "DUST_QUIT", .time_set = "0"},
                        set_flag("dust_delay_end"), erase("APPDustHandle"), erase("Have_dust_task"));
}

// While a task waits for its battery, only the first landing may count as one: the robot comes back to the
// same dust box.
Node break_point_rule()
{
    const Node second_landing_fails =
        IfThenElse(present("breakpoint_dust_flag"), SequenceStar(erase("dust_handle"), AlwaysFailure{}),
                   set_flag("breakpoint_dust_flag"));
    return IfThenElse(DoesRobotBreakPointEnable{},
                      IfThenElse(key_is_any("task_state", {"lowpower", "part_lowpower", "zone_lowpower",
                                                           "point_lowpower", "area_lowpower"}),
                                 second_landing_fails, erase("breakpoint_dust_flag")),
                      erase("breakpoint_dust_flag"));
}

// Below the limit, only an emptying that an earlier landing owes is made up for, and not in the quiet hours.
Node only_if_owed(const Node& drop)
{
    return IfThenElse(Sequence(IsRobotInAnnoyMode{}, present("not_on_station")),
                      SequenceStar(set_flag("DustInAnnoy"), AlwaysFailure{}),
                      IfThenElse(present("not_on_station"), AlwaysSuccess{}, drop));
}

// A landing after a cleaning counts it, and goes on when enough of them have gathered.
Node count_the_cleaning()
{
    return SequenceStar(
        SaySomething{"has dust flag.."}, erase("Have_Clean_Before_AutoDust"),
        IntAdd{.int_a = "${clean_done_time}", .int_b = "1", .out_sum = "clean_done_time"}, CleanInfoSave{},
        IfThenElse(FallbackStar(IsAGreaterThanBInt{.A = "${clean_done_time}", .B = "${DustTimesSet}"},
                                Sequence(switched_off(), IsFirstOnStation{})),
                   IfThenElse(IsRobotInAnnoyMode{},
                              SequenceStar(set_flag("DustInAnnoy"), erase("dust_handle"), AlwaysFailure{}),
                              SequenceStar(erase("DustInAnnoy"), set_flag("not_on_station"))),
                   only_if_owed(SequenceStar(erase("dust_handle"), AlwaysFailure{}))),
        IfThenElse(present("breakpoint_dust_flag"),
                   SequenceStar(erase("dust_handle"), erase("not_on_station"), AlwaysFailure{}),
                   AlwaysSuccess{}),
        SetBlackboardWithType{.key = "clean_done_time", .type = "int", .value = "0"}, CleanInfoSave{});
}

Node count_rule()
{
    return IfThenElse(key_is_true("dust_switch"),
                      IfThenElse(present("Have_Clean_Before_AutoDust"), count_the_cleaning(),
                                 only_if_owed(SequenceStar(SaySomething{"unable dust.."},
                                                           erase("dust_handle"), AlwaysFailure{}))),
                      SequenceStar(SaySomething{"auto dust not effc.."}, erase("dust_handle"),
                                   erase("Have_Clean_Before_AutoDust"), AlwaysFailure{}));
}

Node check_station_before_auto()
{
    return IfThenElse(
        IsStationNormal{}, AlwaysSuccess{},
        IfThenElse(
            FallbackStar(station_error("DUST_BLOCK"), station_error("DUST_CAP"), station_error("DUST_BAG")),
            give_up_emptying(SequenceStar(SetDustTime{"${dust_left_time}"},
                                          SaySomething{"auto dust pre err."}, station_status_detect())),
            SaySomething{"pre auto dust block..."}));
}

// The emptying proper. A mode that has cleared the request since then, or a blocked duct, cuts it short.
Node empty_after_cleaning()
{
    return IfThenElse(
        present("dust_handle"),
        SequenceStar(set_flag("dust_delay_start"), dust_light(),
                     DustContrlSet{.dust_status = "DUST_START", .time_set = "${dust_left_time}"},
                     DustTimeHandle{}, DustContrlSet{.dust_status = "DUST_QUIT", .time_set = "0"},
                     erase("dust_delay_start"), erase("dust_handle"), set_flag("dust_delay_end"),
                     erase("Have_dust_task")),
        AlwaysSuccess{});
}

Node dust_subtree()
{
    return SubTree(
        "Dust_Subtree",
        SequenceStar(
            present("dust_handle"), break_point_rule(), count_rule(),

            // The robot has come to rest on the contacts and the station answers.
            Delay{"200"}, IsInfraredConnect{}, erase("not_on_station"), SaySomething{"Have on station.."},
            SaySomething{"Start auto dust..."}, erase("continue_dust_flag"),
            optionally(IsAGreaterThanBInt{.A = "${dust_number}", .B = "1000"},
                       SetBlackboard{"dust_number", "0"}),
            IntAdd{.int_a = "${dust_number}", .int_b = "1", .out_sum = "dust_number"},
            SaySomething{"dust_number is ${dust_number}"},

            // A long while without an emptying asks for a long one.
            IfThenElse(NeedLongDustHandle{}, SequenceStar(SaySomething{"Long dust..."}, SetDustTime{"20000"}),
                       SequenceStar(SaySomething{"Short dust..."}, SetDustTime{"10000"})),
            set_flag("Have_dust_task"), Delay{"30"}, check_station_before_auto(), calibrate_barometer(),
            music("110", "false"), Delay{"100"}, empty_after_cleaning()));
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
        ForceSuccess(Sequence(switched_on(), SaySomething{"dust init."}, SetDustTime{"0"},
                              SetDustStatus{"DUST_END"}, SetDustLight{"STATTON_LED_WhiteOn"},
                              DustContrlSet{.dust_status = "DUST_QUIT", .time_set = "0"},
                              set_flag("dust_delay_end"), SetBlackboard{"StationNotNormal", "false"},
                              erase("dust_handle"), erase("dust_delay_start"), erase("dust_restart"),
                              erase("APPDustHandle"), erase("continue_dust"), erase("Have_dust_task"))));
}

// The user asked for an emptying. A station that does not answer within 20 ticks drops it in silence.
Node manual_dust()
{
    return Sequence(
        DoesRobotGetCharger{},
        SubTree("Manul_dust_Subtree",
                SequenceStar(
                    present("APPDustHandle"),
                    FallbackStar(RetryUntilSuccesful("20", IsInfraredConnect{}),
                                 ForceFailure(erase("APPDustHandle"))),
                    SaySomething{"Start manul dust..."},
                    IntAdd{.int_a = "${handle_dust_numbers}", .int_b = "1", .out_sum = "handle_dust_numbers"},
                    trace("handle_dust_numbers is ${handle_dust_numbers}"), set_flag("Have_dust_task"),
                    erase("continue_dust_flag"), IsInFrequentDust{}, Delay{"30"},
                    check_station_before_manual(), SaySomething{"step 1."},
                    IfThenElse(key_is_true("APPDustHandle"),
                               IfThenElse(in_any_mode({"ChargingMode", "StandbyMode", "SleepMode"}),
                                          empty_on_request(),
                                          SequenceStar(SaySomething{"step 4."}, erase("APPDustHandle"))),
                               SequenceStar(SaySomething{"step 3."}, erase("APPDustHandle"))))));
}

// A cleaning mode leaves the request `dust_handle` behind; it is met at rest on the charger.
Node auto_dust()
{
    return SubTree("AUTO_DUST", Sequence(in_any_mode({"ChargingMode", "SleepMode"}), dust_subtree()));
}

}  // namespace vemra::trees::robot_node
