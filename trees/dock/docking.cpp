#include "trees/dock/docking.h"

namespace vemra::trees {

Node approach(const Side& side, const Nodes& begin, const Node& arc, const Node& after_bump)
{
    return SequenceStar(
        begin, SetBlackboard{"in_dock_field_lds", "false"}, SetBlackboard{"sector_arc_times", "0"},
        SetBlackboard{"in_left_signal", side.sign > 0 ? "true" : "false"},
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

Nodes docking_loop(const Node& go_to_sector, const Node& final_approach)
{
    return until_left(
        "docking_big_loop_break",
        Loop(-1, SequenceStar(go_to_sector, SetBlackboard{"final_dock_times", "0"}, final_approach)));
}

Node sector_tree(const char* name, const Nodes& rows)
{
    return SubTree(name, SequenceStar(SetBlackboard{"go_to_sector_lds", "false"},
                                      ForceSuccess(BB_Precondition(
                                          "go_to_sector_lds", RetryUntilSuccesful(3, FallbackStar(rows))))));
}

// --- the final approach -------------------------------------------------------------------------

Node docking(const DockingForm& form)
{
    const auto off = [](const char* sensor) {
        return TemporarilyDisableSensor{.lock_status = "false", .sensor = sensor};
    };
    return SubTree("Docking",
                   DoWhile(only_if(form.scanner_off, off("LdsPointcloud")), off("LaserTofPointcloud"),
                           off("SideBrushPointcloud"), off("VirtualWall"), off("PolygonVirtualWall"),
                           set_flag("shutdown_tof"), only_if(form.cliff_off, set_flag("shutdown_cliff")),
                           Named("FollowSignal", form.follow)));
}

namespace {

Node step_aside()
{
    return SequenceStar(SetBlackboard{"last_back_out_of_field", "false"},
                        WeighDockSignalSecondStep{"turn_target_angle"},
                        BlackboardCopy{"current_yaw_deg", "origin_yaw"}, turn_to_target_angle(),
                        FallbackStar(drive_unless_bumped("125", "120", "120"), back2cm()),
                        BlackboardCopy{"origin_yaw", "turn_target_angle"}, erase("origin_yaw"));
}

Node out_of_field()
{
    return SequenceStar(SetBlackboard{"last_back_out_of_field", "true"},
                        IntAdd{"${back_out_of_field_times}", "1", "back_out_of_field_times"});
}

Node give_up_cycle()
{
    return SequenceStar(SetBlackboard{"docking_try_times", "0"},
                        SetBlackboard{"back_out_of_field_times", "0"}, walk_and_break_docking());
}

// The name of the key stands where its value should: that test never passes.
Node left_field_twice()
{
    return SequenceStar(IsAGreaterThanBInt{"${docking_try_times}", "2"},
                        FallbackStar(BoolMatch{"last_back_out_of_field", "true"},
                                     IsAGreaterThanBInt{"${back_out_of_field_times}", "1"}));
}

}  // namespace

Node smart_back_40cm(const Node& back)
{
    return SubTree(
        "SmartBack40cm",
        SequenceStar(WeighDockSignalFirstStep{}, BlackboardCopy{"current_pose", "back_origin_point"}, back,
                     erase("back_origin_point"), IfThenElseStar(InDockField{}, step_aside(), out_of_field()),
                     IntAdd{"${docking_try_times}", "1", "docking_try_times"},
                     choose({{IsAGreaterThanBFloat{"${docking_try_times}", "4"}, give_up_cycle()},
                             {left_field_twice(), give_up_cycle()}},
                            when(present("turn_target_angle"), turn_to_target_angle()))));
}

}  // namespace vemra::trees
