#include "trees/coverage/rooms.h"

namespace {

// --- one room after the other -------------------------------------------------------------------

Nodes find_next_room()
{
    return row(
        SubTree(
            "FloodSearchAndNavigateForSegment",
            SequenceStar(Stop{}, Delay{1}, account_motion("Navigate"), key::SlamRetry_navi_token.set("false"),
                         RetryUntilSuccesful(-1, IfThenElseStar(select_room(), go_to_room(),
                                                                key::found_target_point.set("false"))))),
        key::found_target_point.is_true(), FallbackStar(InCurrentDomain{}, goal_within("100")));
}

Nodes note_room_reached()
{
    return row(erase(key::trapped_in_polygon_virtual_wall, key::need_to_open_a_step_token),
               key::mop_reach_target_segment.set("true"), key::zone_reached.set("true"),
               key::are_other_areas_closed.set("true"), key::current_clean_times.set_typed(1),
               key::skip_followwall_timeout_check.set("true"), SetAreaReached{});
}

Node clean_rooms()
{
    return ForceSuccess(Repeat(
        -1, SequenceStar(key::expand_size.erase(), find_next_room(), note_room_reached(), clean_room())));
}

// --- when no room is left -----------------------------------------------------------------------

Node report_room_not_reached()
{
    const auto report = [](Node kind) {
        return SequenceStar(SaySomething{"Zone not reached"},
                            report_once(std::move(kind), key::have_trapped_type.flag(), Delay{50}));
    };
    return SubTree("Trap_ZoneNotReached",
                   IfThenElseStar(key::zone_searched.present(),
                                  SequenceStar(key::zone_searched.erase(),
                                               report(key::prompt_zone_not_reached.set("true"))),
                                  report(key::zone_not_reached.flag())));
}

Node drive_home_is_proved()
{
    return SequenceStar(key::need_to_backhome.erase(),
                        IfThenElseStar(way_is_sound(), AlwaysSuccess{}, ForceFailure(prove_way())),
                        key::need_to_backhome.flag());
}

// Floor that was never tried lies behind what bars the way: that is a blocked path. Else the robot may as
// well go home.
Node no_way_home()
{
    return FallbackStar(
        IfThenElseStar(SearchUntriedArea{"200"},
                       ForceFailure(SaySomething{"KQD: 不切回充，报清扫路径被阻挡"}),
                       SequenceStar(key::need_to_backhome.flag(), SaySomething{"KQD: 切回充"})),
        only_polygon_wall_bars(search_way_to_origin("1")), key::OnElave.flag());
}

Node end_of_rooms()
{
    return SequenceStar(
        optionally(key::zone_reached.absent(), report_room_not_reached()),
        key::are_other_areas_closed.set("false"), find_track_near_origin(),
        FallbackStar(key::skip_origin.present(),
                     IfThenElseStar(search_way_to_origin("1"), drive_home_is_proved(), no_way_home())));
}

Node room_loop()
{
    return DoWhile(
        TraceLogger{}, key::are_other_areas_closed.kept(), key::skip_followwall_timeout_check.kept(),
        AlwaysSuccess{.new_door_status = "Open"},
        StepUtility{.new_step_status = "Closed", .need_trace_invalid = "true"},
        SequenceStar(AlwaysFailure{}, GenerateVirtualWalls{}, SubtreeCondition{"CheckInVirtualWall.xml"}),
        SequenceStar(
            key::need_to_backhome.erase(), key::origin_point.default_from(key::current_coord),
            key::current_coord.copy_to(key::subregion_decision_point),
            erase(key::searched_targets, key::reuse_while_cleaning),
            IfThenElseStar(key::need_to_open_a_step_token.present(), key::need_to_open_a_step_token.erase(),
                           key::do_not_open_a_step_token.set("true")),
            RetryUntilSuccesful(-1, SequenceStar(clean_rooms(), end_of_rooms())),
            FallbackStar(key::skip_origin.present(), key::need_to_backhome.present())));
}

Node report()
{
    return ForceFailure(IfThenElseStar(key::OnElave.present(),
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
                               DoWhile(key::OnElave.kept(), key::need_to_backhome.kept(),
                                       FallbackStar(room_loop(), report()))),
                      SubtreeCondition{"BackToMapLimit"});
}
