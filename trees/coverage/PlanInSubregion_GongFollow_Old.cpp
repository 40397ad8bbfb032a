#include "trees/coverage/lines_first.h"

namespace {

Node plan_line(const char* source_point)
{
    return FindNextLine{.is_rotate = "${gong_vertically}", .source_point = source_point};
}

Node plan_from_floor()
{
    return SequenceStar(key::bump_dir_save.set("None"), search_part("Normal"),
                        key::flood_search_failed.set("false"), plan_line("${navi_target_point}"));
}

Nodes wall_piece_back_to_line()
{
    return row(set_up_wall_piece("true"), ForceFailure(SubtreeCondition{"SwitchLineFollowWall.xml"}));
}

// Around what was met on the way, back to the line.
Node pass_obstacle()
{
    return SequenceStar(
        NotTrapped{}, bumped(), draw("Default"),
        without_sensor("SubregionBorder",
                       SequenceStar(near_line("3"), Inverter(near_line("0")), wall_piece_back_to_line())));
}

Node drive()
{
    return navigate_and_follow_wall("Target", pass_obstacle());
}

// Away from its start the line is run backwards, from where the robot stands.
Node run_backwards()
{
    return FallbackStar(start_within("50", "${current_pose}"), key::start_point.copy_to(key::finish_point));
}

Node on_line()
{
    return IfThenElseStar(IsPathClear{.from_point = "${current_coord}",
                                      .obstacle_expanded_map = "${obstacle_expanded_map}",
                                      .to_point = "${start_point}"},
                          run_backwards(), drive());
}

Node drive_to_foot()
{
    return DoWhile(
        traced_as("FixOrientation"),
        SequenceStar(SetFixOrientation{"${foot_point}"}, draw("ClearOnly"),
                     FallbackStar(SubtreeCondition{"FixOrientation.xml"},
                                  ForceFailure(SequenceStar(bumped(), wall_piece_back_to_line())))));
}

Node beside_line()
{
    return IfThenElseStar(
        SequenceStar(IsPointInSegment{.line = "${next_line_to_clean}", .point = "${current_coord}"},
                     find_foot_on_line(), Inverter(points_within("75", "${foot_point}", "${start_point}"))),
        SequenceStar(drive_to_foot(), run_backwards()), drive());
}

}  // namespace

// The first form of the planner that goes by lines.
TREE(PlanInSubregion_GongFollow_Old)
{
    return lines_first({.plan_from_here = plan_line("${current_coord}"),
                        .plan_from_floor = plan_from_floor(),
                        .on_line = on_line(),
                        .beside_line = beside_line(),
                        .drive = drive()});
}
