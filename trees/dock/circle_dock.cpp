#include "trees/dock/docking_vslam.h"

namespace vemra::trees {

namespace {

Nodes end_circle()
{
    return BreakKey{key::docking_small_loop_break}.leave();
}

// --- along the wall -----------------------------------------------------------------------------

Node overturned()
{
    return IfThenElse(wall_on_right("false"), yaw_above("${follow_wall_break_yaw}"),
                      yaw_below("${follow_wall_break_yaw}"));
}

Node plain_follow()
{
    return follow_on(SubtreeCondition{"FollowWallDeal"});
}

Node go_to_dock_sector_follow_wall()
{
    return SubTree(
        "GoToDockSectorFollowWall",
        SequenceStar(IfThenElseStar(wall_on_right("false"),
                                    offset_yaw("${initial_bump_yaw}", "100", "follow_wall_break_yaw"),
                                    offset_yaw("${initial_bump_yaw}", "-100", "follow_wall_break_yaw")),
                     follow_wall_command("true"),
                     keep_choosing({{hears("Any", "Middle"), because("good")},
                                    {overturned(), because("overturn")},
                                    {Inverter(wall_is_not_looped()), because("loop")},
                                    {Inverter(within("700", "${initial_bump_pose}")), because("range")}},
                                   plain_follow())));
}

// Turns on until the side is lost, or back until it is heard.
Node turn_after_overturn(const Side& side, const Node& when_silent)
{
    const auto until_lost =
        Fallback(Inverter(hears("Any", side.central_signal)), Inverter(hears("Any", side.side_signal)),
                 ForceFailure(turn(side, -360, "40")));
    return SequenceStar(key::current_yaw_deg.copy_to(key::turn_around_start),
                        IfThenElseStar(any_hears_side(side), until_lost, when_silent));
}

Node turn_until_heard(const Side& side)
{
    return Fallback(hears(side_receiver(side), side.central_signal),
                    hears(side_receiver(side), side.side_signal), ForceFailure(turn(side, 360, "40")));
}

Node settle_first(const Side& side)
{
    return by_text(key::break_condition,
                   {{"good", SequenceStar(end_circle())},
                    {"overturn", turn_after_overturn(side, turn_until_heard(side))},
                    {"loop", greedy_way_past_obstacle()}},
                   ForceFailure(key::current_yaw_deg.copy_to(key::turn_around_start)));
}

Node settle_last(const Side& side)
{
    return by_text(
        key::break_condition,
        {{"good", SequenceStar(end_circle())}, {"overturn", turn_after_overturn(side, break_docking_step())}},
        greedy_way_past_obstacle());
}

// --- the way back -------------------------------------------------------------------------------

Node turn_beside_bump()
{
    return SequenceStar(
        because("good"),
        IfThenElseStar(wall_on_right("false"), offset_yaw("${initial_bump_yaw}", "-30", "turn_target_angle"),
                       offset_yaw("${initial_bump_yaw}", "30", "turn_target_angle")),
        turn_to_target_angle());
}

Node walk_back()
{
    return SequenceStar(
        offset_yaw("${turn_around_start}", "180", "turn_target_angle"), turn_to_target_angle(),
        key::current_pose.copy_to(key::reverse_follow_wall_start_pose), key::bump_dir.set("None"),
        follow_wall_command("true"),
        keep_choosing({{within("200", "${initial_bump_pose}"), because("good")},
                       {Inverter(within("1400", "${reverse_follow_wall_start_pose}")), because("range")},
                       {Inverter(wall_is_not_looped()), because("loop")}},
                      plain_follow()));
}

Node settle_way_back()
{
    return by_text(
        key::break_condition,
        {{"good", AlwaysSuccess{}},
         {"range", SequenceStar(key::advanced_follow_wall_force_dir.set(key::follow_wall_dir.value()),
                                break_docking())}},
        SubtreeCondition{"SearchForChargerLoopSolvGoToDockSector"});
}

Node reverse_walk(const Side& side)
{
    return SequenceStar(
        back2cm(), turn_wall_side(),
        IfThenElseStar(within("200", "${initial_bump_pose}"), turn_beside_bump(), walk_back()), back2cm(),
        normalise_bump_yaw(), settle_way_back(), go_to_dock_sector_follow_wall(), back2cm(),
        settle_last(side));
}

// --- the circle ---------------------------------------------------------------------------------

Node circle(const Side& side)
{
    const auto on = Sequence(no_bump(), IfThenElse(ConsistentlyLostDockSignal{}, break_docking_step(),
                                                   SurroundCharger{side.sign > 0 ? "Left" : "Right"}));
    const auto at_start =
        SequenceStar(Bumped{"${bump_dir}"}, within("100", "${go_to_dock_secotr_start_point}"), back2cm(),
                     turn(side, 15, "60"));
    const auto round_obstacle = SequenceStar(back2cm(), note_bump(), AdvancedSetFollowWallDirection{},
                                             go_to_dock_sector_follow_wall(), back2cm(), settle_first(side));
    return SubTree(side.sign > 0 ? "GoToDockSectorSmallLoopLeft" : "GoToDockSectorSmallLoopRight",
                   Loop(-1, FallbackStar(on, at_start, round_obstacle, reverse_walk(side))));
}

// The side receiver hears the middle line, or what lies beyond it.
Node on_line_or_beyond(const Side& side)
{
    return Fallback(hears(side_receiver(side), "Middle"),
                    hears(side_receiver(side), side.other_central_signal),
                    hears(side_receiver(side), side.other_side_signal));
}

// The first receiver that hears this side gives the turn that puts the robot across the field.
Node turn_across(const Side& side)
{
    const char* const far_side = side.sign > 0 ? right : left;
    const auto heard_by = [&side, far_side](const char* receiver) {
        return Fallback(hears(receiver, side.central_signal), hears(receiver, side.side_signal),
                        hears(far_side, side.other_side_signal));
    };
    const auto across = [&side] { return turn(side, -100, "40"); };
    return ForceSuccess(choose({{heard_by(far_side), across()},
                                {heard_by(side.far_receiver), across()},
                                {heard_by(side.near_receiver), across()},
                                {heard_by(side_receiver(side)), across()}},
                               AlwaysFailure{}));
}

// Moves that are switched off; on the right one of them stands twice.
Nodes parked_moves(const Side& side)
{
    const auto parked = [](const char* frames, const char* left_mm_s, const char* right_mm_s) {
        return IfThenElseStar(switched_off(), drive_for(frames, left_mm_s, right_mm_s), AlwaysSuccess{});
    };
    return side.sign > 0 ? row(parked("45", "70", "70"), parked("65", "50", "70"), parked("35", "60", "70"))
                         : row(parked("45", "70", "70"), parked("65", "70", "50"), parked("35", "70", "50"));
}

Node short_move_to_line(const Side& side)
{
    return SequenceStar(
        Fallback(SensorCheckBumped{"bump_dir"}, hears(side_receiver(side), side.other_central_signal),
                 hears(side_receiver(side), side.other_side_signal), drive_for("40", "70", "70")),
        parked_moves(side), IfThenElseStar(SensorCheckBumped{"bump_dir"}, back2cm(), AlwaysSuccess{}),
        turn(side, 75, "40"), Fallback(hears(side.far_receiver), turn(side, 25, "30")));
}

}  // namespace

Node circle_dock(const Side& side)
{
    const auto begin = FallbackStar(
        on_line_or_beyond(side),
        SequenceStar(key::current_pose.copy_to(key::go_to_dock_secotr_start_point), turn_across(side)));
    const Node mark_way = side.sign > 0 ? key::go_to_dock_sector_indirect_force_inverse.flag()
                                        : key::go_to_dock_sector_indirect_force_inverse.erase();
    return SequenceStar(
        begin, key::docking_small_loop_break.set("false"),
        ForceSuccess(BB_Precondition(key::docking_small_loop_break, circle(side))),
        IfThenElseStar(hears(side_receiver(side), side.other_side_signal),
                       SequenceStar(mark_way, indirect_or_break()), short_move_to_line(side)));
}

}  // namespace vemra::trees
