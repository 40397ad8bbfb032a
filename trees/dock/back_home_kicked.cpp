#include "trees/dock/back_home.h"

namespace vemra::trees {

namespace {

// Until it stands level, but no further than the slope of a dock is long.
Node back_off_slope()
{
    return IfThenElseStar(
        IfOnAPlane{"200"}, AlwaysSuccess{},
        SequenceStar(SetBlackboard{"Cnt", "0"},
                     ForceSuccess(Frameout(200, DoWhile(IntAdd{"${Cnt}", "1", "Cnt"},
                                                        Fallback(IfOnAPlane{"200"}, GoBackwards{})))),
                     SaySomething{"${Cnt}"},
                     IfThenElseStar(IsAGreaterThanBFloat{"100", "${Cnt}"}, AlwaysSuccess{},
                                    ForceSuccess(Frameout(100, GoBackwards{})))));
}

Node begin_search_task()
{
    return SequenceStar(
        SetBlackboard{"disable_reuse_reloc_once", "false"}, set_flag("disable_reuse_reloc_music"),
        SetBlackboard{"mica_on_charger", "true"}, SetBlackboard{"keep_clean_area", "true"},
        BlackboardCopy{"clean_time_for_app", "clean_time_for_app_bak"},
        IfThenElseStar(switched_off(), drive_forward_40cm(),
                       optionally(ForceSuccess(Frameout(50, GoBackwards{})), back_off_slope())),
        SubtreeCondition{"AdvRestartCleaning"},
        BlackboardCopy{"clean_time_for_app_bak", "clean_time_for_app"}, erase("clean_time_for_app_bak"),
        set_task("search_charge"));
}

// Whatever comes of it, the search goes on.
Node find_place_for_open_task()
{
    return FallbackStar(
        ForceFailure(SaySomething{"charge err while task_state != init"}), StringMatch{"true", "false"},
        SlamIsResumable{}, SubtreeCondition{"ActiveRelocalize_LdsInteractive.xml"},
        optionally(key_is_any("task_state", {"lowpower", "area_lowpower", "zone_lowpower", "point_lowpower"}),
                   SetBlackboard{"moved_during_lowpower", "true"}));
}

Node leave_faulty_contact()
{
    return IfThenElseStar(
        DoesGetRobotChargeWarnning{},
        SequenceStar(
            SaySomething{"charge Err Debug 0"}, Delay{50},
            BlackboardCopy{"current_pose", "back_origin_point"}, SetBlackboard{"is_go_backword", "true"},
            SaySomething{"charge Err Debug 1"},
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
        IfThenElse(key_is_true("got_charger_force_halt"),
                   SequenceStar(SetBlackboard{"got_charger_force_halt", "false"}, ForceFailure(Delay{50})),
                   SequenceStar(Stop{}, Delay{50}, go_charging_mode())),
        AlwaysFailure{});
}

Node note_place()
{
    return BlackboardCopy{"current_pose", "go_charging_kicked_flag"};
}

Node go_charging()
{
    return DoWhile(note_place(),
                   SequenceStar(set_flag("kicked_dock"),
                                PostProcess(IfThenElseStar(BoolMatch{"false", "false"},
                                                           SubtreeCondition{"GoCharging_lds.xml"},
                                                           SubtreeCondition{"GoChargingWithoutMap"}),
                                            erase("kicked_dock"))));
}

Node end_search_task()
{
    return SequenceStar(SetBlackboard{"CleanCompleteWithoutCleaningLog", "true"},
                        SubtreeCondition{"SearchChargeEnding"});
}

Node docked()
{
    return SequenceStar(SetBlackboard{"charge_voice_disable", "true"},
                        SaySomething{"pv: set charge_voice_disable true!"},
                        optionally(task_is("search_charge"), end_search_task()), go_charging_mode());
}

Node not_docked()
{
    return SequenceStar(IfThenElseStar(task_is("search_charge"), end_search_task(),
                                       FallbackStar(task_is("init"), task_is("precleaning"),
                                                    SequenceStar(SaySomething{"BackHomeIndex.xml wifi 0"},
                                                                 SubtreeCondition{"AdvCleanComplete"}))),
                        give_up_search(IfThenElseStar(switched_off(), play("112"), play("17"))),
                        go_to_standby(), count_failure());
}

// The robot was knocked off here, so its dock is here.
Node search_around()
{
    return SequenceStar(BlackboardCopy{"current_pose", "only_charger_in_map"},
                        IfThenElseStar(go_charging(), docked(), not_docked()));
}

}  // namespace

Node kicked_branch()
{
    return SequenceStar(
        trace("kicked back home"), SetBlackboard{"kicked", "false"},
        SetBlackboard{"moved_during_pause", "false"}, Stop{},
        Loop(15, SetCleanSystem{.Brush = "1", .Fan = "0", .Pump = "0", .SideBrush = "0"}), SetLastRobotMode{},

        IfThenElseStar(
            FallbackStar(task_is("init"), SequenceStar(task_is("precleaning"), absent("need_back_station"))),
            begin_search_task(), find_place_for_open_task()),
        SlamStart{}, leave_faulty_contact(),

        SetCleanSystem{.Brush = "0", .Fan = "0", .Pump = "0", .SideBrush = "35"},
        MotionActionAccount{"current_motion_type", "Motion", "Charge"},
        SetBlackboardWithType{"current_area_val", "int", "0"},
        SetBlackboardWithType{"avoid_mopped_areas", "bool", "false"},

        DoWhile(set_flag("gridmap_token_draw_map"), note_place(),
                FallbackStar(settle_on_contact(), search_around())));
}

}  // namespace vemra::trees
