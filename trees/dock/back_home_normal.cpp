#include "trees/dock/back_home.h"

namespace vemra::trees {

namespace {

// --- what is said at the start ------------------------------------------------------------------

Node goes_home_for_good()
{
    return FallbackStar(
        task_is("search_charge"), task_is("charge"),
        Sequence(task_is("completing"), key::LastRobotMode.present(), key::LastRobotMode.is_any({"1", "12"})),
        low_power_pause());
}

Node announce()
{
    return IfThenElseStar(
        in_fast_mapping(), SaySomething{"fastmode backhome, go on mapbuild"},
        Fallback(key::hand_wash_flag.present(), key::need_back_station.present(),
                 Sequence(switched_off(), key::station_button_value.is("longpush"), play(13)),
                 Sequence(switched_off(), DoesTuobuInstall{}, low_power_pause(), play(139)),
                 Sequence(goes_home_for_good(), play(65)),
                 FallbackStar(key::mop_is_dirty.present(), low_power()), play(13)));
}

// --- where the robot is -------------------------------------------------------------------------

Node no_task_and_no_place()
{
    return FallbackStar(
        task_is("init"), task_is("part_cleaning"),
        Sequence(task_is("precleaning"),
                 Inverter(Sequence(Inverter(SlamIsResumable{}), key::need_back_station.present()))),
        Sequence(switched_off(), task_is("precleaning"), key::need_back_station.present()));
}

Node begin_search_task()
{
    const auto look_again = [] { return key::disable_reuse_reloc_once.set("false"); };
    return SequenceStar(
        when(task_is("part_cleaning"), SaySomething{"BackHomeIndex.xml wifi 1"},
             SubtreeCondition{"AdvCleanComplete"}),
        IfThenElseStar(DoWhile(DockSignalFilter{}, SubtreeCondition{"ReadyToSearchForCharger"}), look_again(),
                       look_again()),
        SubtreeCondition{"AdvRestartCleaning"}, set_task("search_charge"));
}

Node trust_place()
{
    return Sequence(key::moved_during_pause.is("false"), SlamIsResumable{});
}

Node lost()
{
    return ForceFailure(
        choose({{in_fast_mapping(), SequenceStar(play(86), SubtreeCondition{"AdvCleanComplete"},
                                                 SaySomething{"fast mode reloc fail,end last task."},
                                                 set_task("init"), key::fast_backhome_fail.set("true"))},
                {goes_home_to_wash(), play(140)}},
               play(64)));
}

Node found_music()
{
    return choose({{in_fast_mapping(),
                    IfThenElseStar(key::fast_backhome_fail.present(),
                                   SaySomething{"reloc fail in fast backhome,no need play music"}, play(85))},
                   {goes_home_to_wash(), play(145)}},
                  play(55));
}

Node find_place()
{
    return SequenceStar(
        play(30), SubtreeCondition{"ForceDelay"}, quiet_cleaning_system(), set_mop_gear_if_any(),
        FallbackStar(SubtreeCondition{"ActiveRelocalize_LdsInteractive.xml"}, lost()),
        IsPointInRectangle{.point = "${current_coord}", .rectangle = "${gridmap_limit}"}, found_music());
}

Node give_up_old_task()
{
    return IfThenElseStar(
        in_fast_mapping(), SaySomething{"fast mode backhome reloc fail!"},
        SequenceStar(FallbackStar(task_is("search_charge"), key::need_back_station.present(),
                                  SequenceStar(SaySomething{"BackHomeIndex.xml wifi 2"},
                                               SubtreeCondition{"AdvCleanComplete"})),
                     ForceSuccess(IfThenElseStar(key::clean_relo_fail_reuse_relo_succ.present(),
                                                 SequenceStar(key::clean_relo_fail_reuse_relo_succ.erase(),
                                                              SubtreeCondition{"ReuseRestartCleaning"}),
                                                 SubtreeCondition{"RestartCleaning"})),
                     FallbackStar(key::need_back_station.present(), set_task("search_charge"))));
}

Node settle_place()
{
    return ForceSuccess(IfThenElseStar(no_task_and_no_place(), begin_search_task(),
                                       FallbackStar(trust_place(), find_place(), give_up_old_task())));
}

// A fast mapping run that is lost begins anew, by another mode.
Node unless_mapping_is_lost()
{
    return Inverter(SequenceStar(key::fast_backhome_fail.take(), key::fast_map_reloc_fail.flag(),
                                 SaySomething{"fast mode backhome need rebuild map!"}));
}

Node end_running_task()
{
    return optionally(key::task_state.is_any(
                          {"cleaning", "zone_cleaning", "point_cleaning", "area_cleaning", "map_cleaning"}),
                      set_task("charge"),
                      IfThenElseStar(key::segment_map.present(), key::segment_map_info.set("segment_map"),
                                     key::segment_map_info.erase()),
                      erase(key::order_map, key::order_map_original));
}

Node quiet_system_of_country()
{
    return IfThenElseStar(Sequence(switched_off(), key::country.is("CN")),
                          SetCleanSystem{.Brush = "60", .Fan = "50", .Pump = "0", .SideBrush = "35"},
                          quiet_cleaning_system());
}

// A budget that was spent is renewed when the mode starts again.
Node renew_budget()
{
    return unless(key::search_charger_timeout.above(key::search_charger_time.value()),
                  key::search_charger_time.set(0));
}

// --- the end ------------------------------------------------------------------------------------

Node forget_wash()
{
    return IfThenElseStar(
        switched_off(),
        SequenceStar(SaySomething{"shortpush backHome..."}, SaySomething{"before task_state is  "},
                     SaySomething{"${task_state}"}),
        SequenceStar(key::clean_task_end.set("false"), erase(key::mop_is_dirty, key::hand_wash_flag),
                     key::station_button_value.set("normal"), SaySomething{"init when no mop..."}));
}

Node close_task_on_dock()
{
    return ForceSuccess(
        choose({{key::task_state.is_any({"part_lowpower", "charge"}),
                 SequenceStar(SaySomething{"BackHomeIndex.xml wifi 3"}, SubtreeCondition{"AdvCleanComplete"},
                              key::clean_task_end.set("true"), key::clean_done_flag.set("true"))},
                {task_is("search_charge"), SubtreeCondition{"SearchChargeEnding"}},
                {task_is("completing"),
                 SequenceStar(key::station_button_value.set("normal"),
                              when(switched_off(), key::mop_clean_task_end.flag()),
                              key::clean_log_on_charger.set("true"),
                              key::current_pose.copy_to(key::reuse_robot_pose_on_charger),
                              SaySomething{"BackHomeIndex.xml wifi 4"}, SubtreeCondition{"AdvCleanComplete"},
                              set_task("complete"), key::clean_done_flag.set("true"))}}));
}

Node docked()
{
    return SequenceStar(optionally(DoesRobotUsingWaterBox{}, play(0)), forget_wash(), close_task_on_dock(),
                        IfThenElseStar(in_fast_mapping(), play(84), SaySomething{"not fast mode backhome"}),
                        go_charging_mode(), key::chargemuiscflag.flag());
}

// Takes up a task again that the station's button had broken off. Stands behind a test that is off.
Node restore_task()
{
    return IfThenElseStar(
        key::stop_wash_back_lopp_flag.present(),
        SequenceStar(key::stop_wash_back_lopp_flag.erase(), key::mop_dirty.set_typed(0),
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
    return SequenceStar(key::stop_clean_task_falg.erase(), SaySomething{"enter backhome to comlete!"},
                        when(switched_off(), restore_task()));
}

// A search that ran out of time is not closed as a task.
Node close_search_task()
{
    return SequenceStar(task_is("search_charge"),
                        SaySomething{"search_charger_time is ${search_charger_time}."},
                        when(key::search_charger_timeout.above(key::search_charger_time.value()),
                             SubtreeCondition{"SearchChargeEnding"}, key::clean_task_end.set("true")));
}

Node close_other_task()
{
    return SequenceStar(IfThenElseStar(task_is("completing"), key::clean_log_without_charger.set("true"),
                                       SaySomething{"BackHomeIndex.xml wifi 6"}),
                        SaySomething{"BackHomeIndex.xml wifi 5"}, key::station_button_value.set("normal"),
                        erase(key::mop_is_dirty, key::hand_wash_flag), SubtreeCondition{"AdvCleanComplete"});
}

Node close_task_away_from_dock()
{
    return ForceSuccess(IfThenElseStar(
        switched_off(), SequenceStar(SaySomething{"clean task not end..."}, key::clean_task_end.set("true")),
        FallbackStar(task_is("init"),
                     SequenceStar(task_is("precleaning"), key::no_restart_flag.erase(), set_task("init"),
                                  key::task_type.set("Idle")),
                     close_search_task(), close_other_task())));
}

Node not_docked()
{
    return SequenceStar(
        close_task_away_from_dock(), key::task_type.set("Idle"), give_up_search(play(17)),
        key::need_back_station.erase(),
        when(StringMatch{"true", "false"}, Led_Mode_Set{"BUTTON_LED_BackhomeFail"}, Delay{250}),
        go_to_standby(), count_failure());
}

Node go_charging()
{
    return IfThenElse(key::stop_clean_task_falg.present(),
                      ForceFailure(SaySomething{"enter stop loop target 1 "}),
                      SubtreeCondition{"GoCharging_lds.xml"});
}

}  // namespace

Node normal_branch()
{
    return SequenceStar(
        Stop{}, Loop(15, SetCleanSystem{.Brush = "1", .Fan = "0", .Pump = "0", .SideBrush = "0"}), announce(),
        SubtreeCondition{"ForceDelay"}, settle_place(),

        key::relocalize_failed.erase(), unless_mapping_is_lost(), end_running_task(),
        key::moved_during_pause.set("false"), quiet_system_of_country(), SetLastRobotMode{}, renew_budget(),

        MotionActionAccount{"current_motion_type", "Motion", "Charge"}, SlamStart{}, Delay{100},
        SubtreeCondition{"PreprocessDealsBeforeCleaning.xml"}, key::current_area_val.set_typed(0),
        key::avoid_mopped_areas.set_typed("false"), ForceSuccess(SubtreeCondition{"Back2cm"}),

        DoWhile(key::gridmap_token_draw_map.flag(), SetMapDrawMode{.draw_mode = "None", .LockState = "true"},
                choose({{go_charging(), docked()}, {key::stop_clean_task_falg.present(), stopped()}},
                       not_docked())));
}

}  // namespace vemra::trees
