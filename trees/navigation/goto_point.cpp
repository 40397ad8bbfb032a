#include "trees/navigation/goto_point.h"

#include "trees/navigation/goal.h"

namespace vemra::trees {

// --- a vector segment: the local planner ---------------------------------------------------------

Nodes drive_along_path()
{
    return row(DwaLocalPlanner{.path = "${navigation_path}"}, MakeMap{.roi = "${gridmap_limit}"});
}

// The token is used up before the run, so that it serves one segment alone.
Nodes drive_traced_on_request(int below_cells)
{
    const Node drive = Sequence(drive_along_path());
    const Node traced = DoWhile(key::trace_token.set("DwaLocalPlanner"), drive);
    const Node is_short = Sequence(key::path_length_grid.present(), key::path_length_grid.below(below_cells));
    return row(IfThenElseStar(
        key::gong_navi_token.present(),
        SequenceStar(key::gong_navi_token.erase(), IfThenElseStar(is_short, traced, drive)), drive));
}

namespace {

// The gates are looked at in every frame of the run, the robot's motion comes last.
Node guarded_run(const Nodes& drive)
{
    return Sequence(SetMapDrawMode{.draw_mode = "None"}, SubtreeCondition{"Escape.xml"},
                    Inverter(CheckClifBump{.out_bump_dir = "bump_dir"}), stop_for_cliff_sensors(), drive);
}

// A run that broke off has still done its segment when its end is near; before a trial bridge it need not be
// as near, since the bridge is only tried.
Node walk_vector(const Nodes& drive)
{
    const Node trial_bridge_is_next = Sequence(key::trial_bridge_next_to_this_vector.present(),
                                               key::trial_bridge_next_to_this_vector.is_true());
    return FallbackStar(guarded_run(drive), ForceFailure(SubtreeCondition{"Back2cm.xml"}),
                        IfThenElseStar(trial_bridge_is_next, near(key::navi_path_target, 220),
                                       near(key::navi_path_target, 110)));
}

// --- a bridge segment ----------------------------------------------------------------------------

Node cross()
{
    return DoWhile(key::is_crossing_bridge.set("true"), key::crossbridge_frames_consumption.counts_frames(),
                   SequenceStar(key::cross_bridge_start_point.flag(),
                                key::current_coord.copy_to(key::cross_bridge_start_point),
                                SubtreeCondition{"CrossBridge"}));
}

// A step bridge has its own record of the outcome; every other bridge has its cost renewed.
Node record_crossing()
{
    return FallbackStar(SequenceStar(key::step_bridge_valid.take()),
                        SequenceStar(UpdateBridgeCost{}, key::cross_bridge_start_point.erase()));
}

// A robot that has come a good way over the bridge stands where the plan did not expect it: the plan is given
// up on purpose, and the caller searches anew from there.
Node after_crossing()
{
    return IfThenElseStar(near(key::cross_bridge_start_point, 300), record_crossing(),
                          ForceFailure(record_crossing()));
}

// Takes the next segment of the plan; fails when none is left or the segment was not done.
Node walk_next_segment(const PlanWalk& walk)
{
    return SequenceStar(CheckPathSegment{.input_navi_path = "${navigation_path_segments}"},
                        choose({{PathSegIsVector{}, walk_vector(walk.drive)}, {cross(), after_crossing()}},
                               ForceFailure(walk.after_failed_bridge)));
}

}  // namespace

Node record_failed_crossing()
{
    return FallbackStar(SequenceStar(key::step_bridge_invalid.take()), UpdateBridgeCost{});
}

Nodes record_and_leave_virtual_wall()
{
    return row(ForceSuccess(record_failed_crossing()), key::tmp_bridge_cross_failed.take(),
               SubtreeCondition{"CheckInVirtualWall.xml"});
}

// A bridge overwrites the goal and the path while it is crossed, hence both are kept for the time of the
// walk. Whatever becomes of the segments, the place where the robot stands in the end is the result.
Node walk_the_plan(const PlanWalk& walk)
{
    return Named(
        walk.label,
        SequenceStar(
            DoWhile(key::navi_target_point.kept(), key::navigation_path.kept(), sensor_off("DockField"),
                    // Parked: the walls around the charger stay as they are.
                    AlwaysSuccess{.lock_status = "false", .sensor = "ChargerVirtualWall"},
                    ForceSuccess(SequenceStar(Stop{}, Repeat(-1, walk_next_segment(walk))))),
            goal_within("100")));
}

}  // namespace vemra::trees
