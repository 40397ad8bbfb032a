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
    return optionally(erase("tmp_cross_trial_bridge_token"),
                      key_is_any("navigation_bridge_type", {"TRIALWITHTRACE", "TRIALNOTRACE"}),
                      SetBlackboard{"tmp_cross_trial_bridge_token", "true"},
                      SetBlackboard{"start_crossing_trial_bridge", "true"});
}

// A step is asked for first; all other kinds are told by the type that the bridge bears.
Node cross_by_type()
{
    return IfThenElseStar(IsCrossingStep{}, cross_step(),
                          IfThenElseStar(SequenceStar(erase("navigation_bridge_type"), read_bridge_type(),
                                                      bridge_is("TMP"), SaySomething{"我是TMP桥"}),
                                         cross_tmp_bridge(),
                                         IfThenElseStar(bridge_is("HISTORY"), cross_history_bridge(),
                                                        SequenceStar(mark_trial(), cross_bridge_move()))));
}

// A chain end near the bridge ends the piece of wall that is being traced.
Node report_chain_end()
{
    return optionally(present("closest_chain_end"), SetBlackboard{"cross_bridge_near_chain_end", "true"},
                      SaySomething{"cross bridge near chain end"}, Delay{2});
}

// A zigzag that has come over an untried bridge has found new floor.
Node report_trial_success()
{
    return optionally(
        key_is("current_motion_type", "Gong"),
        FallbackStar(present("navigation_bridge"), ForceFailure(SaySomething{"navigation_bridge not exist"})),
        read_bridge_type(), key_is_any("navigation_bridge_type", {"TRIALWITHTRACE", "TRIALNOTRACE", "STEP"}),
        SetBlackboard{"cross_trial_bridge_success", "true"},
        BlackboardCopy{.source = "navigation_bridge", .target = "crossed_navigation_bridge"},
        SaySomething{"cross trial bridge success"}, Delay{2});
}

// The bumps of the crossing belong to the bridge and must not be taken for an obstacle afterwards.
Node after_success()
{
    return SequenceStar(erase("bridges_crossing"), SetBlackboard{"bump_dir", "None"},
                        set_flag("cross_bridge_success"), report_chain_end(), report_trial_success());
}

// The bridge is used up, except for one that was only temporary and a step already known to be none.
Node after_failure()
{
    return SequenceStar(
        erase("bridges_crossing"), SetBlackboard{"bump_dir", "None"},
        ForceFailure(FallbackStar(SequenceStar(present("navigation_bridge_type"), bridge_is("TMP")),
                                  present("step_bridge_invalid"), CutdownBridges{})));
}

}  // namespace

// Crosses a stretch that the map calls blocked but that the robot has reason to try. The virtual walls do not
// hold it back on the way, and the count of escapes lives no longer than the crossing.
TREE(CrossBridge)
{
    return DoWhile(
        without_sensor("VirtualWall"), CrossBridgeMonitor{.bridge = "${navigation_bridge}"},
        PostProcess(
            SequenceStar(BlackboardCopy{.source = "navigation_bridge", .target = "bridges_crossing"},
                         erase("cross_bridge_success"), take_bridge_in_hand(),
                         GetRobotTrajectorySize{.out_size = "size_of_trace_at_start_of_cross_bridge"},
                         SetBlackboard{"cross_trial_bridge_success", "false"}, erase("closest_chain_end"),
                         IfThenElseStar(cross_by_type(), after_success(), after_failure())),
            SequenceStar(erase("cross_bridge_trap_times"), erase("when_bridge_navi"))));
}
