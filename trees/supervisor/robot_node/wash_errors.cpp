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
                      FallbackStar(key::washdish_not_install_flag.present(),
                                   SequenceStar(key::washdish_not_install_flag.flag(), play(104))),
                      key::washdish_not_install_flag.erase());
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
    return SequenceStar(key::handle_wash_task.present(), RetryUntilSuccesful("-1", IsStationNormal{}),
                        key::StationNotNormal.is_true(), key::StationNotNormal.set("false"),
                        SaySomething{"Recover error..."}, play(103),
                        IfThenElse(key::dry_procssing.present(), key::wash_dry_pause_falg.set("true"),
                                   key::err_recover_flag.set("true")));
}

Node wash_run_watch()
{
    return IfThenElse(Sequence(wash_or_dry_runs(), Inverter(IsStationNormal{})),
                      FallbackStar(key::StationNotNormal.is_true(), in_mode("WIFISetMode"),
                                   ForceFailure(key::OrderAutoClean.erase()), station_status_detect()),
                      AlwaysSuccess{});
}

// An error broke off a wash with dirty water in the dish. Without its dish the station has nothing to pump.
Node sewage_work()
{
    return SubTree("SewageWork", SequenceStar(key::station_err_sewage.present(), DoesRobotGetCharger{},
                                              Inverter(station_error("WASHDISH_NOTINSTALLED")),
                                              key::station_err_sewage.erase(), SewagePumpHandle{"500"}));
}

Node restart_wash()
{
    return IfThenElse(Sequence(key::err_recover_flag.is_true(), DoesRobotGetCharger{}, DoesTuobuInstall{},
                               IsStationNormal{}),
                      SequenceStar(DoesWashStatus{"WASH_PAUSE"}, SetWashStatus{"WASH_RUNNING"}, Delay{50},
                                   SetWashStatus{"WASH_IDLE"}, SweepStationContorl{"${station_water}"},
                                   key::robot_status.set("clean_washing"), Delay{50},
                                   SetWashStatus{"WASH_IDLE"}, StopWashHandle{}, key::mop_dirty.set_typed(0),
                                   key::err_recover_flag.set("false"), wash_is_over()),
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
            key::StationNotNormal.set("false"), key::err_recover_flag.set("false"), wash_is_over(),
            erase(key::hand_wash_flag, key::mop_clean_task_end, key::wash_dry_end, key::wash_dry_pause_falg,
                  key::wash_dry_time_ticks, key::dry_procssing, key::need_dry_flag, key::station_err_sewage,
                  key::washdish_not_install_flag))));
}

// The robot has left the charger: no wash is under way any more.
Node wash_init()
{
    return SubTree("WashInit", SequenceStar(switched_off(), DoesChargerDrop{}, wash_init_subtree()));
}

}  // namespace vemra::trees::robot_node
