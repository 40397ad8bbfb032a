#include "trees/cleaning/cleaning_mode.h"

namespace vemra::trees {

namespace {

Nodes note_task(const CleaningMode& mode)
{
    return row(
        SetBlackboard{"station_button_value", "normal"},
        IfThenElseStar(key_is("task_state", "init"),
                       SequenceStar(erase("no_restart_flag"), SetBlackboard{"task_state", "precleaning"}),
                       SequenceStar(SaySomething{mode.entry_message}, SaySomething{"${task_state}"})),
        SetBlackboard{"task_type", mode.task_type});
}

Nodes prepare_entry(const CleaningMode& mode)
{
    return row(Led_Mode_Set{"BUTTON_LED_Working"}, Stop{}, erase("skip_first_rotate"),
               SubtreeCondition{"WashBeforeClean"}, set_mop_gear_if_any(),
               Loop(15, SetCleanSystem{.Brush = "1", .Fan = "1", .Pump = "0", .SideBrush = "1"}),
               SubtreeCondition{"WashModeJudge"},

               SetBlackboard{"kicked", "false"}, mode.presets_before,
               SetBlackboard{"reset_collision_times", "0"}, SetBlackboard{"tof_reset_map", "1"},
               mode.presets_after,

               when(key_is("task_state", mode.states.lowpower_pause),
                    SetBlackboard{"task_state", mode.states.lowpower}));
}

// A return from a wash goes on without a sound.
Node resume_music()
{
    return IfThenElseStar(
        switched_off(), IfThenElseStar(key_is_true("app_mop_mode"), play("138"), play("137")),
        IfThenElseStar(switched_off(),
                       by_text("robot_mop_mode", {{"1", play("138")}, {"2", play("137")}, {"0", play("58")}}),
                       play("58")));
}

Node start_or_resume_music(const CleaningMode& mode)
{
    return choose({{DoesExcuteOrderAutoMode{}, mode.scheduled_start},
                   {key_is("task_state", mode.states.lowpower),
                    unless(present("mop_is_dirty"), play("10"), set_flag("break_point_start_clean"))},
                   {Inverter(key_is("task_state", mode.states.cleaning)),
                    IfThenElseStar(present("WorkStartMusic_shield"), erase("WorkStartMusic_shield"),
                                   mode.start_music)}},
                  resume_music());
}

// --- restart or resume --------------------------------------------------------------------------

Node is_new_task(const CleaningMode& mode)
{
    return FallbackStar(
        key_is("task_state", "init"),
        SequenceStar(absent("no_restart_flag"), key_is("task_state", "precleaning")),
        SequenceStar(any_of(mode.closed_search_states), SubtreeCondition{"SearchChargeEnding"}));
}

Node begin_new_task(const CleaningMode& mode)
{
    return SequenceStar(
        mode.mark_reloc,
        IfThenElse(
            SequenceStar(key_is("task_state", "precleaning"), present("no_restart_flag")),
            SaySomething{mode.no_restart_message},
            SequenceStar(SubtreeCondition{"AdvRestartCleaning"}, SetBlackboard{"no_restart_flag", "true"},
                         SetBlackboard{"task_type", mode.task_type})),
        mode.forget_input);
}

Node take_over(const CleaningMode& mode)
{
    return SequenceStar(IfThenElseStar(key_is("task_state", "precleaning"), AlwaysSuccess{},
                                       SubtreeCondition{"AdvCleanComplete"}),
                        mode.mark_reloc, SubtreeCondition{"AdvRestartCleaning"},
                        SetBlackboard{"task_state", "precleaning"}, SetBlackboard{"no_restart_flag", "true"},
                        SetBlackboard{"task_type", mode.task_type}, mode.forget_input);
}

Node nothing_has_moved()
{
    return SequenceStar(key_is("moved_during_pause", "false"), SlamIsResumable{});
}

Node find_place_again()
{
    return SequenceStar(queue("30"), SubtreeCondition{"ForceDelay"}, quiet_cleaning_system(),
                        SubtreeCondition{"ActiveRelocalize_LdsInteractive.xml"},
                        IsPointInRectangle{.point = "${current_coord}", .rectangle = "${gridmap_limit}"},
                        queue("54"));
}

Node resume(const CleaningMode& mode)
{
    return optionally(FallbackStar(nothing_has_moved(), find_place_again(), mode.give_up_old_task),
                      SetBlackboard{"continue_cleaning", "true"});
}

Node restart_or_resume(const CleaningMode& mode)
{
    return choose({{is_new_task(mode), begin_new_task(mode)}, {any_of(mode.other_task), take_over(mode)}},
                  resume(mode));
}

Node stand_by_when_lost()
{
    return IfThenElseStar(SequenceStar(switched_on(), present("need_to_standby")),
                          SequenceStar(SaySomething{"reloc failed change mode to standby2..."}, Delay{50},
                                       erase("need_to_standby"), queue("112"),
                                       SetBlackboard{"task_state", "init"}, ForceFailure(go_to_standby())),
                          AlwaysSuccess{});
}

Nodes before_the_run(const CleaningMode& mode)
{
    return row(SetBlackboard{"record_charge_pose_start", "false"},
               SetBlackboard{"continue_work", mode.continue_work},
               SubtreeCondition{"CleanFromChargerJudgment"}, SetBlackboard{"last_clean_mode", mode.mode_name},
               SlamStart{},

               erase("need_back_mode_temp"), erase("need_back_mode_changed"), erase("robot_standby_flag"),
               erase("mode_dirty_record"), erase("mop_is_dirty"), erase("from_charge_fake_flag"),
               SetBlackboard{"robot_moved", "false"}, erase("breakpoint_wash"),
               SubtreeCondition{"ForceDelay"}, set_flag("Have_Clean_Before_AutoDust"));
}

// --- the run ------------------------------------------------------------------------------------

Nodes note_run(const CleaningMode& mode)
{
    return row(SetLastRobotMode{}, erase("no_restart_flag"),
               SetBlackboard{"task_state", mode.states.cleaning},
               SetBlackboard{"moved_during_pause", "false"}, SetBlackboard{"search_charger_time", "0"},
               mode.take_new_input);
}

Node note_dock_pose(const CleaningMode& mode)
{
    return optionally(
        BlackboardCopy{"start_from_charger", "is_start_from_charger"}, key_is_true("start_from_charger"),
        Stop{}, Delay{5}, SubtreeCondition{"CalcChargerPositionOrNot"},
        IfThenElseStar(
            present("start_from_charger_pose"), SaySomething{"已经存在start_from_charger_pose"},
            SequenceStar(SaySomething{"不存在start_from_charger_pose 拷贝一个"},
                         BlackboardCopy{"current_pose", "only_charger_in_map"},
                         BlackboardCopy{"current_pose", "start_from_charger_pose"}, mode.turn_start_pose)));
}

Node turn_first(const CleaningMode& mode)
{
    return IfThenElseStar(FallbackStar(present("continue_cleaning"), present("skip_first_rotate")),
                          SequenceStar(erase("continue_cleaning"), erase("skip_first_rotate")),
                          ForceSuccess(mode.first_turn));
}

// Where the cloth was found dirty the work goes on after the wash, on a line with the same heading.
Node keep_break_point(const CleaningMode& mode)
{
    return when(
        SequenceStar(absent("wash_mop_break_point"), mode.wash_condition),
        SaySomething{"set wash_mop_break_point"},
        DoWhile(TraceLogger{},
                SequenceStar(BlackboardCopy{"current_pose", "wash_mop_break_point"}, Delay{1})),
        IfThenElseStar(key_is("current_motion_type", "Gong"),
                       BlackboardCopy{"current_yaw_deg", "wash_mop_break_deg"}, erase("wash_mop_break_deg")));
}

// Asked on every tick: low power and a dirty cloth interrupt the run wherever it is.
Node can_go_on(const CleaningMode& mode)
{
    return SequenceStar(
        RobotPowerGetHigherThan{"16"},
        IfThenElseStar(
            SequenceStar(uses_mop(), present("mop_dirty"), IsAGreaterThanBFloat{"${mop_dirty}", "100"}),
            ForceFailure(SequenceStar(SetBlackboard{"mop_is_dirty", "true"}, keep_break_point(mode))),
            AlwaysSuccess{}));
}

Node return_to_break_point(const CleaningMode& mode)
{
    return ActionDecorator(optionally(
        present("wash_mop_break_point"), mode.wash_condition,
        BlackboardCopy{"wash_mop_break_point", "navi_target_point"},
        IfThenElseStar(
            SubtreeCondition{"NavigateProcWithHistoryMapNoneStop", "fales"},
            when(present("wash_mop_break_deg"),
                 Sequence(SubtreeCondition{"EscapeCoat"}, Rotate{.angle_deg = "${wash_mop_break_deg}",
                                                                 .angular_velocity_deg_s = "60",
                                                                 .false_relative_true_absolute = "true"})),
            SequenceStar(erase("gong_motion_type"), erase("chain_region_mask"))),
        erase("wash_mop_break_point"), erase("wash_mop_break_deg")));
}

Node succeed(const CleaningMode& mode)
{
    return SequenceStar(set_flag("clean_complete"), SetBlackboard{"task_state", "completing"},
                        SetBlackboard{"clean_task_end", "true"}, SaySomething{"clean task is completing..."},
                        mode.on_success);
}

// The stage of the task stays, and nothing is played.
Node give_up(const CleaningMode& mode)
{
    return SequenceStar(ValidateAllBridges{}, mode.before_trap_report, report_trap(), Delay{500},
                        restore_clean_mode(), go_home());
}

Node run(const CleaningMode& mode)
{
    return Sequence(
        return_to_break_point(mode),
        ConditionTimerSecs{.secs_out_key = "clean_time_for_app", .start_from = "${clean_time_for_app}"},
        IfThenElseStar(DoWhile(mode.wash_account, mode.coverage), succeed(mode), give_up(mode)));
}

Node interrupt(const CleaningMode& mode)
{
    return SequenceStar(SetBlackboard{"task_state", mode.states.lowpower}, mode.at_low_power,
                        SetBlackboard{"mode_dirty_record", mode.dirty_record},
                        Fallback(SequenceStar(present("mop_is_dirty"), SaySomething{"clean task end 2..."},
                                              SetBlackboard{"clean_task_end", "true"}),
                                 SequenceStar(DoesRobotBreakPointEnable{}, set_flag("breakpoint_wash"),
                                              SetBlackboard{"clean_task_end", "true"},
                                              SaySomething{"clean task end 0..."}, play("14")),
                                 play("48")),
                        go_home());
}

}  // namespace

Node cleaning_task(const CleaningMode& mode)
{
    return SequenceStar(
        optionally(key_is("task_state", "init"), mode.take_input), mode.mode_gate_early, note_task(mode),
        mode.mode_gate_late, prepare_entry(mode), start_or_resume_music(mode),

        Delay{1}, InitIMUCaliTIme{},
        when(key_is("task_state", mode.states.lowpower), SetBlackboard{"task_state", mode.states.cleaning}),
        mode.leave_dock, mode.mapping_run, restart_or_resume(mode), stand_by_when_lost(),

        before_the_run(mode),
        DoWhile(MoveCleanSysModeSet{}, SubtreeCondition{"WashModeJudge"}, set_mop_gear(),
                SubtreeCondition{"auto_cleanmode_set.xml"}, SubtreeCondition{"AlwaysSuccess.xml"},
                set_flag("gridmap_token_draw_map"), mode.companions,
                SequenceStar(note_run(mode), note_dock_pose(mode), turn_first(mode), Stop{}, Delay{50},
                             SubtreeCondition{"PreprocessDealsBeforeCleaning.xml"},
                             ForceSuccess(SubtreeCondition{"Back2cm"}),
                             IfThenElse(can_go_on(mode), run(mode), interrupt(mode)))));
}

}  // namespace vemra::trees
