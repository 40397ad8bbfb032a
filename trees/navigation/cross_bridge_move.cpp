#include "trees/navigation/cross_bridge.h"
#include "trees/navigation/follow_wall.h"

namespace vemra::trees {

namespace {

/// What differs between the two crossings that go straight first and along the wall then.
struct PlainCrossing
{
    const char* name;

    /// Looked at before the far side is: a place that makes the rest of the crossing needless.
    bool done_in_current_area = false;

    /// A chain that can be followed on from near by ends the crossing: the tracing of the wall goes on there.
    bool done_near_chain_end = false;
};

// A trap on the bridge is counted, since a crossing on which the robot is trapped over and over must find an
// end. The flag calls the rest before the next try, which is looked for in every frame: it cuts the pause
// here short, and being erased at once, its own as well.
Node count_trap()
{
    return SequenceStar(
        Inverter(NotTrapped{}),
        IntAdd{.int_a = "${cross_bridge_trap_times}", .int_b = "1", .out_sum = "cross_bridge_trap_times"},
        set_flag("cross_bridge_trapped"), Delay{50});
}

// --- straight over the bridge --------------------------------------------------------------------

Node run_straight()
{
    return SubtreeCondition{"NaviOnePointProc"};
}

// Before a trial the near end need not be reached as exactly.
Node to_near_end()
{
    return FallbackStar(
        FallbackStar(
            robot_within("150", "bridge_from_point"),
            SequenceStar(aim_at("bridge_from_point"), SetMapDrawMode{.draw_mode = "None"}, run_straight())),
        SequenceStar(present("tmp_cross_trial_bridge_token"), robot_within("220", "bridge_from_point")));
}

Node to_far_end()
{
    return FallbackStar(
        robot_within("100", "bridge_to_point"),
        Fallback(SequenceStar(bridge_is("HISTORY"), InCurrentArea{}), SubtreeCondition{"NavigateTree"}));
}

// A trial begins with a straight run, and nothing hangs on how it ends.
Node begin_trial()
{
    return IfThenElseStar(present("tmp_cross_trial_bridge_token"), ForceSuccess(run_straight()),
                          AlwaysSuccess{});
}

// The point clouds would see nothing but the obstacle that the map already knows. What is driven over freely
// is cleared on the map.
Node navi()
{
    return SubTree("Navi",
                   DoWhile(without_sensor("LaserTofPointcloud"), without_sensor("SideBrushPointcloud"),
                           PostProcess(FallbackStar(ForceFailure(set_flag("when_bridge_navi")),
                                                    SequenceStar(to_near_end(), aim_at("bridge_to_point"),
                                                                 SetMapDrawMode{.draw_mode = "ClearOnly"},
                                                                 begin_trial(), to_far_end()),
                                                    ForceFailure(count_trap())),
                                       erase("when_bridge_navi"))));
}

// --- along the wall ------------------------------------------------------------------------------

Node near_where_follow(const char* point_key)
{
    return robot_within("${max_follow_wall_dist}", point_key);
}

// A short allowance of wall is used up quickly, so it is followed precisely.
Node follow_step()
{
    return IfThenElseStar(FallbackStar(present("tmp_cross_trial_bridge_token"),
                                       IsAGreaterThanBFloat{.A = "${max_follow_wall_dist}", .B = "1000"}),
                          SubtreeCondition{"FollowWallProc"}, SubtreeCondition{"PreciseFollowWallProc"});
}

// As far from the bump as the bridge allows, on the side that the bump suggests.
Node first_side()
{
    return SequenceStar(NotTrapped{}, AdvancedSetFollowWallDirection{},
                        BlackboardCopy{.source = "current_pose", .target = "bump_point"},
                        SetMapDrawMode{.draw_mode = "Default"},
                        Sequence(near_where_follow("bump_point"), not_looped(), follow_step()));
}

// The straight run back has done its work when it meets the obstacle. Too far away, the robot only turns
// round, to find the wall on the other hand.
Node back_to_bump()
{
    return FallbackStar(
        IfThenElseStar(near_where_follow("bump_point"), Inverter(run_straight()),
                       SequenceStar(guarded_turn("180", "120"), SetBlackboard{"bump_dir", "None"})),
        ForceFailure(count_trap()));
}

Node flip_side()
{
    return IfThenElseStar(BoolMatch{.bool_a = "${follow_wall_dir}", .bool_b = "true"},
                          SetBlackboard{"follow_wall_dir", "false"},
                          SetBlackboard{"follow_wall_dir", "true"});
}

// The other way round the obstacle, within the same allowance from the bump or from the turn.
Node second_side()
{
    return SequenceStar(
        Bumped{.bump_dir = "${bump_dir}"}, NotTrapped{}, SetMapDrawMode{.draw_mode = "ClearOnly"},
        back_to_bump(), BlackboardCopy{.source = "current_pose", .target = "turn_point"}, flip_side(),
        SetMapDrawMode{.draw_mode = "Default"},
        FallbackStar(Sequence(Fallback(near_where_follow("bump_point"), near_where_follow("turn_point")),
                              not_looped(), follow_step()),
                     count_trap()));
}

Node along_wall()
{
    return SequenceStar(Bumped{.bump_dir = "${bump_dir}"},
                        FallbackStar(first_side(), ForceFailure(count_trap()), second_side()));
}

// --- one try after the other ---------------------------------------------------------------------

Node until_across(const PlainCrossing& crossing)
{
    Node ways = Fallback(bridge_crossed("bridge_to_point", "50"));
    if (crossing.done_in_current_area)
        ways.children.insert(ways.children.begin(), InCurrentArea{});
    if (crossing.done_near_chain_end)
        ways.children.push_back(IsNearChainOpenEnd{
            .dis_threshold = "100", .out_chain_element = "closest_chain_end", .ticks_threshold = "5"});
    ways.children.push_back(FallbackStar(navi(), along_wall()));
    return ways;
}

// A bridge that no longer fits the map is given up, unless the search took it knowing that it has failed
// before. So is one on which the robot was trapped too often.
Node cross(const PlainCrossing& crossing)
{
    return SubTree(
        crossing.name,
        DoWhile(
            with_charger_walls(), SetBlackboard{"not_trace_token", "CrossBridge"},
            Sequence(
                SetBlackboard{"cross_bridge_trap_times", "0"}, erase("traped_when_crossing"),
                MakeMap{.roi = "${current_subregion}"},
                FallbackStar(BoolMatch{.bool_a = "${path_bridge_max_failure_cnt} == 1", .bool_b = "true"},
                             BridgeValid{.bridge = "${navigation_bridge}"}),
                Inverter(SequenceStar(present("traped_when_crossing"), erase("traped_when_crossing"))),
                IfThenElse(present("cross_bridge_trapped"),
                           SequenceStar(erase("cross_bridge_trapped"), Delay{50}), until_across(crossing)))));
}

}  // namespace

Node cross_bridge_move()
{
    return cross({.name = "CrossBridgeMove", .done_near_chain_end = true});
}

Node cross_history_bridge()
{
    return cross({.name = "CrossHistoryBridge", .done_in_current_area = true});
}

}  // namespace vemra::trees
