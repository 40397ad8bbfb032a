#include "trees/dock/back_home.h"

namespace vemra::trees {

namespace {

// Until it stands level, but no further than the slope of a dock is long.
Node back_off_slope()
{
    return IfThenElseStar(
        IfOnAPlane{"200"}, AlwaysSuccess{},
        SequenceStar(key::Cnt.set(0),
                     ForceSuccess(Frameout(
                         200, DoWhile(key::Cnt.plus(1), Fallback(IfOnAPlane{"200"}, GoBackwards{})))),
                     SaySomething{"${Cnt}"},
                     IfThenElseStar(IsAGreaterThanBFloat{"100", "${Cnt}"}, AlwaysSuccess{},
                                    ForceSuccess(Frameout(100, GoBackwards{})))));
}

Node begin_search_task()
{
    return SequenceStar(
        key::disable_reuse_reloc_once.set("false"), key::disable_reuse_reloc_music.flag(),
        key::mica_on_charger.set("true"), key::keep_clean_area.set("true"),
        key::clean_time_for_app.copy_to(key::clean_time_for_app_bak),
        IfThenElseStar(switched_off(), drive_forward_40cm(),
                       optionally(ForceSuccess(Frameout(50, GoBackwards{})), back_off_slope())),
        SubtreeCondition{"AdvRestartCleaning"}, key::clean_time_for_app_bak.copy_to(key::clean_time_for_app),
        key::clean_time_for_app_bak.erase(), set_task("search_charge"));
}

// Whatever comes of it, the search goes on.
Node find_place_for_open_task()
{
    return FallbackStar(
        ForceFailure(SaySomething{"charge err while task_state != init"}), StringMatch{"true", "false"},
        SlamIsResumable{}, SubtreeCondition{"ActiveRelocalize_LdsInteractive.xml"},
        optionally(key::task_state.is_any({"lowpower", "area_lowpower", "zone_lowpower", "point_lowpower"}),
                   key::moved_during_lowpower.set("true")));
}

Node leave_faulty_contact()
{
    return IfThenElseStar(
        DoesGetRobotChargeWarnning{},
        SequenceStar(
            SaySomething{"charge Err Debug 0"}, Delay{50}, key::current_pose.copy_to(key::back_origin_point),
            key::is_go_backword.set("true"), SaySomething{"charge Err Debug 1"},
            IfThenElseStar(switched_off(), drive_forward_40cm(), ForceSuccess(Frameout(50, GoBackwards{}))),
            Stop{}, Delay{300}, SaySomething{"charge Err Debug 2"}),
        SubtreeCondition{"ForceDelay"});
}

// --- the search ---------------------------------------------------------------------------------

// A search that is still under way when the contact comes is left to end by itself.
Node settle_on_contact()
{
    return IfThenElseWithoutHalt(
        DoesRobotGetCharger{},
        IfThenElse(key::got_charger_force_halt.is_true(),
                   SequenceStar(key::got_charger_force_halt.set("false"), ForceFailure(Delay{50})),
                   SequenceStar(Stop{}, Delay{50}, go_charging_mode())),
        AlwaysFailure{});
}

Node note_place()
{
    return key::current_pose.copy_to(key::go_charging_kicked_flag);
}

Node go_charging()
{
    return DoWhile(note_place(),
                   SequenceStar(key::kicked_dock.flag(),
                                PostProcess(IfThenElseStar(BoolMatch{"false", "false"},
                                                           SubtreeCondition{"GoCharging_lds.xml"},
                                                           SubtreeCondition{"GoChargingWithoutMap"}),
                                            key::kicked_dock.erase())));
}

Node end_search_task()
{
    return SequenceStar(key::CleanCompleteWithoutCleaningLog.set("true"),
                        SubtreeCondition{"SearchChargeEnding"});
}

Node docked()
{
    return SequenceStar(key::charge_voice_disable.set("true"),
                        SaySomething{"pv: set charge_voice_disable true!"},
                        optionally(task_is("search_charge"), end_search_task()), go_charging_mode());
}

Node not_docked()
{
    return SequenceStar(IfThenElseStar(task_is("search_charge"), end_search_task(),
                                       FallbackStar(task_is("init"), task_is("precleaning"),
                                                    SequenceStar(SaySomething{"BackHomeIndex.xml wifi 0"},
                                                                 SubtreeCondition{"AdvCleanComplete"}))),
                        give_up_search(IfThenElseStar(switched_off(), play(112), play(17))), go_to_standby(),
                        count_failure());
}

// The robot was knocked off here, so its dock is here.
Node search_around()
{
    return SequenceStar(key::current_pose.copy_to(key::only_charger_in_map),
                        IfThenElseStar(go_charging(), docked(), not_docked()));
}

}  // namespace

Node kicked_branch()
{
    return SequenceStar(
        trace("kicked back home"), key::kicked.set("false"), key::moved_during_pause.set("false"), Stop{},
        Loop(15, SetCleanSystem{.Brush = "1", .Fan = "0", .Pump = "0", .SideBrush = "0"}), SetLastRobotMode{},

        IfThenElseStar(
            FallbackStar(task_is("init"), Sequence(task_is("precleaning"), key::need_back_station.absent())),
            begin_search_task(), find_place_for_open_task()),
        SlamStart{}, leave_faulty_contact(),

        SetCleanSystem{.Brush = "0", .Fan = "0", .Pump = "0", .SideBrush = "35"},
        MotionActionAccount{"current_motion_type", "Motion", "Charge"}, key::current_area_val.set_typed(0),
        key::avoid_mopped_areas.set_typed("false"),

        DoWhile(key::gridmap_token_draw_map.flag(), note_place(),
                FallbackStar(settle_on_contact(), search_around())));
}

}  // namespace vemra::trees
