#include "trees/navigation/goto_point.h"

#include "trees/navigation/goal.h"

namespace vemra::trees {

namespace {

// --- a vector segment: the local planner ---------------------------------------------------------

Node follow_the_path()
{
    return DwaLocalPlanner{.path = "${navigation_path}"};
}

Node renew_the_map()
{
    return MakeMap{.roi = "${gridmap_limit}"};
}

Node plain_run()
{
    return Sequence(follow_the_path(), renew_the_map());
}

// The token is used up before the run, so that it serves one segment alone.
Node run_traced_on_request(int below_cells)
{
    return IfThenElseStar(
        present("gong_navi_token"),
        SequenceStar(erase("gong_navi_token"),
                     IfThenElseStar(
                         SequenceStar(present("path_length_grid"),
                                      IsAGreaterThanBInt{.A = below_cells, .B = "${path_length_grid}"}),
                         DoWhile(SetBlackboard{"trace_token", "DwaLocalPlanner"}, plain_run()), plain_run())),
        plain_run());
}

// The gates are looked at in every frame of the run, the robot's motion comes last.
Node guarded_run(const PlanWalk& walk)
{
    Node run = Sequence(SetMapDrawMode{.draw_mode = "None"}, SubtreeCondition{"Escape.xml"},
                        Inverter(CheckClifBump{.out_bump_dir = "bump_dir"}), stop_for_cliff_sensors());
    if (walk.stop_when_target_is_clear)
        run.children.push_back(Inverter(ExploreTargetClear{}));
    if (walk.trace_paths_below_cells)
        run.children.push_back(run_traced_on_request(*walk.trace_paths_below_cells));
    else {
        run.children.push_back(follow_the_path());
        run.children.push_back(renew_the_map());
    }
    return run;
}

Node segment_end_within(const char* distance_mm)
{
    return ArePointsTooClose{
        .distance_mm = distance_mm, .point_mm_a = "${current_pose}", .point_mm_b = "${navi_path_target}"};
}

// A run that broke off has still done its segment when its end is near; before a trial bridge it need not be
// as near, since the bridge is only tried.
Node walk_vector(const PlanWalk& walk)
{
    return FallbackStar(guarded_run(walk), ForceFailure(SubtreeCondition{"Back2cm.xml"}),
                        IfThenElseStar(SequenceStar(present("trial_bridge_next_to_this_vector"),
                                                    key_is_true("trial_bridge_next_to_this_vector")),
                                       segment_end_within("220"), segment_end_within("110")));
}

// --- a bridge segment ----------------------------------------------------------------------------

Node cross()
{
    return DoWhile(
        SetBlackboard{"is_crossing_bridge", "true"},
        ConditionTimerFrames{.frames_out_key = "crossbridge_frames_consumption",
                             .start_from = "${crossbridge_frames_consumption}"},
        SequenceStar(set_flag("cross_bridge_start_point"),
                     BlackboardCopy{.source = "current_coord", .target = "cross_bridge_start_point"},
                     SubtreeCondition{"CrossBridge"}));
}

// A step bridge has its own record of the outcome; every other bridge has its cost renewed.
Node record_crossing()
{
    return FallbackStar(SequenceStar(present("step_bridge_valid"), erase("step_bridge_valid")),
                        SequenceStar(UpdateBridgeCost{}, erase("cross_bridge_start_point")));
}

Node record_failed_crossing()
{
    return FallbackStar(SequenceStar(present("step_bridge_invalid"), erase("step_bridge_invalid")),
                        UpdateBridgeCost{});
}

// A robot that has come a good way over the bridge stands where the plan did not expect it: the plan is given
// up on purpose, and the caller searches anew from there.
Node after_crossing()
{
    return IfThenElseStar(ArePointsTooClose{.distance_mm = "300",
                                            .point_mm_a = "${current_pose}",
                                            .point_mm_b = "${cross_bridge_start_point}"},
                          record_crossing(), ForceFailure(record_crossing()));
}

Node after_failed_crossing(const PlanWalk& walk)
{
    if (!walk.check_virtual_wall_after_failed_bridge)
        return ForceFailure(record_failed_crossing());

    Node steps = SequenceStar(ForceSuccess(record_failed_crossing()), present("tmp_bridge_cross_failed"),
                              erase("tmp_bridge_cross_failed"), SubtreeCondition{"CheckInVirtualWall.xml"});
    if (walk.back_off_after_failed_bridge)
        steps.children.insert(steps.children.begin(),
                              {SubtreeCondition{"Back2cm"}, SetBlackboard{"bump_dir", "None"}});
    return ForceFailure(std::move(steps));
}

Node walk_bridge(const PlanWalk& walk)
{
    return IfThenElseStar(cross(), after_crossing(), after_failed_crossing(walk));
}

// Takes the next segment of the plan; fails when none is left or the segment was not done.
Node walk_next_segment(const PlanWalk& walk)
{
    return SequenceStar(CheckPathSegment{.input_navi_path = "${navigation_path_segments}"},
                        IfThenElseStar(PathSegIsVector{}, walk_vector(walk), walk_bridge(walk)));
}

}  // namespace

// A bridge overwrites the goal and the path while it is crossed, hence both are kept for the time of the
// walk. Whatever becomes of the segments, the place where the robot stands in the end is the result.
Node walk_the_plan(const PlanWalk& walk)
{
    return Named(
        walk.label,
        SequenceStar(DoWhile(StackBlackboard{"navi_target_point"}, StackBlackboard{"navigation_path"},
                             TemporarilyDisableSensor{.lock_status = "false", .sensor = "DockField"},
                             // Parked: the walls around the charger stay as they are.
                             AlwaysSuccess{.lock_status = "false", .sensor = "ChargerVirtualWall"},
                             ForceSuccess(SequenceStar(Stop{}, Repeat(-1, walk_next_segment(walk))))),
                     goal_within("100")));
}

}  // namespace vemra::trees
