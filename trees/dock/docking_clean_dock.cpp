#include "trees/dock/docking_clean_dock.h"

namespace vemra::trees {

namespace {

// --- the sector ---------------------------------------------------------------------------------

Node move_away_from_wall()
{
    return SubTree("MoveAwayFromWallIfNecessary",
                   IfThenElseStar(IsCloseToObstacleLds{.dir = "behind", .threshold = "270"},
                                  drive_unless_bumped("40", "70", "70"), AlwaysSuccess{}));
}

Nodes get_into_sector()
{
    return row(move_away_from_wall(), sector_lds_7001());
}

Node sector_step()
{
    return IfThenElseStar(
        charger_is_known(),
        SequenceStar(key::trash.erase(),
                     IfThenElseStar(front_hears("Middle"), AlwaysSuccess{}, SequenceStar(get_into_sector()))),
        SequenceStar(get_into_sector()));
}

Node drive_arc(const Side& side)
{
    return side.sign > 0 ? drive_by_field("65", {"70", "90"}, {"60", "90"})
                         : drive_by_field("65", {"90", "70"}, {"90", "60"});
}

Node step_to_line(const Side& side)
{
    return optionally(stops_short_of_line(side), turn(side, -80, "120"), drive_for("60", "80", "80"),
                      turn(side, 90, "120"), reached_sector());
}

Nodes line_is_heard(const Side& side)
{
    return row(hears(mr, "Middle"), both("CentralLeft", "CentralRight"),
               hears(ml, side.sign > 0 ? "CentralRight" : "CentralLeft"),
               hears(mr, side.sign > 0 ? "CentralRight" : "CentralLeft"));
}

Node arc_pass(const Side& side)
{
    const auto past_limit = side.sign > 0 ? yaw_above("${fix_dock_break}") : yaw_below("${fix_dock_break}");
    return SequenceStar(
        only_if(side.sign > 0, SaySomething{"tolvar here"}), count_arc(), turn(side, -95, "60"),
        drive_arc(side), offset_yaw("${current_yaw_deg}", turned(side, 70).c_str(), "fix_dock_break"),
        IfThenElse(past_limit, AlwaysSuccess{}, turn(side, 80, "60")),
        Fallback(hears(side.far_receiver, side.side_signal), hears(side.far_receiver, side.central_signal),
                 hears(side.far_receiver, "Middle"), hears(side.far_receiver, side.other_central_signal),
                 turn(side, 40, "30")),
        step_to_line(side),
        IfThenElseStar(Fallback(line_is_heard(side), hold_still("5")), SequenceStar(reached_sector()),
                       SequenceStar(note_field(), Delay{1})));
}

// --- along the wall of what was met -------------------------------------------------------------

Node follow_wall()
{
    const auto overturned = IfThenElse(wall_on_right("false"), yaw_above("${follow_wall_break_yaw}"),
                                       yaw_below("${follow_wall_break_yaw}"));
    return SubTree(
        "GoToDockSectorFollowWall",
        SequenceStar(IfThenElseStar(wall_on_right("false"),
                                    offset_yaw("${initial_bump_yaw}", "120", "follow_wall_break_yaw"),
                                    offset_yaw("${initial_bump_yaw}", "-120", "follow_wall_break_yaw")),
                     follow_wall_command("true"),
                     keep_choosing({{front_hears("Middle"), because("good")},
                                    {overturned, because("overturn")},
                                    {Inverter(wall_is_not_looped()), because("loop")},
                                    {Inverter(within("700", "${initial_bump_pose}")), because("range")}},
                                   follow_on(SubtreeCondition{"FollowWallDeal"}))));
}

Node after_overturn(const Side& side)
{
    const auto heard = Fallback(hears(side.near_receiver, side.central_signal),
                                hears(side.far_receiver, side.central_signal));
    const auto beyond = Fallback(hears(side.near_receiver, side.other_central_signal),
                                 hears(side.far_receiver, side.other_central_signal));
    return SequenceStar(key::current_yaw_deg.copy_to(key::turn_around_start),
                        IfThenElseStar(heard,
                                       Fallback(Inverter(hears(side.near_receiver, side.central_signal)),
                                                ForceFailure(turn(side, -360, "40"))),
                                       SequenceStar(IfThenElseStar(beyond, key::go_to_sector_lds.set("true"),
                                                                   key::docking_big_loop_break.set("true")),
                                                    Delay{1})));
}

Node wall_branch(const Side& side)
{
    // Out of range the left side goes on, the right one gives up.
    const Node otherwise = side.sign > 0 ? ForceFailure(key::current_yaw_deg.copy_to(key::turn_around_start))
                                         : break_docking_step();
    return SequenceStar(back2cm(), note_bump(), AdvancedSetFollowWallDirection{}, follow_wall(),
                        by_text(key::break_condition,
                                {{"good", SequenceStar(reached_sector())},
                                 {"overturn", after_overturn(side)},
                                 {"loop", greedy_way_past_obstacle()}},
                                otherwise));
}

Node approach_7001(const Side& side)
{
    return approach(side, only_if(side.sign > 0, SaySomething{"tolvar in"}), arc_pass(side),
                    wall_branch(side));
}

}  // namespace

Node sector_lds_7001()
{
    const auto on_side = [](const char* name, const Side& side) {
        return SequenceStar(
            Named(name, FallbackStar(hears(ml, side.central_signal), hears(mr, side.central_signal))),
            approach_7001(side));
    };
    return sector_tree("GoToDockSectorLDS7001",
                       row(both("Middle", "Middle"), both("CentralLeft", "CentralRight"),
                           SequenceStar(both("CentralLeft", "Middle"), side_step(left_side)),
                           SequenceStar(both("Middle", "CentralRight"), side_step(right_side)),
                           SequenceStar(both("Middle", "None"), turn_until(hears(mr), "10", "60")),
                           SequenceStar(both("None", "Middle"), turn_until(hears(mr), "-10", "60")),
                           on_side("OnChargerLeft", left_side), on_side("OnChargerRight", right_side),
                           walk_and_break_docking()));
}

Node docking_loop_clean_dock()
{
    return SequenceStar(
        docking_loop(row(sector_step(), key::final_dock_times.set(0), key::ignore_all_bump_event_flag.erase(),
                         final_approach_clean_dock())));
}

}  // namespace vemra::trees
