// What the wash station needs of the robot beside a wash: its button, its cover, its pump and its lamp.

#include "trees/idioms.h"
#include "trees/supervisor/robot_node/station.h"
#include "trees/supervisor/robot_node/wash.h"

namespace vemra::trees::robot_node {

namespace {

Node landed()
{
    return SequenceStar(DoesChargerGetOn{}, erase(key::need_back_mode_temp, key::handle_wash_task));
}

// Without a cloth there is nothing to wash.
Node idle_without_cloth()
{
    return SequenceStar(Inverter(DoesTuobuInstall{}), SetWashStatus{"WASH_IDLE"});
}

// What a wash has left in the dish is pumped out when the task was given up.
Node force_pump()
{
    return SubTree("ForcePump", SequenceStar(key::force_start_sewage.present(), DoesRobotGetCharger{},
                                             key::force_start_sewage.erase(), SewagePumpHandle{"200"}));
}

Node wake_for_station()
{
    return SequenceStar(key::station_awaken_flag.take(), SubtreeCondition{"WakeFromSleep"});
}

Node tell_on_charger()
{
    return SequenceStar(key::charger_audio.take(), play(18));
}

// The station's button breaks off its work, and the dirty water goes out of the dish. A drying that was
// broken off is still owed.
Node station_button()
{
    return SequenceStar(key::station_button_work.is("workpush"), key::station_button_work.erase(),
                        wash_or_dry_runs(), SaySomething{"wash pause..."},
                        optionally(key::dry_procssing.take(), key::need_dry_flag.flag()), interrupt_wash(),
                        UvStop{}, play(11), wash_is_over(), hand_back_button(), SewagePumpHandle{"150"});
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
        RobotCleanModeChanged{}, DoesTuobuInstall{}, key::changed_mop_mode.is_any({"1", "2", "3", "5"}),
        key::task_state.is_any({"cleaning", "zone_cleaning", "area_cleaning", "point_cleaning", "lowpower",
                                "zone_lowpower", "area_lowpower", "point_lowpower"}),
        key::need_back_mode_temp.flag(), key::need_back_mode_changed.flag());
}

Node uv_ordered()
{
    return SequenceStar(uv_order_handle{}, SetUvTime{"180000"}, key::uv_contrl.flag());
}

// The ultraviolet light shines on the charger alone. A robot that was away meanwhile gets the rest of its
// time.
Node uv_light()
{
    const Node was_broken_off = Sequence(DoesUvLightStatus{"UV_PAUSE"}, key::uv_left_time.above(0));
    return IfThenElse(
        key::uv_contrl.present(),
        IfThenElse(DoesRobotGetCharger{},
                   SequenceStar(IfThenElseStar(was_broken_off, UvLightHandle{},
                                               SequenceStar(SetUvTime{"180000"}, UvLightHandle{})),
                                UvStop{}, key::uv_contrl.erase()),
                   SequenceStar(UvStop{}, SetUvLightStatus{"UV_PAUSE"})),
        AlwaysSuccess{});
}

Node wash_without_mop()
{
    return SequenceStar(key::Qo_Wash_with_NoMop.take(), play(156));
}

// A standby stops the dryer.
Node stop_drying()
{
    return SequenceStar(key::wash_dry_stop_flag.take(), DoesWashStatus{"WASH_DRYING"},
                        SetWashStatus{"WASH_INTERRUPT"}, StopWashHandle{});
}

// A standby or an error broke off the drying: back on the charger it is done again from the start.
Node resume_drying()
{
    return SequenceStar(key::wash_dry_pause_falg.is_true(), DoesRobotGetCharger{}, in_any_mode(kModesOnDock),
                        DoesTuobuInstall{},
                        FallbackStar(DoesWashStatus{"WASH_DRYING"}, DoesWashStatus{"WASH_INTERRUPT"},
                                     DoesWashStatus{"WASH_PAUSE"}),
                        SaySomething{"nolp test enter dry handle"},
                        erase(key::wash_dry_pause_falg, key::need_dry_flag), run_dryer(),
                        key::wash_dry_end.flag());
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
