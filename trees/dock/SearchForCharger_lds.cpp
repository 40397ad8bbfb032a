#include "trees/dock/docking_lds.h"
#include "trees/dock/drive_to_dock.h"
#include "trees/idioms.h"

namespace {

// Three quarters of a metre at most; a longer way is switched off.
Node leave_field()
{
    return when(
        Sequence(key::marker_in_dock_field.holds("true"), key::first_time_search.present(),
                 key::dock_out_field.present()),
        turn_away_and(without_sensor(
            "DockField", FallbackStar(Sequence(no_bump(), IfThenElseStar(BoolMatch{"true", "true"},
                                                                         drive_for("75", "100", "100"),
                                                                         drive_for("125", "120", "120"))),
                                      SubtreeCondition{"Back2cm.xml"}))));
}

Node arc_heard(const Sense& sense)
{
    return hears(sense.front_receiver);
}

Node middle_that_counts()
{
    return Sequence(key::ignore_middle_dock.absent(), front_hears("Middle"));
}

// In the precise manner the follow stays nearer.
Node farther_than(const char* distance_mm, const char* precise_mm, const char* from)
{
    return Inverter(
        IfThenElse(key::dock_use_pfw.present(), within(precise_mm, from), within(distance_mm, from)));
}

Node plain_follow()
{
    return SubtreeCondition{"FollowWallDeal"};
}

Node precise_follow()
{
    return SubtreeCondition{"PreciseFollowWallProc"};
}

// Not mirrored: each side asks a flag of its own, and the flags say the opposite.
Node by_flag_of_side(const Sense& sense)
{
    return sense.sign > 0 ? IfThenElse(key::dock_not_use_pfw.present(), plain_follow(), precise_follow())
                          : IfThenElse(key::dock_use_pfw.present(), precise_follow(), plain_follow());
}

Node by_one_flag(const Sense&)
{
    return IfThenElse(key::dock_use_pfw.present(), precise_follow(), plain_follow());
}

Node heard_beyond_bump(const Sense& sense)
{
    return Sequence(hears(sense.front_receiver), yaw_past(sense, "${initial_bump_yaw}"));
}

Node beyond_bump(const Sense& sense)
{
    return yaw_past(sense, "${initial_bump_yaw}");
}

DriveForm drive()
{
    return {
        .leave_field = leave_field(),
        .heard_in_field = Sequence(InDockField{}, front_hears()),
        .slow_arc_mm_s = "80",
        .still_touching = SensorCheckBumped{""},
        .arc_heard = arc_heard,
        .alternate_manner = row(IfThenElseStar(key::dock_not_use_pfw.present(), key::dock_not_use_pfw.erase(),
                                               key::dock_not_use_pfw.flag())),
        .first_follow = {.middle = middle_that_counts(),
                         .good = heard_beyond_bump,
                         .out_of_range = farther_than("1000", "400", "${initial_bump_pose}"),
                         .wall_tree = by_flag_of_side},
        .reverse_middle = middle_that_counts(),
        .reverse_out_of_range = farther_than("2000", "600", "${reverse_follow_wall_start_pose}"),
        .reverse_wall_tree = IfThenElse(key::dock_not_use_pfw.present(), plain_follow(), precise_follow()),
        .last_follow = {.middle = middle_that_counts(),
                        .good = beyond_bump,
                        .out_of_range = farther_than("1500", "500", "${initial_bump_pose}"),
                        .wall_tree = by_one_flag}};
}

}  // namespace

// The search for the dock: a marking turn, the drive along the signal, the approach to the sector before the
// dock, and the last stretch onto the contacts. Contact ends it from above.
TREE(SearchForCharger_lds)
{
    return without_sensor(
        "DockField",
        Named("SearchForCharger",
              SequenceStar(begin_search({}), Repeat(-1, searching_cycle(drive(), docking_loop_lds())))));
}
