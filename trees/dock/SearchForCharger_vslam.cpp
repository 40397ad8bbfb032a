#include "trees/dock/docking_vslam.h"
#include "trees/dock/drive_to_dock.h"

namespace {

Node leave_field()
{
    return IfThenElseStar(Sequence(key::marker_in_dock_field.holds("true"), key::first_time_search.present(),
                                   key::dock_out_field.present()),
                          turn_away_and(FallbackStar(drive_unless_bumped("125", "120", "120"),
                                                     SubtreeCondition{"Back2cm.xml"})),
                          AlwaysSuccess{});
}

Node arc_heard(const Sense& sense)
{
    return Fallback(hears(sense.front_receiver), hears(sense.side_receiver));
}

Node middle()
{
    return hears("Any", "Middle");
}

Node farther_than(const char* distance_mm, const char* from)
{
    return Inverter(within(distance_mm, from));
}

Node plain_follow(const Sense&)
{
    return SubtreeCondition{"FollowWallDeal"};
}

Node heard_at_side(const Sense& sense)
{
    return Sequence(hears(sense.side_receiver), yaw_past(sense, "${initial_bump_yaw}"));
}

DriveForm drive()
{
    return {.leave_field = leave_field(),
            .heard_in_field = Sequence(InDockField{}, hears("Any")),
            .slow_arc_mm_s = "120",
            .before_follow = row(ActionDecorator(drive_for("1", "150", "150"))),
            .still_touching = Fallback(IsVirtualPzPlus{}, SensorCheckBumped{""}),
            .arc_heard = arc_heard,
            .first_follow = {.middle = middle(),
                             .good = heard_at_side,
                             .out_of_range = farther_than("1000", "${initial_bump_pose}"),
                             .wall_tree = plain_follow},
            .reverse_middle = middle(),
            .reverse_out_of_range = farther_than("2000", "${reverse_follow_wall_start_pose}"),
            .reverse_wall_tree = SubtreeCondition{"FollowWallDeal"},
            .last_follow = {.middle = middle(),
                            .good = heard_at_side,
                            .out_of_range = farther_than("1500", "${initial_bump_pose}"),
                            .wall_tree = plain_follow}};
}

}  // namespace

// The search that circles the dock with all four receivers.
TREE(SearchForCharger_vslam)
{
    return without_sensor(
        "DockField",
        Named("SearchForCharger",
              SequenceStar(begin_search({}), Repeat(-1, searching_cycle(drive(), docking_loop_vslam())))));
}
