#include "trees/dock/docking.h"

namespace vemra::trees {

Node approach(const Side& side, const Nodes& begin, const Node& arc, const Node& after_bump)
{
    return SequenceStar(
        begin, key::in_dock_field_lds.set("false"), key::sector_arc_times.set(0),
        key::in_left_signal.set(side.sign > 0 ? "true" : "false"),
        SaySomething{side.sign > 0 ? "看到左侧信号" : "看到右侧信号"},
        Loop(-1, FallbackStar(Sequence(no_bump(), ForceSuccess(Repeat(-1, arc))), after_bump)));
}

Node side_step(const Side& side)
{
    return SequenceStar(turn(side, -90, "60"), drive_for("20", "100", "100"), turn(side, 90, "60"));
}

Node greedy_way_past_obstacle()
{
    return FallbackStar(SequenceStar(GeneratePointCenteredRectMm{.center = "${initial_bump_pose}",
                                                                 .half_size_mm = "1000",
                                                                 .out_rect = "navigate_limit"},
                                     SubtreeCondition{"SearchForChargerGreedyNavigate"}),
                        break_docking_step());
}

Nodes docking_loop(const Nodes& steps)
{
    return docking_cycle.scope(Loop(-1, SequenceStar(steps)));
}

Node sector_tree(const char* name, const Nodes& rows)
{
    return SubTree(
        name, SequenceStar(sector_approach.key.set("false"),
                           ForceSuccess(sector_approach.guard(RetryUntilSuccesful(3, FallbackStar(rows))))));
}

// --- the final approach -------------------------------------------------------------------------

Node docking(const DockingForm& form)
{
    return SubTree(
        "Docking",
        DoWhile(only_if(form.scanner_off, sensor_off("LdsPointcloud")), sensor_off("LaserTofPointcloud"),
                sensor_off("SideBrushPointcloud"), sensor_off("VirtualWall"),
                sensor_off("PolygonVirtualWall"), key::shutdown_tof.flag(),
                only_if(form.cliff_off, key::shutdown_cliff.flag()), Named("FollowSignal", form.follow)));
}

namespace {

Node step_aside()
{
    return SequenceStar(key::last_back_out_of_field.set("false"),
                        WeighDockSignalSecondStep{"turn_target_angle"},
                        key::current_yaw_deg.copy_to(key::origin_yaw), turn_to_target_angle(),
                        FallbackStar(drive_unless_bumped("125", "120", "120"), back2cm()),
                        key::origin_yaw.copy_to(key::turn_target_angle), key::origin_yaw.erase());
}

Node out_of_field()
{
    return SequenceStar(key::last_back_out_of_field.set("true"), key::back_out_of_field_times.plus(1));
}

Node give_up_cycle()
{
    return SequenceStar(key::docking_try_times.set(0), key::back_out_of_field_times.set(0),
                        walk_and_break_docking());
}

// The name of the key stands where its value should: that test never passes.
Node left_field_twice()
{
    return Sequence(key::docking_try_times.above(2), FallbackStar(BoolMatch{"last_back_out_of_field", "true"},
                                                                  key::back_out_of_field_times.above(1)));
}

}  // namespace

Node smart_back_40cm(const Node& back)
{
    return SubTree("SmartBack40cm",
                   SequenceStar(WeighDockSignalFirstStep{}, key::current_pose.copy_to(key::back_origin_point),
                                back, key::back_origin_point.erase(),
                                IfThenElseStar(InDockField{}, step_aside(), out_of_field()),
                                key::docking_try_times.plus(1),
                                choose({{IsAGreaterThanBFloat{"${docking_try_times}", "4"}, give_up_cycle()},
                                        {left_field_twice(), give_up_cycle()}},
                                       when(key::turn_target_angle.present(), turn_to_target_angle()))));
}

}  // namespace vemra::trees
