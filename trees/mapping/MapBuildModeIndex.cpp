#include "trees/cleaning/cleaning_mode.h"
#include "trees/cleaning/preparations.h"

namespace {

// --- entry --------------------------------------------------------------------------------------

Nodes note_task()
{
    return row(
        key::need_to_standby.erase(), NeedInitialAutoMode{}, key::task_type.set("MapClean"),
        IfThenElseStar(
            key::task_state.is_any({"init", "precleaning"}), key::task_state.set("precleaning"),
            SequenceStar(SaySomething{"enter map clean,task state is"}, SaySomething{"${task_state}"})));
}

Nodes prepare_entry()
{
    return row(Led_Mode_Set{"BUTTON_LED_Working"}, Stop{},
               erase(key::automode_trapped, key::skip_first_rotate, key::record_charge_pose_start,
                     key::from_charge_fake_flag, key::charger_pose_cache),
               Loop(15, SetCleanSystem{.Brush = "60", .Fan = "0", .Pump = "0", .SideBrush = "35"}),
               key::kicked.set("false"), erase(key::carpet_check_changed, key::have_trapped_type),
               key::reset_collision_times.set(0), key::tof_reset_map.set(1),
               key::automode_in_segment_map.erase());
}

Node was_completing()
{
    return Sequence(key::task_state.is("completing"), key::last_clean_mode.is("FastMapBuildMode"));
}

Node start_music()
{
    return choose({{key::fast_map_reloc_fail.present(), key::fast_map_reloc_fail.erase()},
                   {FallbackStar(key::task_state.is("map_cleaning"), was_completing()), play(83)}},
                  play(82));
}

// --- restart or resume --------------------------------------------------------------------------

Node is_new_task()
{
    return FallbackStar(
        key::task_state.is("init"), key::task_state.is("precleaning"),
        SequenceStar(key::task_state.is("search_charge"), SubtreeCondition{"SearchChargeEnding"}));
}

// A new home is mapped without a look for the place.
Node begin_new_task()
{
    return SequenceStar(key::mapping_no_reloc.set("true"), key::disable_reuse_reloc_once.set("true"),
                        SubtreeCondition{"AdvRestartCleaning"}, Delay{50});
}

Node take_over()
{
    return SequenceStar(SubtreeCondition{"AdvCleanComplete"}, SubtreeCondition{"RestartCleaning"});
}

Node resume()
{
    return optionally(
        FallbackStar(
            Sequence(key::moved_during_pause.is("false"), SlamIsResumable{}),
            SequenceStar(queue(30), SubtreeCondition{"ForceDelay"},
                         SubtreeCondition{"ActiveRelocalize_LdsInteractive.xml"},
                         IsPointInRectangle{.point = "${current_coord}", .rectangle = "${gridmap_limit}"},
                         queue(85)),
            SequenceStar(SubtreeCondition{"AdvCleanComplete"},
                         ForceFailure(SequenceStar(queue(86), SubtreeCondition{"RestartCleaning"})))),
        key::continue_cleaning.set("true"));
}

Node restart_or_resume()
{
    return choose({{is_new_task(), begin_new_task()},
                   {key::task_state.is_any({"completing", "charge", "cleaning", "part_cleaning",
                                            "zone_cleaning", "point_cleaning", "area_cleaning"}),
                    take_over()}},
                  resume());
}

// --- the run ------------------------------------------------------------------------------------

Node note_dock_pose()
{
    return optionally(
        key::start_from_charger.is_true(), Stop{}, Delay{5},
        SubTree("CalcChargerPositionOrNot", calc_charger_position_or_not()),
        IfThenElseStar(
            key::start_from_charger_pose.present(), SaySomething{"已经存在start_from_charger_pose"},
            SequenceStar(SaySomething{"不存在start_from_charger_pose 拷贝一个"},
                         key::current_pose.copy_to(key::only_charger_in_map),
                         key::current_pose.copy_to(key::start_from_charger_pose),
                         key::start_from_charger_yaw_deg.present(),
                         PlainPoseMmSetYaw{"start_from_charger_pose", "${start_from_charger_yaw_deg}"},
                         key::start_from_charger_pose.copy_to(key::only_charger_in_map),
                         key::start_from_charger_yaw_deg.erase())));
}

Node turn_first()
{
    return IfThenElseStar(FallbackStar(key::continue_cleaning.present(), key::skip_first_rotate.present()),
                          SequenceStar(erase(key::continue_cleaning, key::skip_first_rotate)),
                          ForceSuccess(turn_and_watch_level()));
}

Node map_home()
{
    return SequenceStar(SlamCheckFastStart{}, Sequence(when(DoesTuobuInstall{}, go_to_standby()),
                                                       SubtreeCondition{"QuickMapping.xml"}));
}

Node done()
{
    return SequenceStar(SlamCheckFastEnd{}, SaySomething{"merlot 888"}, key::clean_complete.flag(),
                        key::task_state.set("completing"), SubtreeCondition{"BackHomeIndex"});
}

Node shut_in()
{
    return SequenceStar(SlamCheckFastEnd{}, ValidateAllBridges{}, report_trap(), Delay{500}, go_home());
}

Node low_battery()
{
    return SequenceStar(key::task_state.set("search_charge"), play(48),
                        SubtreeCondition{"SearchChargeEnding"}, go_home());
}

Node run()
{
    return SequenceStar(
        SetLastRobotMode{}, key::task_state.set("map_cleaning"), key::moved_during_pause.set("false"),
        key::search_charger_time.set(0), note_dock_pose(), turn_first(), Stop{}, Delay{50},
        SubtreeCondition{"PreprocessDealsBeforeCleaning.xml"}, ForceSuccess(SubtreeCondition{"Back2cm"}),
        IfThenElseStar(
            RobotPowerGetHigherThan{"16"},
            Sequence(key::clean_time_for_app.counts_seconds(), IfThenElseStar(map_home(), done(), shut_in())),
            low_battery()));
}

}  // namespace

// A new home is mapped by a fast drive through it.
TREE(MapBuildModeIndex)
{
    return SequenceStar(
        note_task(), prepare_entry(), start_music(), key::robot_status.set("clean_map_build"), Delay{1},
        InitIMUCaliTIme{},
        IfThenElseStar(was_completing(), key::task_state.set("map_cleaning"), SaySomething{"first clean"}),
        leave_dock_and_watch_level(), restart_or_resume(),

        key::last_clean_mode.set("FastMapBuildMode"), SlamStart{},
        erase(key::need_back_mode_changed, key::mode_dirty_record, key::mop_is_dirty,
              key::from_charge_fake_flag),
        SubtreeCondition{"ForceDelay"},

        DoWhile(SubtreeCondition{"AlwaysSuccess.xml"}, key::gridmap_token_draw_map.flag(), run()));
}
