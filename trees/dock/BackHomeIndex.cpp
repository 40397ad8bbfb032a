#include "trees/dock/back_home.h"

namespace {

Node forget_cancelled_mapping()
{
    return IfThenElseStar(SequenceStar(present("FastMapCleanCancleFlag"), erase("FastMapCleanCancleFlag"),
                                       SaySomething{"backhome test reset state"}),
                          set_task("map_cleaning"), SaySomething{"backhome test donothing"});
}

// --- the station's button, switched off ---------------------------------------------------------

Node break_off_for_wash()
{
    return optionally(
        key_is("station_button_value", "shortpush"), SaySomething{"station button breakpoint..."},
        BlackboardCopy{"current_pose", "wash_mop_break_point"},
        IfThenElseStar(present("stop_wash_back_lopp_flag"), ForceFailure(erase("stop_wash_back_lopp_flag")),
                       SaySomething{"enter backhome back wash"}),
        set_flag("mop_is_dirty"), SetBlackboard{"clean_task_end", "true"},
        change_task({{"cleaning", "lowpower"},
                     {"zone_cleaning", "zone_lowpower"},
                     {"area_cleaning", "area_lowpower"},
                     {"point_cleaning", "point_lowpower"}}));
}

Node station_button()
{
    const auto asked_home =
        SequenceStar(FallbackStar(key_is("station_button_value", "shortpush"), present("hand_wash_flag"),
                                  present("need_back_station")),
                     DoesTuobuInstall{}, Inverter(FallbackStar(low_power(), low_power_pause())));
    const auto called_off = SequenceStar(key_is("station_button_value", "longpush"), DoesTuobuInstall{},
                                         present("stop_wash_back_lopp_flag"));
    return SequenceStar(
        SetBlackboard{"StationNotNormal", "false"},
        choose({{asked_home, SequenceStar(play("148"), break_off_for_wash())},
                {called_off, SequenceStar(erase("stop_wash_back_lopp_flag"),
                                          SaySomething{"stop backwash by station longpush"})}}));
}

// --- beside the way home ------------------------------------------------------------------------

Node show_way_home()
{
    return IfThenElseStar(
        RobotPowerGetLowerThan{"15"},
        SequenceStar(Led_Mode_Set{"BUTTON_LED_Backhome_LowPower"},
                     SetBlackboard{"robot_status", "clean_back_done"}),
        SequenceStar(
            IfThenElseStar(in_fast_mapping(), SaySomething{"fastmode complete backhome,no need led set"},
                           Led_Mode_Set{"BUTTON_LED_Backhome_Normal"}),
            IfThenElseStar(SequenceStar(FallbackStar(present("mop_is_dirty"), present("hand_wash_flag")),
                                        DoesTuobuInstall{}),
                           SetBlackboard{"robot_status", "clean_back_wash"},
                           SetBlackboard{"robot_status", "clean_back_done"})));
}

Node stands_at_dock()
{
    return FallbackStar(ForceFailure(SaySomething{"charge Err Debug -------------"}),
                        DoesGetRobotChargeWarnning{}, key_is_true("kicked"));
}

}  // namespace

// The way home: the dock is searched, and the mode that follows is charging, or standby where it was not
// found.
TREE(BackHomeIndex)
{
    return DoWhile(StepUtility{.new_step_status = "Open"}, AlwaysFailure{},
                   SequenceStar(SetBlackboard{"tof_reset_map", "1"},
                                when(present("stop_clean_task_falg"), SaySomething{"backhome just stop"}),
                                forget_cancelled_mapping(), set_mop_gear(),
                                IfThenElseStar(switched_off(), station_button(), AlwaysSuccess{}),
                                DoWhile(show_way_home(), StackBlackboard{"current_area_val"},
                                        StackBlackboard{"avoid_mopped_areas"},
                                        IfThenElseStar(stands_at_dock(), kicked_branch(), normal_branch()))));
}
