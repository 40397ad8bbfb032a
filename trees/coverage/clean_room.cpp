#include "trees/conditions.h"
#include "trees/coverage/rooms.h"

namespace vemra::trees {

namespace {

Node plan()
{
    return SubtreeCondition{"PlanInSubregion_FollowGong.xml"};
}

Node first_pass()
{
    return ActionDecorator(
        optionally(BoolMatch{"${in_new_area}", "false"},
                   plan_room("true", IfThenElseStar(present("enable_overall_follow_wall"), plan(), plan())),
                   MakeMap{.roi = "${current_subregion}", .expand_mode = ""},
                   MapCopy{"obstacle_expanded_map", "area_clean_map"}));
}

// --- floor beside the room ----------------------------------------------------------------------

Node moved_on_to_another_room()
{
    return SequenceStar(present("clean_in_new_area"),
                        TrappedInSth{.map = "segment_map", .value = "${current_area_val}"},
                        erase("clean_in_new_area"));
}

Node flood_search_for_unknown()
{
    return SubTree(
        "FloodSearchAndNavigateForUnknown",
        SequenceStar(
            RetryUntilSuccesful(
                -1, IfThenElseStar(
                        SequenceStar(search_map("Normal"), SetBlackboard{"found_target_point", "true"}),
                        FallbackStar(SubtreeCondition{"NavigateProc"},
                                     SequenceStar(draw("BlockOnly"),
                                                  follow_walls_to_goal("TargetCollisionNoUnknown"))),
                        SetBlackboard{"found_target_point", "false"})),
            key_is_true("found_target_point"), goal_within("100")));
}

Node cover_beside_room()
{
    return DoWhile(UpdateSegmentMap{"false"}, StackBlackboard{"origin_point"},
                   StackBlackboard{"SlamRetry_no_multi_clean"},
                   TemporarilyEnableSensor{.lock_status = "false", .sensor = "SegmentVirtualWallMap"},
                   TemporarilyEnableSensor{.lock_status = "false", .sensor = "FollowUncleanedContour"},
                   SequenceStar(BlackboardCopy{"current_coord", "origin_point"},
                                SetBlackboard{"clean_in_new_area", "true"},
                                SetBlackboard{"SlamRetry_no_multi_clean", "true"},
                                SubtreeCondition{"RecursiveAutoMode_FollowGong.xml"}));
}

// What the map of rooms left out beside this room gets a small coverage of its own.
Node follow_up()
{
    return ActionDecorator(DoWhile(
        StackBlackboard{"clean_in_new_area"},
        Sequence(Inverter(moved_on_to_another_room()),
                 optionally(room_is("126", "false"), BlackboardCopy{"current_area_val", "last_area_val"},
                            when(room_is("127", "true"), erase("area_clean_map")),
                            Repeat(-1, SequenceStar(key_is("is_draw_area_cleaning", "false"),
                                                    BlackboardCopy{"last_area_val", "current_area_val"},
                                                    flood_search_for_unknown(), cover_beside_room()))))));
}

// --- once more ----------------------------------------------------------------------------------

// Each pass crosses the last one.
Node turn_lines()
{
    return IfThenElseStar(BoolMatch{"${gong_vertically}", "true"}, SetBlackboard{"gong_vertically", "false"},
                          SetBlackboard{"gong_vertically", "true"});
}

Node further_passes()
{
    return ActionDecorator(ForceSuccess(Repeat(
        -1, SequenceStar(
                SetBlackboardWithType{"current_clean_times", "int", "${current_clean_times} + 1"},
                BlackboardCopy{"current_clean_times", "current_clean_times_origin"},
                Inverter(ExceedMaxTimes{}), turn_lines(),
                FallbackStar(room_is("126", "true"), BlackboardCopy{"gridmap_limit", "current_subregion"}),
                plan_room("false", plan())))));
}

}  // namespace

Node clean_room()
{
    return DoWhile(StackBlackboard{"origin_point"},
                   IfThenElse(TrappedInOtherArea{}, set_flag("trapped_in_other_area"),
                              ForceSuccess(DoWhile(erase("reuse_while_cleaning"),
                                                   Sequence(absent("trapped_in_polygon_virtual_wall"),
                                                            erase("trapped_in_other_area"),
                                                            BlackboardCopy{"current_coord", "origin_point"},
                                                            first_pass(), follow_up(), further_passes())))));
}

}  // namespace vemra::trees
