#include "trees/cleaning/cleaning_mode.h"

namespace vemra::trees {

namespace {

Nodes note_task(const CleaningMode& mode)
{
    return row(key::station_button_value.set("normal"),
               IfThenElseStar(key::task_state.is("init"),
                              SequenceStar(key::no_restart_flag.erase(), key::task_state.set("precleaning")),
                              SequenceStar(SaySomething{mode.entry_message}, SaySomething{"${task_state}"})),
               key::task_type.set(mode.task_type));
}

Nodes prepare_entry(const CleaningMode& mode)
{
    return row(
        Led_Mode_Set{"BUTTON_LED_Working"}, Stop{}, key::skip_first_rotate.erase(),
        SubtreeCondition{"WashBeforeClean"}, set_mop_gear_if_any(),
        Loop(15, SetCleanSystem{.Brush = "1", .Fan = "1", .Pump = "0", .SideBrush = "1"}),
        SubtreeCondition{"WashModeJudge"},

        key::kicked.set("false"), mode.presets_before, key::reset_collision_times.set(0),
        key::tof_reset_map.set(1), mode.presets_after,

        when(key::task_state.is(mode.states.lowpower_pause), key::task_state.set(mode.states.lowpower)));
}

// A return from a wash goes on without a sound.
Node resume_music()
{
    return choose({{switched_off(), IfThenElseStar(key::app_mop_mode.is_true(), play(138), play(137))},
                   {switched_off(),
                    by_text(key::robot_mop_mode, {{"1", play(138)}, {"2", play(137)}, {"0", play(58)}})}},
                  play(58));
}

Node start_or_resume_music(const CleaningMode& mode)
{
    return choose({{DoesExcuteOrderAutoMode{}, mode.scheduled_start},
                   {key::task_state.is(mode.states.lowpower),
                    unless(key::mop_is_dirty.present(), play(10), key::break_point_start_clean.flag())},
                   {Inverter(key::task_state.is(mode.states.cleaning)),
                    IfThenElseStar(key::WorkStartMusic_shield.present(), key::WorkStartMusic_shield.erase(),
                                   mode.start_music)}},
                  resume_music());
}

// --- restart or resume --------------------------------------------------------------------------

Node is_new_task(const CleaningMode& mode)
{
    return FallbackStar(
        key::task_state.is("init"),
        Sequence(key::no_restart_flag.absent(), key::task_state.is("precleaning")),
        SequenceStar(any_of(mode.closed_search_states), SubtreeCondition{"SearchChargeEnding"}));
}

Node begin_new_task(const CleaningMode& mode)
{
    return SequenceStar(
        mode.mark_reloc,
        IfThenElse(Sequence(key::task_state.is("precleaning"), key::no_restart_flag.present()),
                   SaySomething{mode.no_restart_message},
                   SequenceStar(SubtreeCondition{"AdvRestartCleaning"}, key::no_restart_flag.set("true"),
                                key::task_type.set(mode.task_type))),
        mode.forget_input);
}

Node take_over(const CleaningMode& mode)
{
    return SequenceStar(IfThenElseStar(key::task_state.is("precleaning"), AlwaysSuccess{},
                                       SubtreeCondition{"AdvCleanComplete"}),
                        mode.mark_reloc, SubtreeCondition{"AdvRestartCleaning"},
                        key::task_state.set("precleaning"), key::no_restart_flag.set("true"),
                        key::task_type.set(mode.task_type), mode.forget_input);
}

Node nothing_has_moved()
{
    return Sequence(key::moved_during_pause.is("false"), SlamIsResumable{});
}

Node find_place_again()
{
    return SequenceStar(queue(30), SubtreeCondition{"ForceDelay"}, quiet_cleaning_system(),
                        SubtreeCondition{"ActiveRelocalize_LdsInteractive.xml"},
                        IsPointInRectangle{.point = "${current_coord}", .rectangle = "${gridmap_limit}"},
                        queue(54));
}

Node resume(const CleaningMode& mode)
{
    return optionally(FallbackStar(nothing_has_moved(), find_place_again(), mode.give_up_old_task),
                      key::continue_cleaning.set("true"));
}

Node restart_or_resume(const CleaningMode& mode)
{
    return choose({{is_new_task(mode), begin_new_task(mode)}, {any_of(mode.other_task), take_over(mode)}},
                  resume(mode));
}

Node stand_by_when_lost()
{
    return when(Sequence(switched_on(), key::need_to_standby.present()),
                SaySomething{"reloc failed change mode to standby2..."}, Delay{50},
                key::need_to_standby.erase(), queue(112), key::task_state.set("init"),
                ForceFailure(go_to_standby()));
}

Nodes before_the_run(const CleaningMode& mode)
{
    return row(key::record_charge_pose_start.set("false"), key::continue_work.set(mode.continue_work),
               SubtreeCondition{"CleanFromChargerJudgment"}, key::last_clean_mode.set(mode.mode_name),
               SlamStart{},

               erase(key::need_back_mode_temp, key::need_back_mode_changed, key::robot_standby_flag,
                     key::mode_dirty_record, key::mop_is_dirty, key::from_charge_fake_flag),
               key::robot_moved.set("false"), key::breakpoint_wash.erase(), SubtreeCondition{"ForceDelay"},
               key::Have_Clean_Before_AutoDust.flag());
}

// --- the run ------------------------------------------------------------------------------------

Nodes note_run(const CleaningMode& mode)
{
    return row(SetLastRobotMode{}, key::no_restart_flag.erase(), key::task_state.set(mode.states.cleaning),
               key::moved_during_pause.set("false"), key::search_charger_time.set(0), mode.take_new_input);
}

Node note_dock_pose(const CleaningMode& mode)
{
    return optionally(
        key::start_from_charger.copy_to(key::is_start_from_charger), key::start_from_charger.is_true(),
        Stop{}, Delay{5}, SubtreeCondition{"CalcChargerPositionOrNot"},
        IfThenElseStar(
            key::start_from_charger_pose.present(), SaySomething{"已经存在start_from_charger_pose"},
            SequenceStar(SaySomething{"不存在start_from_charger_pose 拷贝一个"},
                         key::current_pose.copy_to(key::only_charger_in_map),
                         key::current_pose.copy_to(key::start_from_charger_pose), mode.turn_start_pose)));
}

Node turn_first(const CleaningMode& mode)
{
    return IfThenElseStar(FallbackStar(key::continue_cleaning.present(), key::skip_first_rotate.present()),
                          SequenceStar(erase(key::continue_cleaning, key::skip_first_rotate)),
                          ForceSuccess(mode.first_turn));
}

// Where the cloth was found dirty the work goes on after the wash, on a line with the same heading.
Node keep_break_point(const CleaningMode& mode)
{
    return when(
        Sequence(key::wash_mop_break_point.absent(), mode.wash_condition),
        SaySomething{"set wash_mop_break_point"},
        DoWhile(TraceLogger{}, SequenceStar(key::current_pose.copy_to(key::wash_mop_break_point), Delay{1})),
        IfThenElseStar(key::current_motion_type.is("Gong"),
                       key::current_yaw_deg.copy_to(key::wash_mop_break_deg),
                       key::wash_mop_break_deg.erase()));
}

// Asked on every tick: low power and a dirty cloth interrupt the run wherever it is.
Node can_go_on(const CleaningMode& mode)
{
    return SequenceStar(
        RobotPowerGetHigherThan{"16"},
        when(Sequence(uses_mop(), key::mop_dirty.present(), key::mop_dirty.above(100)),
             ForceFailure(SequenceStar(key::mop_is_dirty.set("true"), keep_break_point(mode)))));
}

Node return_to_break_point(const CleaningMode& mode)
{
    return ActionDecorator(optionally(
        key::wash_mop_break_point.present(), mode.wash_condition,
        key::wash_mop_break_point.copy_to(key::navi_target_point),
        IfThenElseStar(
            SubtreeCondition{"NavigateProcWithHistoryMapNoneStop", "fales"},
            ForceSuccess(Sequence(key::wash_mop_break_deg.present(), SubtreeCondition{"EscapeCoat"},
                                  Rotate{.angle_deg = "${wash_mop_break_deg}",
                                         .angular_velocity_deg_s = "60",
                                         .false_relative_true_absolute = "true"})),
            SequenceStar(erase(key::gong_motion_type, key::chain_region_mask))),
        erase(key::wash_mop_break_point, key::wash_mop_break_deg)));
}

Node succeed(const CleaningMode& mode)
{
    return SequenceStar(key::clean_complete.flag(), key::task_state.set("completing"),
                        key::clean_task_end.set("true"), SaySomething{"clean task is completing..."},
                        mode.on_success);
}

// The stage of the task stays, and nothing is played.
Node give_up(const CleaningMode& mode)
{
    return SequenceStar(ValidateAllBridges{}, mode.before_trap_report, report_trap(), Delay{500},
                        restore_clean_mode(), go_home());
}

Node clean(const CleaningMode& mode)
{
    Node work = IfThenElseStar(DoWhile(mode.wash_account, mode.coverage), succeed(mode), give_up(mode));
    if (mode.set_area.empty())
        return work;
    return IfThenElseStar(steps_as_one(mode.set_area), std::move(work), go_to_standby());
}

Node run(const CleaningMode& mode)
{
    return Sequence(return_to_break_point(mode), key::clean_time_for_app.counts_seconds(), clean(mode));
}

Node interrupt(const CleaningMode& mode)
{
    return SequenceStar(
        key::task_state.set(mode.states.lowpower), mode.at_low_power,
        key::mode_dirty_record.set(mode.dirty_record),
        Fallback(Sequence(key::mop_is_dirty.present(), SaySomething{"clean task end 2..."},
                          key::clean_task_end.set("true")),
                 Sequence(DoesRobotBreakPointEnable{}, key::breakpoint_wash.flag(),
                          key::clean_task_end.set("true"), SaySomething{"clean task end 0..."}, play(14)),
                 play(48)),
        go_home());
}

}  // namespace

Node cleaning_task(const CleaningMode& mode)
{
    return SequenceStar(
        optionally(key::task_state.is("init"), mode.take_input), mode.mode_gate_early, note_task(mode),
        mode.mode_gate_late, prepare_entry(mode), start_or_resume_music(mode),

        Delay{1}, InitIMUCaliTIme{},
        when(key::task_state.is(mode.states.lowpower), key::task_state.set(mode.states.cleaning)),
        mode.leave_dock, mode.mapping_run, restart_or_resume(mode), stand_by_when_lost(),

        before_the_run(mode),
        DoWhile(MoveCleanSysModeSet{}, SubtreeCondition{"WashModeJudge"}, set_mop_gear(),
                SubtreeCondition{"auto_cleanmode_set.xml"}, SubtreeCondition{"AlwaysSuccess.xml"},
                key::gridmap_token_draw_map.flag(), mode.companions,
                SequenceStar(note_run(mode), note_dock_pose(mode), turn_first(mode), Stop{}, Delay{50},
                             SubtreeCondition{"PreprocessDealsBeforeCleaning.xml"},
                             ForceSuccess(SubtreeCondition{"Back2cm"}),
                             IfThenElse(can_go_on(mode), run(mode), interrupt(mode)))));
}

}  // namespace vemra::trees
