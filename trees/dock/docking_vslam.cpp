#include "trees/dock/docking_vslam.h"

#include <iterator>

#include "trees/dock/docking_lds.h"

namespace vemra::trees {

namespace {

constexpr Key kInverse = key::go_to_dock_sector_indirect_force_inverse;
constexpr Key kDirection = key::go_to_dock_sector_indirect_dir;

// --- which side ---------------------------------------------------------------------------------

// From a receiver at the side to the front one next to it.
Node turn_front_to(const char* side_of, const char* side_signal, const char* front_of,
                   const char* front_signal, Nodes until, const char* angle_deg)
{
    return Sequence(hears(side_of, side_signal), hears(front_of, front_signal),
                    Fallback(until, ForceFailure(guarded_turn(angle_deg, 40))));
}

Node between_centrals()
{
    return SequenceStar(
        hears("Any", "CentralLeft"), hears("Any", "CentralRight"),
        FallbackStar(both("CentralLeft", "CentralRight"),
                     IfThenElseStar(Sequence(hears(left, "CentralLeft"), hears(ml, "CentralRight")),
                                    Fallback(hears(mr, "CentralRight"), hears(mr, "Middle"),
                                             hears(mr, "CentralLeft"), ForceFailure(guarded_turn(60, 40))),
                                    turn_front_to(mr, "CentralLeft", right, "CentralRight",
                                                  row(hears(ml, "CentralLeft"), hears(ml, "Middle"),
                                                      hears(ml, "CentralRight")),
                                                  "-60")),
                     go_to_dock_sector_indirect(), walk_and_break_docking()));
}

Node add_vote(const char* receiver)
{
    const auto add = [](const char* vote) { return IntAdd{"${trash}", vote, "trash"}; };
    return ForceSuccess(
        IfThenElseStar(hears(receiver, "Left"), add("-1"), Sequence(hears(receiver, "Right"), add("1"))));
}

// Success chooses the left, failure the right; a tie ends the cycle.
Node vote()
{
    return SequenceStar(key::trash.set(0), add_vote(left), add_vote(ml), add_vote(mr), add_vote(right),
                        choose({{IsAGreaterThanBInt{"${trash}", "0"}, AlwaysFailure{}},
                                {IsAGreaterThanBInt{"0", "${trash}"}, AlwaysSuccess{}}},
                               walk_and_break_docking()));
}

Node choose_left()
{
    const auto heard_both = Sequence(any_hears_side(left_side), any_hears_side(right_side));
    return choose(
        {{heard_both, choose({{hears("Any", "CentralLeft"), AlwaysSuccess{}},
                              {hears("Any", "CentralRight"), AlwaysFailure{}}},
                             vote())},
         {Fallback(any_hears_side(left_side), any_hears_side(right_side)), any_hears_side(left_side)}},
        walk_and_break_docking());
}

// --- the final approach -------------------------------------------------------------------------

Node follow_middle_line()
{
    return Sequence(no_bump(), FollowDockSignalFinal{});
}

Node retry_from_the_side()
{
    return ForceFailure(
        SequenceStar(IfThenElseStar(kInverse.present(), guarded_turn(-70, 40), guarded_turn(70, 40)),
                     indirect_or_break()));
}

Node final_approach()
{
    return RetryUntilSuccesful(
        -1,
        FallbackStar(
            keep_choosing(
                {{ConsistentlyLostDockSignal{}, AlwaysFailure{}},
                 {InMiddleDockOnceInAWhile{},
                  docking({.scanner_off = false, .cliff_off = false, .follow = follow_middle_line()})}},
                AlwaysFailure{}),
            IfThenElseStar(Bumped{"${bump_dir}"}, ForceSuccess(smart_back_40cm(back_off_dock("150", "200"))),
                           retry_from_the_side())));
}

}  // namespace

Node go_to_dock_sector()
{
    return SubTree("GoToDockSector", FallbackStar(hears("Any", "Middle"), between_centrals(),
                                                  IfThenElseStar(choose_left(), circle_dock(left_side),
                                                                 circle_dock(right_side))));
}

Node docking_loop_vslam()
{
    Nodes loop = docking_loop(row(go_to_dock_sector(), final_approach()));
    loop.insert(std::prev(loop.end()), key::dock_sector_indirect_times.set(0));
    return SequenceStar(loop);
}

// --- round the dock at a distance ---------------------------------------------------------------

namespace {

Node beyond_line(const Side& side)
{
    return Fallback(hears(side_receiver(side), "Middle"),
                    hears(side_receiver(side), side.other_central_signal));
}

Node surround(const Side& side)
{
    return SubTree(
        side.sign > 0 ? "IndirectSurroundChargerLeft" : "IndirectSurroundChargerRight",
        Fallback(hears(side_receiver(side), "Middle"), hears(side_receiver(side), side.other_central_signal),
                 Sequence(SubtreeCondition{"Escape"}, no_bump(),
                          IfThenElse(ConsistentlyNotInDockField{}, AlwaysFailure{},
                                     SurroundCharger{side.sign > 0 ? "LeftIndirect" : "RightIndirect"}))));
}

Node surround_or_other_way(const Side& side, const Side& other)
{
    return FallbackStar(surround(side), SequenceStar(back2cm(), NotTrapped{}, turn(side, 160, "40"),
                                                     FallbackStar(surround(other), ForceFailure(back2cm()))));
}

Node note_direction()
{
    const auto on_side = [](const Side& side) {
        return Sequence(beyond_line(side), Inverter(hears(side.near_receiver, "Middle")));
    };
    return choose(
        {{on_side(left_side), kDirection.set("Left")}, {on_side(right_side), kDirection.set("Right")}},
        kDirection.set("None"));
}

Node settle_direction()
{
    const auto turned_to = [](const char* angle_deg) {
        return SequenceStar(kDirection.erase(), guarded_turn(angle_deg, 40));
    };
    const auto count = SequenceStar(
        kDirection.erase(),
        IfThenElseStar(key::dock_sector_indirect_times.present(),
                       IfThenElseStar(key::dock_sector_indirect_times.above(3), break_docking_step(),
                                      key::dock_sector_indirect_times.plus(1)),
                       AlwaysSuccess{}));
    return by_text(kDirection, {{"Left", turned_to("80")}, {"Right", turned_to("-80")}}, count);
}

}  // namespace

Node go_to_dock_sector_indirect()
{
    const auto arc_or_straight = IfThenElseStar(
        switched_off(),
        IfThenElseStar(kDirection.is("Left"), drive_for("15", "60", "80"), drive_for("15", "80", "60")),
        drive_for("45", "70", "70"));
    return SubTree(
        "GoToDockSectorIndirect",
        SequenceStar(
            IfThenElseStar(kInverse.present(),
                           SequenceStar(surround_or_other_way(left_side, right_side), kInverse.erase()),
                           SequenceStar(surround_or_other_way(right_side, left_side), kInverse.flag())),
            NotTrapped{}, note_direction(), Fallback(SensorCheckBumped{"bump_dir"}, arc_or_straight),
            optionally(Bumped{"${bump_dir}"}, back2cm()), settle_direction()));
}

}  // namespace vemra::trees
