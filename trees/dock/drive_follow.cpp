#include "trees/dock/drive_follow.h"

namespace vemra::trees {

namespace {

Node solve_overturn()
{
    return SubtreeCondition{"SearchForChargerOverturnSolv"};
}

Node solve_loop()
{
    return SubtreeCondition{"SearchForChargerLoopSolvGoTowardCharger"};
}

Node turn_from_wall(const char* angle_deg)
{
    return SequenceStar(guarded_turn(angle_deg, 60), solve_overturn());
}

// A quarter turn and more beyond the heading of the bump counts as overturned.
Node follow(const Sense& sense, const FollowLadder& ladder)
{
    return SequenceStar(offset_yaw("${initial_bump_yaw}", turned(sense, 90).c_str(), "follow_wall_break_yaw"),
                        follow_wall_command("false"),
                        keep_choosing({{ladder.middle, because("middle")},
                                       {ladder.good(sense), because("good")},
                                       {yaw_past(sense, "${follow_wall_break_yaw}"), because("overturn")},
                                       {Inverter(wall_is_not_looped()), because("loop")},
                                       {ladder.out_of_range, because("range")}},
                                      follow_on(ladder.wall_tree(sense))));
}

Node settle(const Sense& sense, const Node& out_of_range)
{
    return by_text(key::break_condition, {{"middle", turn_from_wall(sense.sign > 0 ? "-90" : "90")},
                                          {"good", AlwaysSuccess{}},
                                          {"overturn", solve_overturn()},
                                          {"loop", solve_loop()},
                                          {"range", out_of_range}});
}

// --- the way back -------------------------------------------------------------------------------

Node turn_beside_first_bump()
{
    return SequenceStar(
        because("good"),
        IfThenElseStar(wall_on_right("false"), offset_yaw("${initial_bump_yaw}", "-30", "turn_target_angle"),
                       offset_yaw("${initial_bump_yaw}", "30", "turn_target_angle")),
        turn_to_target_angle());
}

Node walk_back(const DriveForm& form)
{
    return SequenceStar(key::turn_around_start.default_from(key::current_yaw_deg),
                        offset_yaw("${turn_around_start}", "180", "turn_target_angle"),
                        guarded_turn_to("${turn_target_angle}", "120"),
                        key::current_pose.copy_to(key::reverse_follow_wall_start_pose),
                        key::bump_dir.set("None"), follow_wall_command("false"),
                        keep_choosing({{form.reverse_middle, because("middle")},
                                       {within("120", "${initial_bump_pose}"), because("good")},
                                       {form.reverse_out_of_range, because("range")},
                                       {Inverter(wall_is_not_looped()), because("loop")}},
                                      follow_on(form.reverse_wall_tree)));
}

// After six returns to the same place the next one ends the drive.
Node count_return()
{
    return SequenceStar(
        FallbackStar(key::back_init_bump_cnt.present(), key::back_init_bump_cnt.set(0)),
        IfThenElseStar(Sequence(key::back_init_bump_cnt.present(), key::back_init_bump_cnt.above(5)),
                       SequenceStar(key::back_init_bump_cnt.erase(), break_drive()),
                       key::back_init_bump_cnt.plus(1)));
}

Node settle_way_back()
{
    return by_text(
        key::break_condition,
        {{"middle",
          SequenceStar(IfThenElseStar(wall_on_right("false"), guarded_turn(-90, 60), guarded_turn(90, 60)),
                       solve_overturn())},
         {"good", count_return()},
         {"range", SequenceStar(key::advanced_follow_wall_force_dir.set(key::follow_wall_dir.value()),
                                break_drive())}},
        solve_loop());
}

}  // namespace

Node go_toward_charger_follow_wall(const DriveForm& form)
{
    return SubTree(
        "GoTowardChargerFollowWall",
        SequenceStar(back2cm(), form.alternate_manner, by_wall_side([&form](const Sense& sense) {
                         return SequenceStar(
                             follow(sense, form.first_follow), back2cm(),
                             settle(sense,
                                    ForceFailure(key::current_yaw_deg.copy_to(key::turn_around_start))));
                     })));
}

Node go_toward_charger_reverse_follow_wall(const DriveForm& form)
{
    return SubTree(
        "GoTowardChargerReverseFollowWall",
        SequenceStar(
            back2cm(), turn_wall_side(),
            IfThenElseStar(within("120", "${initial_bump_pose}"), turn_beside_first_bump(), walk_back(form)),
            back2cm(), settle_way_back(), normalise_bump_yaw(), by_wall_side([&form](const Sense& sense) {
                return SequenceStar(follow(sense, form.last_follow), back2cm(), settle(sense, solve_loop()));
            })));
}

}  // namespace vemra::trees
