#include "trees/coverage/rooms.h"

namespace {

// --- one room after the other -------------------------------------------------------------------

Nodes find_next_room()
{
    return row(SubTree("FloodSearchAndNavigateForSegment",
                       SequenceStar(Stop{}, Delay{1}, account_motion("Navigate"),
                                    SetBlackboard{"SlamRetry_navi_token", "false"},
                                    RetryUntilSuccesful(
                                        -1, IfThenElseStar(select_room(), go_to_room(),
                                                           SetBlackboard{"found_target_point", "false"})))),
               key_is_true("found_target_point"), FallbackStar(InCurrentDomain{}, goal_within("100")));
}

Nodes note_room_reached()
{
    return row(erase("trapped_in_polygon_virtual_wall"), erase("need_to_open_a_step_token"),
               SetBlackboard{"mop_reach_target_segment", "true"}, SetBlackboard{"zone_reached", "true"},
               SetBlackboard{"are_other_areas_closed", "true"},
               SetBlackboardWithType{"current_clean_times", "int", "1"},
               SetBlackboard{"skip_followwall_timeout_check", "true"}, SetAreaReached{});
}

Node clean_rooms()
{
    return ForceSuccess(
        Repeat(-1, SequenceStar(erase("expand_size"), find_next_room(), note_room_reached(), clean_room())));
}

// --- when no room is left -----------------------------------------------------------------------

Node report_room_not_reached()
{
    const auto report = [](Node kind) {
        return SequenceStar(SaySomething{"Zone not reached"},
                            report_once(std::move(kind), set_flag("have_trapped_type"), Delay{50}));
    };
    return SubTree("Trap_ZoneNotReached",
                   IfThenElseStar(present("zone_searched"),
                                  SequenceStar(erase("zone_searched"),
                                               report(SetBlackboard{"prompt_zone_not_reached", "true"})),
                                  report(set_flag("zone_not_reached"))));
}

Node drive_home_is_proved()
{
    return SequenceStar(erase("need_to_backhome"),
                        IfThenElseStar(way_is_sound(), AlwaysSuccess{}, ForceFailure(prove_way())),
                        set_flag("need_to_backhome"));
}

// Floor that was never tried lies behind what bars the way: that is a blocked path. Else the robot may as
// well go home.
Node no_way_home()
{
    return FallbackStar(
        IfThenElseStar(SearchUntriedArea{"200"},
                       ForceFailure(SaySomething{"KQD: 不切回充，报清扫路径被阻挡"}),
                       SequenceStar(set_flag("need_to_backhome"), SaySomething{"KQD: 切回充"})),
        only_polygon_wall_bars(search_way_to_origin("1")), set_flag("OnElave"));
}

Node end_of_rooms()
{
    return SequenceStar(
        optionally(absent("zone_reached"), report_room_not_reached()),
        SetBlackboard{"are_other_areas_closed", "false"}, find_track_near_origin(),
        FallbackStar(present("skip_origin"),
                     IfThenElseStar(search_way_to_origin("1"), drive_home_is_proved(), no_way_home())));
}

Node room_loop()
{
    return DoWhile(
        TraceLogger{}, StackBlackboard{"are_other_areas_closed"},
        StackBlackboard{"skip_followwall_timeout_check"}, AlwaysSuccess{.new_door_status = "Open"},
        StepUtility{.new_step_status = "Closed", .need_trace_invalid = "true"},
        SequenceStar(AlwaysFailure{}, GenerateVirtualWalls{}, SubtreeCondition{"CheckInVirtualWall.xml"}),
        SequenceStar(erase("need_to_backhome"), default_from("origin_point", "current_coord"),
                     BlackboardCopy{"current_coord", "subregion_decision_point"}, erase("searched_targets"),
                     erase("reuse_while_cleaning"),
                     IfThenElseStar(present("need_to_open_a_step_token"), erase("need_to_open_a_step_token"),
                                    SetBlackboard{"do_not_open_a_step_token", "true"}),
                     RetryUntilSuccesful(-1, SequenceStar(clean_rooms(), end_of_rooms())),
                     FallbackStar(present("skip_origin"), present("need_to_backhome"))));
}

Node report()
{
    return ForceFailure(IfThenElseStar(present("OnElave"),
                                       SaySomething{"KQD: 不切回充，直接返回，由模式树决定被困类型"},
                                       SubTree("Trap_CleanVWBlocked", report_clean_blocked())));
}

}  // namespace

// Cleans a map of rooms: picks the next room by a fixed order of ways, goes there, cleans it and the floor
// beside it, as often as the room asks.
TREE(CleanSelectedAreas)
{
    return IfThenElse(GridmapLimitCheck{},
                      Sequence(ForceSuccess(SubtreeCondition{"EscapeCoat"}),
                               DoWhile(StackBlackboard{"OnElave"}, StackBlackboard{"need_to_backhome"},
                                       FallbackStar(room_loop(), report()))),
                      SubtreeCondition{"BackToMapLimit"});
}
