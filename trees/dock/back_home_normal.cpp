#include "trees/dock/back_home.h"

namespace vemra::trees {

namespace {

// --- what is said at the start ------------------------------------------------------------------

Node goes_home_for_good()
{
    return FallbackStar(task_is("search_charge"), task_is("charge"),
                        SequenceStar(task_is("completing"), key_is_any("LastRobotMode", {"1", "12"})),
                        low_power_pause());
}

Node announce()
{
    return IfThenElseStar(
        in_fast_mapping(), SaySomething{"fastmode backhome, go on mapbuild"},
        Fallback(present("hand_wash_flag"), present("need_back_station"),
                 SequenceStar(switched_off(), key_is("station_button_value", "longpush"), play("13")),
                 SequenceStar(switched_off(), DoesTuobuInstall{}, low_power_pause(), play("139")),
                 SequenceStar(goes_home_for_good(), play("65")),
                 FallbackStar(present("mop_is_dirty"), low_power()), play("13")));
}

// --- where the robot is -------------------------------------------------------------------------

Node no_task_and_no_place()
{
    return FallbackStar(
        task_is("init"), task_is("part_cleaning"),
        SequenceStar(task_is("precleaning"),
                     Inverter(SequenceStar(Inverter(SlamIsResumable{}), present("need_back_station")))),
        SequenceStar(switched_off(), task_is("precleaning"), present("need_back_station")));
}

Node begin_search_task()
{
    const auto look_again = [] { return SetBlackboard{"disable_reuse_reloc_once", "false"}; };
    return SequenceStar(
        when(task_is("part_cleaning"), SaySomething{"BackHomeIndex.xml wifi 1"},
             SubtreeCondition{"AdvCleanComplete"}),
        IfThenElseStar(DoWhile(DockSignalFilter{}, SubtreeCondition{"ReadyToSearchForCharger"}), look_again(),
                       look_again()),
        SubtreeCondition{"AdvRestartCleaning"}, set_task("search_charge"));
}

Node trust_place()
{
    return SequenceStar(key_is("moved_during_pause", "false"), SlamIsResumable{});
}

Node lost()
{
    return ForceFailure(
        IfThenElseStar(in_fast_mapping(),
                       SequenceStar(play("86"), SubtreeCondition{"AdvCleanComplete"},
                                    SaySomething{"fast mode reloc fail,end last task."}, set_task("init"),
                                    SetBlackboard{"fast_backhome_fail", "true"}),
                       IfThenElseStar(goes_home_to_wash(), play("140"), play("64"))));
}

Node found_music()
{
    return IfThenElseStar(
        in_fast_mapping(),
        IfThenElseStar(present("fast_backhome_fail"),
                       SaySomething{"reloc fail in fast backhome,no need play music"}, play("85")),
        IfThenElseStar(goes_home_to_wash(), play("145"), play("55")));
}

Node find_place()
{
    return SequenceStar(
        play("30"), SubtreeCondition{"ForceDelay"}, quiet_cleaning_system(), set_mop_gear_if_any(),
        FallbackStar(SubtreeCondition{"ActiveRelocalize_LdsInteractive.xml"}, lost()),
        IsPointInRectangle{.point = "${current_coord}", .rectangle = "${gridmap_limit}"}, found_music());
}

Node give_up_old_task()
{
    return IfThenElseStar(
        in_fast_mapping(), SaySomething{"fast mode backhome reloc fail!"},
        SequenceStar(FallbackStar(task_is("search_charge"), present("need_back_station"),
                                  SequenceStar(SaySomething{"BackHomeIndex.xml wifi 2"},
                                               SubtreeCondition{"AdvCleanComplete"})),
                     ForceSuccess(IfThenElseStar(present("clean_relo_fail_reuse_relo_succ"),
                                                 SequenceStar(erase("clean_relo_fail_reuse_relo_succ"),
                                                              SubtreeCondition{"ReuseRestartCleaning"}),
                                                 SubtreeCondition{"RestartCleaning"})),
                     FallbackStar(present("need_back_station"), set_task("search_charge"))));
}

Node settle_place()
{
    return ForceSuccess(IfThenElseStar(no_task_and_no_place(), begin_search_task(),
                                       FallbackStar(trust_place(), find_place(), give_up_old_task())));
}

// A fast mapping run that is lost begins anew, by another mode.
Node unless_mapping_is_lost()
{
    return Inverter(SequenceStar(present("fast_backhome_fail"), erase("fast_backhome_fail"),
                                 set_flag("fast_map_reloc_fail"),
                                 SaySomething{"fast mode backhome need rebuild map!"}));
}

Node end_running_task()
{
    return optionally(key_is_any("task_state", {"cleaning", "zone_cleaning", "point_cleaning",
                                                "area_cleaning", "map_cleaning"}),
                      set_task("charge"),
                      IfThenElseStar(present("segment_map"), SetBlackboard{"segment_map_info", "segment_map"},
                                     erase("segment_map_info")),
                      erase("order_map"), erase("order_map_original"));
}

Node quiet_system_of_country()
{
    return IfThenElseStar(SequenceStar(switched_off(), key_is("country", "CN")),
                          SetCleanSystem{.Brush = "60", .Fan = "50", .Pump = "0", .SideBrush = "35"},
                          quiet_cleaning_system());
}

// A budget that was spent is renewed when the mode starts again.
Node renew_budget()
{
    return unless(IsAGreaterThanBInt{"${search_charger_timeout}", "${search_charger_time}"},
                  SetBlackboard{"search_charger_time", "0"});
}

// --- the end ------------------------------------------------------------------------------------

Node forget_wash()
{
    return IfThenElseStar(
        switched_off(),
        SequenceStar(SaySomething{"shortpush backHome..."}, SaySomething{"before task_state is  "},
                     SaySomething{"${task_state}"}),
        SequenceStar(SetBlackboard{"clean_task_end", "false"}, erase("mop_is_dirty"), erase("hand_wash_flag"),
                     SetBlackboard{"station_button_value", "normal"}, SaySomething{"init when no mop..."}));
}

Node close_task_on_dock()
{
    return ForceSuccess(choose(
        {{key_is_any("task_state", {"part_lowpower", "charge"}),
          SequenceStar(SaySomething{"BackHomeIndex.xml wifi 3"}, SubtreeCondition{"AdvCleanComplete"},
                       SetBlackboard{"clean_task_end", "true"}, SetBlackboard{"clean_done_flag", "true"})},
         {task_is("search_charge"), SubtreeCondition{"SearchChargeEnding"}},
         {task_is("completing"),
          SequenceStar(SetBlackboard{"station_button_value", "normal"},
                       when(switched_off(), set_flag("mop_clean_task_end")),
                       SetBlackboard{"clean_log_on_charger", "true"},
                       BlackboardCopy{"current_pose", "reuse_robot_pose_on_charger"},
                       SaySomething{"BackHomeIndex.xml wifi 4"}, SubtreeCondition{"AdvCleanComplete"},
                       set_task("complete"), SetBlackboard{"clean_done_flag", "true"})}}));
}

Node docked()
{
    return SequenceStar(optionally(DoesRobotUsingWaterBox{}, play("0")), forget_wash(), close_task_on_dock(),
                        IfThenElseStar(in_fast_mapping(), play("84"), SaySomething{"not fast mode backhome"}),
                        go_charging_mode(), set_flag("chargemuiscflag"));
}

// Takes up a task again that the station's button had broken off. Stands behind a test that is off.
Node restore_task()
{
    return IfThenElseStar(
        present("stop_wash_back_lopp_flag"),
        SequenceStar(erase("stop_wash_back_lopp_flag"), SetBlackboardWithType{"mop_dirty", "float", "0"},
                     IfThenElseStar(low_power(),
                                    SequenceStar(change_task({{"lowpower", "cleaning"},
                                                              {"zone_lowpower", "zone_cleaning"},
                                                              {"area_lowpower", "area_cleaning"},
                                                              {"point_lowpower", "point_cleaning"}}),
                                                 SaySomething{"enter backhome to complete backwash task"}),
                                    SaySomething{"enter backhome to complete backwash task 1"})),
        SaySomething{"enter backhome process not complete task,need check!"});
}

Node stopped()
{
    return SequenceStar(erase("stop_clean_task_falg"), SaySomething{"enter backhome to comlete!"},
                        IfThenElseStar(switched_off(), restore_task(), AlwaysSuccess{}));
}

// A search that ran out of time is not closed as a task.
Node close_search_task()
{
    return SequenceStar(
        task_is("search_charge"), SaySomething{"search_charger_time is ${search_charger_time}."},
        when(IsAGreaterThanBInt{"${search_charger_timeout}", "${search_charger_time}"},
             SubtreeCondition{"SearchChargeEnding"}, SetBlackboard{"clean_task_end", "true"}));
}

Node close_other_task()
{
    return SequenceStar(
        IfThenElseStar(task_is("completing"), SetBlackboard{"clean_log_without_charger", "true"},
                       SaySomething{"BackHomeIndex.xml wifi 6"}),
        SaySomething{"BackHomeIndex.xml wifi 5"}, SetBlackboard{"station_button_value", "normal"},
        erase("mop_is_dirty"), erase("hand_wash_flag"), SubtreeCondition{"AdvCleanComplete"});
}

Node close_task_away_from_dock()
{
    return ForceSuccess(IfThenElseStar(
        switched_off(),
        SequenceStar(SaySomething{"clean task not end..."}, SetBlackboard{"clean_task_end", "true"}),
        FallbackStar(task_is("init"),
                     SequenceStar(task_is("precleaning"), erase("no_restart_flag"), set_task("init"),
                                  SetBlackboard{"task_type", "Idle"}),
                     close_search_task(), close_other_task())));
}

Node not_docked()
{
    return SequenceStar(
        close_task_away_from_dock(), SetBlackboard{"task_type", "Idle"}, give_up_search(play("17")),
        erase("need_back_station"),
        when(StringMatch{"true", "false"}, Led_Mode_Set{"BUTTON_LED_BackhomeFail"}, Delay{250}),
        go_to_standby(), count_failure());
}

Node go_charging()
{
    return IfThenElse(present("stop_clean_task_falg"),
                      ForceFailure(SaySomething{"enter stop loop target 1 "}),
                      SubtreeCondition{"GoCharging_lds.xml"});
}

}  // namespace

Node normal_branch()
{
    return SequenceStar(
        Stop{}, Loop(15, SetCleanSystem{.Brush = "1", .Fan = "0", .Pump = "0", .SideBrush = "0"}), announce(),
        SubtreeCondition{"ForceDelay"}, settle_place(),

        erase("relocalize_failed"), unless_mapping_is_lost(), end_running_task(),
        SetBlackboard{"moved_during_pause", "false"}, quiet_system_of_country(), SetLastRobotMode{},
        renew_budget(),

        MotionActionAccount{"current_motion_type", "Motion", "Charge"}, SlamStart{}, Delay{100},
        SubtreeCondition{"PreprocessDealsBeforeCleaning.xml"},
        SetBlackboardWithType{"current_area_val", "int", "0"},
        SetBlackboardWithType{"avoid_mopped_areas", "bool", "false"},
        ForceSuccess(SubtreeCondition{"Back2cm"}),

        DoWhile(set_flag("gridmap_token_draw_map"), SetMapDrawMode{.draw_mode = "None", .LockState = "true"},
                IfThenElseStar(go_charging(), docked(),
                               IfThenElseStar(present("stop_clean_task_falg"), stopped(), not_docked()))));
}

}  // namespace vemra::trees
