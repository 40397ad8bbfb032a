#pragma once

/// How the robot gets to the start of the next line, and where it stands against that line.

#include "trees/coverage/plan_in_subregion.h"

namespace vemra::trees {

/// The line in hand has no more than so many cells.
inline Node line_shorter_than(const char* cells)
{
    return IsLineTooShort{.line = "${next_line_to_clean}", .threshold_grid = cells, .threshold_mm = "-1"};
}

/// The robot is within so many cells of the line in hand; 0 is on it.
inline Node near_line(const char* cells)
{
    return IsPointCloseToLine{.line = "${next_line_to_clean}",
                              .point = "${current_coord}",
                              .threshold_grid = cells,
                              .threshold_mm = "-1"};
}

/// The line's ends go to `start` and to the end of the drive along it.
inline Node take_line_apart(const char* start)
{
    return LineDestructor{
        .line_mm = "${next_line_to_clean}", .out_point_0 = start, .out_point_1 = "finish_point"};
}

inline Node find_foot_on_line()
{
    return CalcFootOfPerpendicularThroughPoint{
        .line = "${next_line_to_clean}", .out_point = "foot_point", .point = "${current_coord}"};
}

/// The arc to the line in hand.
inline Node reckon_turn()
{
    return CalcSwitchLineTurnParam{.out_angle = "turn_angle", .out_radius = "turn_radius"};
}

/// The arc goes half round, to either side.
inline Node turn_is_half_round()
{
    return BoolMatch{
        "(${turn_angle} > 175 && ${turn_angle} < 185) || (${turn_angle} > -185 && ${turn_angle} < -175)",
        "true"};
}

/// The arc, as long as `clear` passes and the cliff sensors need no look.
inline Node guarded_arc(Node clear, const char* max_angular_speed, const char* max_linear_speed)
{
    return Sequence(std::move(clear), stop_for_cliff_sensors(),
                    TurnAround{.max_angular_speed = max_angular_speed,
                               .max_linear_speed = max_linear_speed,
                               .turn_angle = "${turn_angle}",
                               .turn_radius = "${turn_radius}"});
}

/// The laser's near points and those beside the brush do not count.
inline Nodes near_points_off()
{
    return row(sensor_held_off("LaserTofPointcloud"), sensor_held_off("SideBrushPointcloud"));
}

/// From where the robot stands to the start of the line, by an arc where that is enough.
Node navigate_to_start_point(const PartPlanner& planner);

}  // namespace vemra::trees
