#include "trees/cleaning/cleaning_mode.h"
#include "trees/cleaning/preparations.h"

namespace {

// --- entry --------------------------------------------------------------------------------------

Nodes note_task()
{
    return row(
        erase("need_to_standby"), NeedInitialAutoMode{}, SetBlackboard{"task_type", "MapClean"},
        IfThenElseStar(
            key_is_any("task_state", {"init", "precleaning"}), SetBlackboard{"task_state", "precleaning"},
            SequenceStar(SaySomething{"enter map clean,task state is"}, SaySomething{"${task_state}"})));
}

Nodes prepare_entry()
{
    return row(Led_Mode_Set{"BUTTON_LED_Working"}, Stop{}, erase("automode_trapped"),
               erase("skip_first_rotate"), erase("record_charge_pose_start"), erase("from_charge_fake_flag"),
               erase("charger_pose_cache"),
               Loop(15, SetCleanSystem{.Brush = "60", .Fan = "0", .Pump = "0", .SideBrush = "35"}),
               SetBlackboard{"kicked", "false"}, erase("carpet_check_changed"), erase("have_trapped_type"),
               SetBlackboard{"reset_collision_times", "0"}, SetBlackboard{"tof_reset_map", "1"},
               erase("automode_in_segment_map"));
}

Node was_completing()
{
    return SequenceStar(key_is("task_state", "completing"), key_is("last_clean_mode", "FastMapBuildMode"));
}

Node start_music()
{
    return IfThenElseStar(present("fast_map_reloc_fail"), erase("fast_map_reloc_fail"),
                          IfThenElseStar(FallbackStar(key_is("task_state", "map_cleaning"), was_completing()),
                                         play("83"), play("82")));
}

// --- restart or resume --------------------------------------------------------------------------

Node is_new_task()
{
    return FallbackStar(
        key_is("task_state", "init"), key_is("task_state", "precleaning"),
        SequenceStar(key_is("task_state", "search_charge"), SubtreeCondition{"SearchChargeEnding"}));
}

// A new home is mapped without a look for the place.
Node begin_new_task()
{
    return SequenceStar(SetBlackboard{"mapping_no_reloc", "true"},
                        SetBlackboard{"disable_reuse_reloc_once", "true"},
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
            SequenceStar(key_is("moved_during_pause", "false"), SlamIsResumable{}),
            SequenceStar(queue("30"), SubtreeCondition{"ForceDelay"},
                         SubtreeCondition{"ActiveRelocalize_LdsInteractive.xml"},
                         IsPointInRectangle{.point = "${current_coord}", .rectangle = "${gridmap_limit}"},
                         queue("85")),
            SequenceStar(SubtreeCondition{"AdvCleanComplete"},
                         ForceFailure(SequenceStar(queue("86"), SubtreeCondition{"RestartCleaning"})))),
        SetBlackboard{"continue_cleaning", "true"});
}

Node restart_or_resume()
{
    return choose({{is_new_task(), begin_new_task()},
                   {key_is_any("task_state", {"completing", "charge", "cleaning", "part_cleaning",
                                              "zone_cleaning", "point_cleaning", "area_cleaning"}),
                    take_over()}},
                  resume());
}

// --- the run ------------------------------------------------------------------------------------

Node note_dock_pose()
{
    return optionally(
        key_is_true("start_from_charger"), Stop{}, Delay{5},
        SubTree("CalcChargerPositionOrNot", calc_charger_position_or_not()),
        IfThenElseStar(
            present("start_from_charger_pose"), SaySomething{"已经存在start_from_charger_pose"},
            SequenceStar(SaySomething{"不存在start_from_charger_pose 拷贝一个"},
                         BlackboardCopy{"current_pose", "only_charger_in_map"},
                         BlackboardCopy{"current_pose", "start_from_charger_pose"},
                         present("start_from_charger_yaw_deg"),
                         PlainPoseMmSetYaw{"start_from_charger_pose", "${start_from_charger_yaw_deg}"},
                         BlackboardCopy{"start_from_charger_pose", "only_charger_in_map"},
                         erase("start_from_charger_yaw_deg"))));
}

Node turn_first()
{
    return IfThenElseStar(FallbackStar(present("continue_cleaning"), present("skip_first_rotate")),
                          SequenceStar(erase("continue_cleaning"), erase("skip_first_rotate")),
                          ForceSuccess(turn_and_watch_level()));
}

Node map_home()
{
    return SequenceStar(SlamCheckFastStart{}, Sequence(when(DoesTuobuInstall{}, go_to_standby()),
                                                       SubtreeCondition{"QuickMapping.xml"}));
}

Node done()
{
    return SequenceStar(SlamCheckFastEnd{}, SaySomething{"merlot 888"}, set_flag("clean_complete"),
                        SetBlackboard{"task_state", "completing"}, SubtreeCondition{"BackHomeIndex"});
}

Node shut_in()
{
    return SequenceStar(SlamCheckFastEnd{}, ValidateAllBridges{}, report_trap(), Delay{500}, go_home());
}

Node low_battery()
{
    return SequenceStar(SetBlackboard{"task_state", "search_charge"}, play("48"),
                        SubtreeCondition{"SearchChargeEnding"}, go_home());
}

Node run()
{
    return SequenceStar(SetLastRobotMode{}, SetBlackboard{"task_state", "map_cleaning"},
                        SetBlackboard{"moved_during_pause", "false"},
                        SetBlackboard{"search_charger_time", "0"}, note_dock_pose(), turn_first(), Stop{},
                        Delay{50}, SubtreeCondition{"PreprocessDealsBeforeCleaning.xml"},
                        ForceSuccess(SubtreeCondition{"Back2cm"}),
                        IfThenElseStar(RobotPowerGetHigherThan{"16"},
                                       Sequence(ConditionTimerSecs{.secs_out_key = "clean_time_for_app",
                                                                   .start_from = "${clean_time_for_app}"},
                                                IfThenElseStar(map_home(), done(), shut_in())),
                                       low_battery()));
}

}  // namespace

// A new home is mapped by a fast drive through it.
TREE(MapBuildModeIndex)
{
    return SequenceStar(
        note_task(), prepare_entry(), start_music(), SetBlackboard{"robot_status", "clean_map_build"},
        Delay{1}, InitIMUCaliTIme{},
        IfThenElseStar(was_completing(), SetBlackboard{"task_state", "map_cleaning"},
                       SaySomething{"first clean"}),
        leave_dock_and_watch_level(), restart_or_resume(),

        SetBlackboard{"last_clean_mode", "FastMapBuildMode"}, SlamStart{}, erase("need_back_mode_changed"),
        erase("mode_dirty_record"), erase("mop_is_dirty"), erase("from_charge_fake_flag"),
        SubtreeCondition{"ForceDelay"},

        DoWhile(SubtreeCondition{"AlwaysSuccess.xml"}, set_flag("gridmap_token_draw_map"), run()));
}
