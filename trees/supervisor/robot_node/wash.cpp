// Washing and drying the mop: by itself after a cleaning, and by the station's own button. The station of
// this product has none of it, and a switch at the head of each tree keeps it still.

#include "trees/supervisor/robot_node/wash.h"

#include "trees/idioms.h"
#include "trees/supervisor/robot_node/commands.h"
#include "trees/supervisor/robot_node/station.h"
#include "trees/tasks.h"

namespace vemra::trees::robot_node {

namespace {

// What earlier washes and dryings have left behind, for the steps here and for the displays of app and
// station.
Node forget_earlier_washes()
{
    return SequenceStar(erase(key::wash_handle, key::wash_dry_time_ticks, key::wash_dry_pause_falg,
                              key::wash_dry_end, key::dry_procssing, key::need_dry_flag,
                              key::station_err_sewage, key::mop_wash_end, key::mop_task_done,
                              key::wash_task_end, key::station_show_clean_complete));
}

// The wash was an interruption: the task wanted a clean mop, or power, and is not done.
Node task_goes_on_after_wash()
{
    return FallbackStar(key::mop_is_dirty.present(), key::breakpoint_wash.present());
}

// The task that the wash has interrupted is taken up again in its own mode.
Node wash_back_to_last_clean_mode()
{
    const auto resume = [](const Task& task) { return SequenceStar(task.open_or_starting(), task.take_up); };
    return SubTree("WashBackToLastCleanMode",
                   FallbackStar(resume(whole_home()), resume(drawn_zones()), resume(chosen_rooms()),
                                resume(chosen_points()), SaySomething{"none task..."}));
}

// --- the station's button -----------------------------------------------------------------------

Node button_is_barred()
{
    return SequenceStar(key::Child_Lock_Flag.flag(), hand_back_button());
}

Node ask_for_mop(const char* message)
{
    return SequenceStar(SaySomething{message}, key::Qo_Wash_with_NoMop.flag(), wash_is_over(),
                        key::hand_wash_flag.erase(), hand_back_button());
}

// A mop whose drying was broken off by the button is clean already.
Node wash_and_dry()
{
    return SubTree("wash_and_dry",
                   SequenceStar(IfThenElseStar(key::need_dry_flag.present(), AlwaysSuccess{},
                                               SequenceStar(play(106), wash_mop(), wash_is_over())),
                                dry_mop()));
}

// A short push: a wash, after which an interrupted task goes on.
Node short_push()
{
    return IfThenElse(DoesTuobuInstall{},
                      SequenceStar(wash_rests(), IsStationNormal{}, play(106), wash_mop(), wash_is_over(),
                                   key::hand_wash_flag.erase(), hand_back_button(),
                                   when(task_goes_on_after_wash(), wash_back_to_last_clean_mode())),
                      ask_for_mop("need put on mop shortpush..."));
}

// A long push: a wash and a drying. A task that waits for its battery is over with it.
Node long_push()
{
    return IfThenElse(
        DoesTuobuInstall{},
        SequenceStar(wash_rests(), IsStationNormal{},
                     when(task_waits_for_charge(), SubtreeCondition{"AdvCleanComplete"},
                          key::task_state.set("init"), key::task_type.set("Idle"),
                          erase(key::mop_is_dirty, key::breakpoint_wash, key::breakpoint_wash_flag),
                          key::mop_task_done.flag()),
                     wash_and_dry(), key::hand_wash_flag.erase(), hand_back_button()),
        ask_for_mop("need put on mop longpush..."));
}

}  // namespace

// --- what all washes share ----------------------------------------------------------------------

Node wash_mop()
{
    return SequenceStar(forget_earlier_washes(), key::handle_wash_task.flag(),
                        key::StationNotNormal.set("false"), key::not_change_mode.flag(),

                        SetWashStatus{"WASH_RUNNING"}, Delay{50}, SetWashStatus{"WASH_IDLE"},
                        IfThenElse(key::mop_clean_task_end.present(), SweepStationContorl{"102"},
                                   SweepStationContorl{"${station_water}"}),
                        key::robot_status.set("clean_washing"), StopWashHandle{},

                        StationRobotLEDRecover{}, key::mop_dirty.set_typed(0), key::not_change_mode.erase(),
                        key::mop_wash_end.flag());
}

Node run_dryer()
{
    return SequenceStar(SetWashStatus{"WASH_DRYING"}, key::dry_procssing.flag(), Delay{200}, play(107),
                        IfThenElse(switched_off(), SetDryHandleTime{"360000"}, SetDryHandleTime{"540000"}),
                        DryingHandle{}, SetWashStatus{"WASH_IDLE"}, key::dry_procssing.erase(),
                        StationRobotLEDRecover{});
}

Node dry_mop()
{
    return IfThenElseStar(
        DoesTuobuInstall{},
        SequenceStar(play(113), key::uv_contrl.flag(), key::robot_status.set("clean_drying"), run_dryer(),
                     key::need_dry_flag.erase(), key::wash_dry_end.flag(), SaySomething{"drying end..."}),
        key::need_dry_flag.erase());
}

Node wash_rests()
{
    return FallbackStar(DoesWashStatus{"WASH_IDLE"}, DoesWashStatus{"WASH_DONE"},
                        DoesWashStatus{"WASH_INTERRUPT"});
}

Node wash_is_over()
{
    return SequenceStar(erase(key::wash_handle, key::handle_wash_task, key::need_back_station));
}

Node hand_back_button()
{
    return key::station_button_value.set("normal");
}

// Back from a cleaning with the cloth on: the mop is washed, and then either the task goes on, or the mop
// is dried.
Node auto_wash()
{
    return SubTree(
        "AUTO_WASH",
        Sequence(switched_off(), in_mode("ChargingMode"), DoesTuobuInstall{},
                 key::station_button_value.is("normal"), key::clean_task_end.is_true(),
                 SequenceStar(key::wash_handle.present(), wash_rests(), IsStationNormal{},
                              SaySomething{"clean done wash..."}, SaySomething{"auto wash handle..."},
                              FallbackStar(task_goes_on_after_wash(), play(106)), wash_mop(), wash_is_over(),
                              key::mop_clean_task_end.erase(),
                              IfThenElseStar(task_goes_on_after_wash(), wash_back_to_last_clean_mode(),
                                             SequenceStar(dry_mop(), key::wash_task_end.flag(),
                                                          key::station_show_clean_complete.flag())),
                              key::clean_task_end.set("false"))));
}

// The station's own button asks for a wash, or for a wash and a drying. Under the child lock it does nothing.
Node manual_wash()
{
    return SubTree("Manual_Wash",
                   Sequence(switched_off(), DoesRobotGetCharger{}, in_any_mode(kModesOnDock),
                            key::station_button_value.is_any({"shortpush", "longpush", "longpush_daley"}),
                            keep_choosing({{child_lock_is_on(), button_is_barred()},
                                           {key::station_button_value.is("shortpush"), short_push()}},
                                          long_push())));
}

}  // namespace vemra::trees::robot_node
