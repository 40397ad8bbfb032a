#include "trees/navigation/cross_bridge.h"
#include "trees/navigation/follow_wall.h"

namespace vemra::trees {

namespace {

/// What differs between the two crossings that go straight first and along the wall then: a place that makes
/// the rest of the crossing needless, looked at before the far side is, or after.
struct PlainCrossing
{
    const char* name;
    Nodes done_before{};
    Nodes done_after{};
};

// A trap on the bridge is counted, since a crossing on which the robot is trapped over and over must find an
// end. The flag calls the rest before the next try, which is looked for in every frame: it cuts the pause
// here short, and being erased at once, its own as well.
Node count_trap()
{
    return SequenceStar(Inverter(NotTrapped{}), key::cross_bridge_trap_times.plus(1),
                        key::cross_bridge_trapped.flag(), Delay{50});
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
        FallbackStar(near(key::bridge_from_point, 150),
                     SequenceStar(aim_at(key::bridge_from_point), SetMapDrawMode{.draw_mode = "None"},
                                  run_straight())),
        Sequence(key::tmp_cross_trial_bridge_token.present(), near(key::bridge_from_point, 220)));
}

Node to_far_end()
{
    return FallbackStar(
        near(key::bridge_to_point, 100),
        Fallback(Sequence(bridge_is("HISTORY"), InCurrentArea{}), SubtreeCondition{"NavigateTree"}));
}

// A trial begins with a straight run, and nothing hangs on how it ends.
Node begin_trial()
{
    return when(key::tmp_cross_trial_bridge_token.present(), ForceSuccess(run_straight()));
}

// The point clouds would see nothing but the obstacle that the map already knows. What is driven over freely
// is cleared on the map.
Node navi()
{
    return SubTree(
        "Navi",
        without_sensor("LaserTofPointcloud", sensor_off("SideBrushPointcloud"),
                       PostProcess(FallbackStar(ForceFailure(key::when_bridge_navi.flag()),
                                                SequenceStar(to_near_end(), aim_at(key::bridge_to_point),
                                                             SetMapDrawMode{.draw_mode = "ClearOnly"},
                                                             begin_trial(), to_far_end()),
                                                ForceFailure(count_trap())),
                                   key::when_bridge_navi.erase())));
}

// --- along the wall ------------------------------------------------------------------------------

Node within_allowance_of(const Key& point)
{
    return near(point, key::max_follow_wall_dist.value());
}

// A short allowance of wall is used up quickly, so it is followed precisely.
Node follow_step()
{
    return IfThenElseStar(FallbackStar(key::tmp_cross_trial_bridge_token.present(),
                                       IsAGreaterThanBFloat{.A = "${max_follow_wall_dist}", .B = "1000"}),
                          SubtreeCondition{"FollowWallProc"}, SubtreeCondition{"PreciseFollowWallProc"});
}

// As far from the bump as the bridge allows, on the side that the bump suggests.
Node first_side()
{
    return SequenceStar(NotTrapped{}, AdvancedSetFollowWallDirection{},
                        key::current_pose.copy_to(key::bump_point), SetMapDrawMode{.draw_mode = "Default"},
                        Sequence(within_allowance_of(key::bump_point), not_looped(), follow_step()));
}

// The straight run back has done its work when it meets the obstacle. Too far away, the robot only turns
// round, to find the wall on the other hand.
Node back_to_bump()
{
    return FallbackStar(IfThenElseStar(within_allowance_of(key::bump_point), Inverter(run_straight()),
                                       SequenceStar(guarded_turn(180, 120), key::bump_dir.set("None"))),
                        ForceFailure(count_trap()));
}

Node flip_side()
{
    return IfThenElseStar(key::follow_wall_dir.holds("true"), key::follow_wall_dir.set("false"),
                          key::follow_wall_dir.set("true"));
}

// The other way round the obstacle, within the same allowance from the bump or from the turn.
Node second_side()
{
    return SequenceStar(
        Bumped{.bump_dir = "${bump_dir}"}, NotTrapped{}, SetMapDrawMode{.draw_mode = "ClearOnly"},
        back_to_bump(), key::current_pose.copy_to(key::turn_point), flip_side(),
        SetMapDrawMode{.draw_mode = "Default"},
        FallbackStar(
            Sequence(Fallback(within_allowance_of(key::bump_point), within_allowance_of(key::turn_point)),
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
    return Fallback(crossing.done_before, bridge_crossed(key::bridge_to_point, "50"), crossing.done_after,
                    FallbackStar(navi(), along_wall()));
}

// A bridge that no longer fits the map is given up, unless the search took it knowing that it has failed
// before. So is one on which the robot was trapped too often.
Node cross(const PlainCrossing& crossing)
{
    return SubTree(
        crossing.name,
        with_sensor("ChargerVirtualWall", key::not_trace_token.set("CrossBridge"),
                    Sequence(key::cross_bridge_trap_times.set(0), key::traped_when_crossing.erase(),
                             MakeMap{.roi = "${current_subregion}"},
                             FallbackStar(
                                 BoolMatch{.bool_a = "${path_bridge_max_failure_cnt} == 1", .bool_b = "true"},
                                 BridgeValid{.bridge = "${navigation_bridge}"}),
                             Inverter(SequenceStar(key::traped_when_crossing.take())),
                             IfThenElse(key::cross_bridge_trapped.present(),
                                        SequenceStar(key::cross_bridge_trapped.erase(), Delay{50}),
                                        until_across(crossing)))));
}

}  // namespace

Node cross_bridge_move()
{
    // A chain that can be followed on from near by: the tracing of the wall goes on there.
    return cross(
        {.name = "CrossBridgeMove",
         .done_after = row(IsNearChainOpenEnd{
             .dis_threshold = "100", .out_chain_element = "closest_chain_end", .ticks_threshold = "5"})});
}

Node cross_history_bridge()
{
    return cross({.name = "CrossHistoryBridge", .done_before = row(InCurrentArea{})});
}

}  // namespace vemra::trees
