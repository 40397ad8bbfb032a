#include "trees/navigation/cross_bridge.h"

namespace {

// The two ends of the bridge, and how far from a bump its walls may be followed.
Node take_bridge_in_hand()
{
    return BridgeDestructor{.bridge = "${navigation_bridge}",
                            .out_follow_wall_dist = "max_follow_wall_dist",
                            .out_from_point = "bridge_from_point",
                            .out_to_point = "bridge_to_point"};
}

// A bridge on trial is crossed with more leniency, and those who plan the lines are told of it.
Node mark_trial()
{
    return optionally(key::tmp_cross_trial_bridge_token.erase(),
                      key::navigation_bridge_type.is_any({"TRIALWITHTRACE", "TRIALNOTRACE"}),
                      key::tmp_cross_trial_bridge_token.set("true"),
                      key::start_crossing_trial_bridge.set("true"));
}

// A step is asked for first; all other kinds are told by the type that the bridge bears.
Node cross_by_type()
{
    return choose({{IsCrossingStep{}, cross_step()},
                   {SequenceStar(key::navigation_bridge_type.erase(), read_bridge_type(), bridge_is("TMP"),
                                 SaySomething{"我是TMP桥"}),
                    cross_tmp_bridge()},
                   {bridge_is("HISTORY"), cross_history_bridge()}},
                  SequenceStar(mark_trial(), cross_bridge_move()));
}

// A chain end near the bridge ends the piece of wall that is being traced.
Node report_chain_end()
{
    return optionally(key::closest_chain_end.present(), key::cross_bridge_near_chain_end.set("true"),
                      SaySomething{"cross bridge near chain end"}, Delay{2});
}

// A zigzag that has come over an untried bridge has found new floor.
Node report_trial_success()
{
    return optionally(key::current_motion_type.is("Gong"),
                      FallbackStar(key::navigation_bridge.present(),
                                   ForceFailure(SaySomething{"navigation_bridge not exist"})),
                      read_bridge_type(),
                      key::navigation_bridge_type.is_any({"TRIALWITHTRACE", "TRIALNOTRACE", "STEP"}),
                      key::cross_trial_bridge_success.set("true"),
                      key::navigation_bridge.copy_to(key::crossed_navigation_bridge),
                      SaySomething{"cross trial bridge success"}, Delay{2});
}

// The bumps of the crossing belong to the bridge and must not be taken for an obstacle afterwards.
Node after_success()
{
    return SequenceStar(key::bridges_crossing.erase(), key::bump_dir.set("None"),
                        key::cross_bridge_success.flag(), report_chain_end(), report_trial_success());
}

// The bridge is used up, except for one that was only temporary and a step already known to be none.
Node after_failure()
{
    return SequenceStar(
        key::bridges_crossing.erase(), key::bump_dir.set("None"),
        ForceFailure(FallbackStar(Sequence(key::navigation_bridge_type.present(), bridge_is("TMP")),
                                  key::step_bridge_invalid.present(), CutdownBridges{})));
}

}  // namespace

// Crosses a stretch that the map calls blocked but that the robot has reason to try. The virtual walls do not
// hold it back on the way, and the count of escapes lives no longer than the crossing.
TREE(CrossBridge)
{
    return without_sensor(
        "VirtualWall", CrossBridgeMonitor{.bridge = "${navigation_bridge}"},
        PostProcess(SequenceStar(key::navigation_bridge.copy_to(key::bridges_crossing),
                                 key::cross_bridge_success.erase(), take_bridge_in_hand(),
                                 GetRobotTrajectorySize{.out_size = "size_of_trace_at_start_of_cross_bridge"},
                                 key::cross_trial_bridge_success.set("false"), key::closest_chain_end.erase(),
                                 IfThenElseStar(cross_by_type(), after_success(), after_failure())),
                    SequenceStar(erase(key::cross_bridge_trap_times, key::when_bridge_navi))));
}
