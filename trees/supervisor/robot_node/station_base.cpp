// What the wash station needs of the robot beside a wash: its button, its cover, its pump and its lamp.

#include "trees/idioms.h"
#include "trees/supervisor/robot_node/station.h"
#include "trees/supervisor/robot_node/wash.h"

namespace vemra::trees::robot_node {

namespace {

Node landed()
{
    return SequenceStar(DoesChargerGetOn{}, erase("need_back_mode_temp"), erase("handle_wash_task"));
}

// Without a cloth there is nothing to wash.
Node idle_without_cloth()
{
    return SequenceStar(Inverter(DoesTuobuInstall{}), SetWashStatus{"WASH_IDLE"});
}

// What a wash has left in the dish is pumped out when the task was given up.
Node force_pump()
{
    return SubTree("ForcePump", SequenceStar(present("force_start_sewage"), DoesRobotGetCharger{},
                                             erase("force_start_sewage"), SewagePumpHandle{"200"}));
}

Node wake_for_station()
{
    return SequenceStar(present("station_awaken_flag"), erase("station_awaken_flag"),
                        SubtreeCondition{"WakeFromSleep"});
}

Node tell_on_charger()
{
    return SequenceStar(present("charger_audio"), erase("charger_audio"), music("18", "true"));
}

// The station's button breaks off its work, and the dirty water goes out of the dish. A drying that was
// broken off is still owed.
Node station_button()
{
    return SequenceStar(
        key_is("station_button_work", "workpush"), erase("station_button_work"), wash_or_dry_runs(),
        SaySomething{"wash pause..."},
        optionally(present("dry_procssing"), erase("dry_procssing"), set_flag("need_dry_flag")),
        interrupt_wash(), UvStop{}, music("11", "true"), wash_is_over(), hand_back_button(),
        SewagePumpHandle{"150"});
}

// A cover that is taken off holds up the wash until it is on again.
Node station_cover()
{
    return SequenceStar(DoesStationCoverDrop{}, DoesWashStatus{"WASH_RUNNING"}, SetWashStatus{"WASH_PAUSE"},
                        StopWashHandle{}, RetryUntilSuccesful("-1", DoesStationCoverOn{}));
}

// The user turned mopping on or off under way: the robot is to call at the station before it goes on.
Node mop_mode_changed()
{
    return SequenceStar(
        RobotCleanModeChanged{}, DoesTuobuInstall{}, key_is_any("changed_mop_mode", {"1", "2", "3", "5"}),
        key_is_any("task_state", {"cleaning", "zone_cleaning", "area_cleaning", "point_cleaning", "lowpower",
                                  "zone_lowpower", "area_lowpower", "point_lowpower"}),
        set_flag("need_back_mode_temp"), set_flag("need_back_mode_changed"));
}

Node uv_ordered()
{
    return SequenceStar(uv_order_handle{}, SetUvTime{"180000"}, set_flag("uv_contrl"));
}

// The ultraviolet light shines on the charger alone. A robot that was away meanwhile gets the rest of its
// time.
Node uv_light()
{
    const Node was_broken_off =
        Sequence(DoesUvLightStatus{"UV_PAUSE"}, IsAGreaterThanBInt{.A = "${uv_left_time}", .B = "0"});
    return IfThenElse(
        present("uv_contrl"),
        IfThenElse(DoesRobotGetCharger{},
                   SequenceStar(IfThenElseStar(was_broken_off, UvLightHandle{},
                                               SequenceStar(SetUvTime{"180000"}, UvLightHandle{})),
                                UvStop{}, erase("uv_contrl")),
                   SequenceStar(UvStop{}, SetUvLightStatus{"UV_PAUSE"})),
        AlwaysSuccess{});
}

Node wash_without_mop()
{
    return SequenceStar(present("Qo_Wash_with_NoMop"), erase("Qo_Wash_with_NoMop"), music("156", "true"));
}

// A standby stops the dryer.
Node stop_drying()
{
    return SequenceStar(present("wash_dry_stop_flag"), erase("wash_dry_stop_flag"),
                        DoesWashStatus{"WASH_DRYING"}, SetWashStatus{"WASH_INTERRUPT"}, StopWashHandle{});
}

// A standby or an error broke off the drying: back on the charger it is done again from the start.
Node resume_drying()
{
    return SequenceStar(key_is_true("wash_dry_pause_falg"), DoesRobotGetCharger{},
                        in_any_mode({"ChargingMode", "SleepMode"}), DoesTuobuInstall{},
                        FallbackStar(DoesWashStatus{"WASH_DRYING"}, DoesWashStatus{"WASH_INTERRUPT"},
                                     DoesWashStatus{"WASH_PAUSE"}),
                        SaySomething{"nolp test enter dry handle"}, erase("wash_dry_pause_falg"),
                        erase("need_dry_flag"), run_dryer(), set_flag("wash_dry_end"));
}

}  // namespace

Node station_base_handle()
{
    return SubTree(
        "StationBaseHandle",
        Sequence(switched_off(),
                 DoWhile(landed(), idle_without_cloth(), force_pump(), wake_for_station(), tell_on_charger(),
                         station_button(), station_cover(), mop_mode_changed(), uv_ordered(), uv_light(),
                         wash_without_mop(), stop_drying(), resume_drying(), ForceRunning{})));
}

}  // namespace vemra::trees::robot_node
