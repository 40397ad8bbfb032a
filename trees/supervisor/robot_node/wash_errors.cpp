// The errors of the wash station, and the ways in which a wash comes to rest.

#include "trees/idioms.h"
#include "trees/supervisor/robot_node/station.h"
#include "trees/supervisor/robot_node/wash.h"

namespace vemra::trees::robot_node {

namespace {

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

// An error has held up a wash. Once the station is well again, the wash is to start anew; a drying goes on by
// its own watcher.
Node wash_recovery()
{
    return SequenceStar(present("handle_wash_task"), RetryUntilSuccesful("-1", IsStationNormal{}),
                        key_is_true("StationNotNormal"), SetBlackboard{"StationNotNormal", "false"},
                        SaySomething{"Recover error..."}, music("103", "true"),
                        IfThenElse(present("dry_procssing"), SetBlackboard{"wash_dry_pause_falg", "true"},
                                   SetBlackboard{"err_recover_flag", "true"}));
}

Node wash_run_watch()
{
    return IfThenElse(Sequence(wash_or_dry_runs(), Inverter(IsStationNormal{})),
                      FallbackStar(key_is_true("StationNotNormal"), in_mode("WIFISetMode"),
                                   ForceFailure(erase("OrderAutoClean")), station_status_detect()),
                      AlwaysSuccess{});
}

// An error broke off a wash with dirty water in the dish. Without its dish the station has nothing to pump.
Node sewage_work()
{
    return SubTree("SewageWork", SequenceStar(present("station_err_sewage"), DoesRobotGetCharger{},
                                              Inverter(station_error("WASHDISH_NOTINSTALLED")),
                                              erase("station_err_sewage"), SewagePumpHandle{"500"}));
}

Node restart_wash()
{
    return IfThenElse(Sequence(key_is_true("err_recover_flag"), DoesRobotGetCharger{}, DoesTuobuInstall{},
                               IsStationNormal{}),
                      SequenceStar(DoesWashStatus{"WASH_PAUSE"}, SetWashStatus{"WASH_RUNNING"}, Delay{"50"},
                                   SetWashStatus{"WASH_IDLE"}, SweepStationContorl{"${station_water}"},
                                   SetBlackboard{"robot_status", "clean_washing"}, Delay{"50"},
                                   SetWashStatus{"WASH_IDLE"}, StopWashHandle{},
                                   SetBlackboardWithType{.key = "mop_dirty", .type = "float", .value = "0"},
                                   SetBlackboard{"err_recover_flag", "false"}, wash_is_over()),
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
            SetBlackboard{"StationNotNormal", "false"}, SetBlackboard{"err_recover_flag", "false"},
            wash_is_over(), erase("hand_wash_flag"), erase("mop_clean_task_end"), erase("wash_dry_end"),
            erase("wash_dry_pause_falg"), erase("wash_dry_time_ticks"), erase("dry_procssing"),
            erase("need_dry_flag"), erase("station_err_sewage"), erase("washdish_not_install_flag"))));
}

// The robot has left the charger: no wash is under way any more.
Node wash_init()
{
    return SubTree("WashInit", SequenceStar(switched_off(), DoesChargerDrop{}, wash_init_subtree()));
}

}  // namespace vemra::trees::robot_node
