#include "trees/navigation/navigate_proc.h"

namespace {

// After a bump the robot follows the obstacle towards the goal, and the map learns the obstacle alone.
Node pass_the_obstacle()
{
    return SequenceStar(SetMapDrawMode{.draw_mode = "BlockOnly", .LockState = "false"},
                        key::navi_followwall_mode.set("TargetNoUnknown"),
                        SubtreeCondition{"NavigateFollowWall"});
}

// Plans afresh after every drive that did not arrive, until the robot is there or no path is left.
Node search_and_drive_until_there()
{
    return ForceSuccess(
        Repeat(-1, SequenceStar(AwesomeSearch{.output_point = "navi_target_point",
                                              .region = "${gridmap_limit}",
                                              .search_mode = "TargetNoUnknown",
                                              .source_point = "${current_coord}",
                                              .target = "${navi_target_point}",
                                              .failure_tolerance = "0"},
                                ForceSuccess(FallbackStar(SubtreeCondition{"NavigateProcNoUnknown.xml"},
                                                          pass_the_obstacle())),
                                Inverter(goal_within("150")))));
}

}  // namespace

// Gets to a place of an earlier run and does not give up after the first plan. Mopped floor is no hindrance
// on this way, and the goal itself is moved to where the robot has once passed freely.
TREE(NavigateProcWithHistoryMapNoneStop)
{
    return Sequence(
        ForceSuccess(SubtreeCondition{"EscapeCoat"}),
        DoWhile(TraceLogger{}, key::avoid_mopped_areas.kept(),
                SetMapDrawMode{.draw_mode = "BlockOnly", .LockState = "true"},
                forget_bridges_after(SequenceStar(key::avoid_mopped_areas.set_typed("false"),
                                                  FindLastInTrajectory{.out_point_grid = "navi_target_point",
                                                                       .search_for = "slamclear",
                                                                       .start_from = "${navi_target_point}",
                                                                       .with_nb8 = "true"},
                                                  search_and_drive_until_there(), goal_within("150")))));
}
