#include "trees/dock/back_home.h"

namespace {

Node forget_cancelled_mapping()
{
    return IfThenElseStar(
        SequenceStar(key::FastMapCleanCancleFlag.take(), SaySomething{"backhome test reset state"}),
        set_task("map_cleaning"), SaySomething{"backhome test donothing"});
}

// --- the station's button, switched off ---------------------------------------------------------

Node break_off_for_wash()
{
    return optionally(key::station_button_value.is("shortpush"), SaySomething{"station button breakpoint..."},
                      key::current_pose.copy_to(key::wash_mop_break_point),
                      IfThenElseStar(key::stop_wash_back_lopp_flag.present(),
                                     ForceFailure(key::stop_wash_back_lopp_flag.erase()),
                                     SaySomething{"enter backhome back wash"}),
                      key::mop_is_dirty.flag(), key::clean_task_end.set("true"),
                      change_task({{"cleaning", "lowpower"},
                                   {"zone_cleaning", "zone_lowpower"},
                                   {"area_cleaning", "area_lowpower"},
                                   {"point_cleaning", "point_lowpower"}}));
}

Node station_button()
{
    const auto asked_home =
        SequenceStar(FallbackStar(key::station_button_value.is("shortpush"), key::hand_wash_flag.present(),
                                  key::need_back_station.present()),
                     DoesTuobuInstall{}, Inverter(FallbackStar(low_power(), low_power_pause())));
    const auto called_off = Sequence(key::station_button_value.is("longpush"), DoesTuobuInstall{},
                                     key::stop_wash_back_lopp_flag.present());
    return SequenceStar(
        key::StationNotNormal.set("false"),
        choose({{asked_home, SequenceStar(play(148), break_off_for_wash())},
                {called_off, SequenceStar(key::stop_wash_back_lopp_flag.erase(),
                                          SaySomething{"stop backwash by station longpush"})}}));
}

// --- beside the way home ------------------------------------------------------------------------

Node show_way_home()
{
    return IfThenElseStar(
        RobotPowerGetLowerThan{"15"},
        SequenceStar(Led_Mode_Set{"BUTTON_LED_Backhome_LowPower"}, key::robot_status.set("clean_back_done")),
        SequenceStar(
            IfThenElseStar(in_fast_mapping(), SaySomething{"fastmode complete backhome,no need led set"},
                           Led_Mode_Set{"BUTTON_LED_Backhome_Normal"}),
            IfThenElseStar(Sequence(FallbackStar(key::mop_is_dirty.present(), key::hand_wash_flag.present()),
                                    DoesTuobuInstall{}),
                           key::robot_status.set("clean_back_wash"),
                           key::robot_status.set("clean_back_done"))));
}

Node stands_at_dock()
{
    return FallbackStar(ForceFailure(SaySomething{"charge Err Debug -------------"}),
                        DoesGetRobotChargeWarnning{}, key::kicked.is_true());
}

}  // namespace

// The way home: the dock is searched, and the mode that follows is charging, or standby where it was not
// found.
TREE(BackHomeIndex)
{
    return DoWhile(
        StepUtility{.new_step_status = "Open"}, AlwaysFailure{},
        SequenceStar(key::tof_reset_map.set(1),
                     when(key::stop_clean_task_falg.present(), SaySomething{"backhome just stop"}),
                     forget_cancelled_mapping(), set_mop_gear(), when(switched_off(), station_button()),
                     DoWhile(show_way_home(), key::current_area_val.kept(), key::avoid_mopped_areas.kept(),
                             IfThenElseStar(stands_at_dock(), kicked_branch(), normal_branch()))));
}
