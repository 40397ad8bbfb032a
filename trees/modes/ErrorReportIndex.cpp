#include "trees/idioms.h"
#include "trees/modes/shared.h"

namespace {

// An emptying of the dust box on the station waits until the error is mended.
Node dust_err_handle()
{
    return ForceSuccess(
        SubTree("DustErrHandle",
                Sequence(DoesRobotGetCharger{},
                         erase(key::APPDustHandle, key::dust_restart, key::continue_dust, key::dust_handle),
                         key::dust_delay_end.flag(), SaySomething{"error 2..."},
                         SetDustLight{"STATTON_LED_OrangeTwinkleFast"},
                         DustContrlSet{.dust_status = "DUST_PAUSE", .time_set = "${dust_left_time}"},
                         DustTimeHandle{})));
}

// So would the work of a washing station.
Node wash_err_handle()
{
    return ForceSuccess(SubTree(
        "WashErrHandle",
        SequenceStar(
            switched_off(),
            IfThenElseStar(
                DoesRobotGetCharger{},
                SequenceStar(SetWashStatus{"WASH_PAUSE"}, StopWashHandle{}, key::station_err_sewage.flag()),
                SequenceStar(DoesHappenStationErr{"OLO_HEALTH_STATUS_TYPE_WASHDISH_NOTINSTALLED"},
                             SaySomething{"purge not install when back..."})))));
}

// On the charger the dust station must be well, too.
Node everything_is_well()
{
    return IfThenElse(Sequence(DoesRobotGetCharger{}, Fallback(switched_off(), switched_on())),
                      Sequence(IsStationNormal{}, IsRobotHealthy{}), IsRobotHealthy{});
}

}  // namespace

// Error: the robot stands still and shows that it needs help. It leaves the mode by itself as soon as nothing
// is wrong any more, or when somebody sets it on the charger.
TREE(ErrorReportIndex)
{
    return SequenceStar(SetCleanSystem{.Brush = "0", .Fan = "0", .Pump = "0", .SideBrush = "0"},
                        RobotMopGearSet{"0"}, Stop{}, SetLastRobotMode{},
                        key::robot_status.set("clean_error"), key::restart_cleaning_from_err_mode.set("true"),

                        when(key::dry_procssing.present(), SaySomething{"dry handle pause for error mode"},
                             key::wash_dry_pause_falg.set("true")),
                        dust_err_handle(), wash_err_handle(),

                        SlamPause{}, key::kicked.set("false"), report_standing_still(),
                        SubtreeCondition{"StopModePreset"}, RobotTimer_ms_Init{},

                        IfThenElse(everything_is_well(), ChangeRobotModeTo{.IsAimMode_Standby = "true"},
                                   DoWhile(SubtreeCondition{"JumpToSleepMode"},
                                           IfThenElseStar(DoesRobotGetCharger{},
                                                          ChangeRobotModeTo{.IsAimMode_Charging = "true"},
                                                          Led_Mode_Set{"BUTTON_LED_Working_ERROR"}),
                                           ErrorReportModeDeal{})));
}
