#include "trees/coverage/rooms.h"
#include "trees/idioms.h"

namespace vemra::trees {

namespace {

Node search_rooms()
{
    return search_map("Segment");
}

Node other_rooms_closed(const char* closed)
{
    return key::are_other_areas_closed.set(closed);
}

Node only_rooms_to_mop(const char* only)
{
    return key::use_mop_clean_list.set(only);
}

Nodes take_room()
{
    return row(SetCurrentArea{}, FixGongDir{});
}

Node found()
{
    return key::found_target_point.set("true");
}

Node first_pass()
{
    return key::current_clean_times_origin.set_typed(1);
}

Nodes leave_room()
{
    return row(key::current_area_val.erase(), other_rooms_closed("false"), only_rooms_to_mop("false"));
}

Node drive_as_second_chance()
{
    return key::SlamRetry_navi_token.set("true");
}

Node uses_mop()
{
    return key::use_mop.holds("true");
}

Node avoid_mopped(const char* avoid)
{
    return key::avoid_mopped_areas.set_typed(avoid);
}

// --- the ways, in their order -------------------------------------------------------------------

Node open_a_step()
{
    return ForceFailure(IfThenElseStar(key::do_not_open_a_step_token.present(),
                                       key::do_not_open_a_step_token.erase(), OpenAStep{}));
}

// The place where the robot got into another room is shut.
Node out_of_other_room()
{
    return SequenceStar(key::reuse_while_cleaning.absent(), key::trapped_in_other_area.take(),
                        other_rooms_closed("false"), only_rooms_to_mop("false"), search_rooms(),
                        VirtualWallAddPoint{.point_mm = "${current_pose}", .layer = "${map_mask}"},
                        take_room(), found());
}

Nodes stay_in_room()
{
    return row(key::reuse_while_cleaning.absent(), key::current_area_val.present(), InCurrentDomain{},
               other_rooms_closed("true"), only_rooms_to_mop("false"));
}

Node rest_of_room()
{
    return SequenceStar(stay_in_room(), search_rooms(), take_room(), found());
}

Node second_chance_in_room()
{
    const auto worth_the_trip = DoWhile(key::are_other_areas_closed.kept(),
                                        SequenceStar(other_rooms_closed("false"), SlamRetryAreaCheck{}));
    return SequenceStar(stay_in_room(), find_second_chance(worth_the_trip), drive_as_second_chance(),
                        found());
}

// A dirt above 100 sends the robot to wash its cloth before the next room.
Node wash_between_rooms()
{
    return when(BoolMatch{"${current_area_val} != ${last_mopped_area_val}", "true"},
                key::current_area_val.erase(),
                when(key::mop_reach_target_segment.present(), key::mop_dirty.set_typed("101.0"), Delay{10}));
}

Node next_room_after_wash()
{
    return SequenceStar(
        uses_mop(), BoolMatch{"${wash_mop_mode} == 0", "true"}, key::current_area_val.present(),
        key::current_area_val.copy_to(key::last_mopped_area_val), key::current_area_val.erase(),
        other_rooms_closed("false"), SearchPartitionTargetArea{}, only_rooms_to_mop("true"),
        FallbackStar(search_rooms(), SequenceStar(only_rooms_to_mop("false"), search_rooms())), take_room(),
        wash_between_rooms(), found());
}

Node next_room_to_mop()
{
    return SequenceStar(uses_mop(), other_rooms_closed("false"), SearchPartitionTargetArea{},
                        erase(key::reuse_while_cleaning, key::current_area_val), only_rooms_to_mop("true"),
                        avoid_mopped("true"), search_rooms(), first_pass(), take_room(), found());
}

Node mopped_room_again()
{
    return SequenceStar(uses_mop(), other_rooms_closed("false"), only_rooms_to_mop("true"),
                        avoid_mopped("false"), search_rooms(), first_pass(), take_room(), found());
}

// No room was reached, and a wall of the user is what bars them.
Node report_wall_before_rooms()
{
    return ForceFailure(
        SequenceStar(key::zone_reached.absent(), without_sensor("PolygonVirtualWall", search_rooms()),
                     report_once(key::prompt_zone_vw_blocked.set("true"), SaySomething{"tolvar disable vw"},
                                 key::have_trapped_type.flag(), Delay{50})));
}

Node next_room()
{
    return SequenceStar(key::reuse_while_cleaning.erase(), leave_room(),
                        FallbackStar(SequenceStar(search_rooms(), first_pass(), take_room(), found()),
                                     report_wall_before_rooms()));
}

Node second_chance_anywhere()
{
    return SequenceStar(leave_room(), find_second_chance(SlamRetryAreaCheck{}), drive_as_second_chance(),
                        take_room(), found());
}

Node room_of_stored_map_again()
{
    return SequenceStar(BoolMatch{"${reuse_cleaning}==1", "true"}, leave_room(), search_map("SegmentRetry"),
                        first_pass(), take_room(), found());
}

}  // namespace

Node select_room()
{
    return FallbackStar(open_a_step(), out_of_other_room(), rest_of_room(), second_chance_in_room(),
                        next_room_after_wash(), next_room_to_mop(), mopped_room_again(), next_room(),
                        second_chance_anywhere(), room_of_stored_map_again());
}

}  // namespace vemra::trees
