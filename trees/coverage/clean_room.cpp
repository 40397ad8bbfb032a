#include "trees/coverage/rooms.h"
#include "trees/idioms.h"

namespace vemra::trees {

namespace {

Node plan()
{
    return SubtreeCondition{"PlanInSubregion_FollowGong.xml"};
}

Node first_pass()
{
    return ActionDecorator(optionally(
        BoolMatch{"${in_new_area}", "false"},
        plan_room("true", IfThenElseStar(key::enable_overall_follow_wall.present(), plan(), plan())),
        MakeMap{.roi = "${current_subregion}", .expand_mode = ""},
        MapCopy{"obstacle_expanded_map", "area_clean_map"}));
}

// --- floor beside the room ----------------------------------------------------------------------

Node moved_on_to_another_room()
{
    return SequenceStar(key::clean_in_new_area.present(),
                        TrappedInSth{.map = "segment_map", .value = "${current_area_val}"},
                        key::clean_in_new_area.erase());
}

Node flood_search_for_unknown()
{
    return SubTree(
        "FloodSearchAndNavigateForUnknown",
        SequenceStar(RetryUntilSuccesful(
                         -1, IfThenElseStar(
                                 SequenceStar(search_map("Normal"), key::found_target_point.set("true")),
                                 FallbackStar(SubtreeCondition{"NavigateProc"},
                                              SequenceStar(draw("BlockOnly"),
                                                           follow_walls_to_goal("TargetCollisionNoUnknown"))),
                                 key::found_target_point.set("false"))),
                     key::found_target_point.is_true(), goal_within("100")));
}

Node cover_beside_room()
{
    return DoWhile(UpdateSegmentMap{"false"}, key::origin_point.kept(), key::SlamRetry_no_multi_clean.kept(),
                   sensor_on("SegmentVirtualWallMap"), sensor_on("FollowUncleanedContour"),
                   SequenceStar(key::current_coord.copy_to(key::origin_point),
                                key::clean_in_new_area.set("true"), key::SlamRetry_no_multi_clean.set("true"),
                                SubtreeCondition{"RecursiveAutoMode_FollowGong.xml"}));
}

// What the map of rooms left out beside this room gets a small coverage of its own.
Node follow_up()
{
    return ActionDecorator(DoWhile(
        key::clean_in_new_area.kept(),
        Sequence(Inverter(moved_on_to_another_room()),
                 optionally(room_is("126", "false"), key::current_area_val.copy_to(key::last_area_val),
                            when(room_is("127", "true"), key::area_clean_map.erase()),
                            Repeat(-1, SequenceStar(key::is_draw_area_cleaning.is("false"),
                                                    key::last_area_val.copy_to(key::current_area_val),
                                                    flood_search_for_unknown(), cover_beside_room()))))));
}

// --- once more ----------------------------------------------------------------------------------

// Each pass crosses the last one.
Node turn_lines()
{
    return IfThenElseStar(key::gong_vertically.holds("true"), key::gong_vertically.set("false"),
                          key::gong_vertically.set("true"));
}

Node further_passes()
{
    return ActionDecorator(ForceSuccess(Repeat(
        -1,
        SequenceStar(key::current_clean_times.set_typed("${current_clean_times} + 1"),
                     key::current_clean_times.copy_to(key::current_clean_times_origin),
                     Inverter(ExceedMaxTimes{}), turn_lines(),
                     FallbackStar(room_is("126", "true"), key::gridmap_limit.copy_to(key::current_subregion)),
                     plan_room("false", plan())))));
}

}  // namespace

Node clean_room()
{
    return DoWhile(key::origin_point.kept(),
                   IfThenElse(TrappedInOtherArea{}, key::trapped_in_other_area.flag(),
                              ForceSuccess(DoWhile(key::reuse_while_cleaning.erase(),
                                                   Sequence(key::trapped_in_polygon_virtual_wall.absent(),
                                                            key::trapped_in_other_area.erase(),
                                                            key::current_coord.copy_to(key::origin_point),
                                                            first_pass(), follow_up(), further_passes())))));
}

}  // namespace vemra::trees
