#include "trees/dock/docking_lds.h"

namespace vemra::trees {

namespace {

// --- a pass across the field --------------------------------------------------------------------

struct ArcSpeeds
{
    Wheels within_field;
    Wheels outside;
};

// The outer wheel of an arc to the right is the left one.
Node arc(const Side& side, const char* frames, const ArcSpeeds& speeds)
{
    const auto mirrored = [&side](const Wheels& w) {
        return side.sign > 0 ? w : Wheels{w.right_mm_s, w.left_mm_s};
    };
    return drive_by_field(frames, mirrored(speeds.within_field), mirrored(speeds.outside));
}

Node choose_arc_length(const Side& side, const Node& mid)
{
    return choose(
        {{mid, key::go_sector_mid.flag()},
         {Fallback(hears(side.near_receiver, side.side_signal), hears(side.far_receiver, side.side_signal)),
          key::go_sector_long.flag()}});
}

Node drive_arc(const Side& side, const char* long_frames)
{
    constexpr ArcSpeeds wide{{"100", "130"}, {"100", "140"}};
    constexpr ArcSpeeds narrow{{"70", "90"}, {"60", "90"}};
    return choose({{key::go_sector_mid.present(), arc(side, "80", wide)},
                   {key::go_sector_long.present(), arc(side, long_frames, wide)}},
                  arc(side, "65", narrow));
}

// Back to the dock, no further than the limit, and on until it is heard.
Nodes turn_to_dock(const Side& side)
{
    const auto past_limit = side.sign > 0 ? yaw_above("${fix_dock_break}") : yaw_below("${fix_dock_break}");
    return row(offset_yaw("${current_yaw_deg}", turned(side, 70).c_str(), "fix_dock_break"),
               IfThenElse(past_limit, AlwaysSuccess{}, turn(side, 80, "60")),
               Fallback(hears(side.far_receiver, side.side_signal),
                        hears(side.far_receiver, side.central_signal), hears(side.far_receiver, "Middle"),
                        hears(side.far_receiver, side.other_central_signal), turn(side, 40, "30")));
}

}  // namespace

Node arc_pass(const Side& side, const ArcPass& pass)
{
    return SequenceStar(count_arc(), erase(key::go_sector_mid, key::go_sector_long),
                        choose_arc_length(side, pass.mid_arc), turn(side, -95, "60"),
                        drive_arc(side, pass.long_frames), turn_to_dock(side), pass.own_steps,
                        IfThenElseStar(Fallback(pass.matches, hold_still("5")),
                                       SequenceStar(reached_sector()), SequenceStar(note_field(), Delay{1})));
}

Node right_approach_in_one_arc(const Node& short_arc)
{
    const auto pass = SequenceStar(
        count_arc(),
        Fallback(SequenceStar(Fallback(hears(right, "Middle"), hears(right, "CentralLeft")), short_arc,
                              guarded_turn(-90, 60), reached_sector()),
                 drive_by_field("200", {"90", "70"}, {"90", "60"})),
        guarded_turn(-70, 60),
        Fallback(hears(ml, "Right"), hears(ml, "CentralRight"), hears(ml, "Middle"), hears(ml, "CentralLeft"),
                 guarded_turn(-40, 30)),
        IfThenElse(Fallback(hears(ml, "Middle"), both("CentralLeft", "CentralRight"),
                            hears(ml, "CentralLeft"), hears(mr, "CentralLeft"), hold_still("25")),
                   SequenceStar(reached_sector()), note_field()),
        guarded_turn(85, 60));
    return approach(right_side, row(guarded_turn(90, 60)), pass, wall_branch(right_side));
}

namespace {

// Asked in the same order on both sides.
Node stands_on(const Side& side)
{
    return Fallback(hears(ml, side.side_signal), hears(ml, side.central_signal), hears(mr, side.side_signal),
                    hears(mr, side.central_signal));
}

}  // namespace

Node sector_lds(const SectorForm& form)
{
    const auto left_approach = approach(left_side, {},
                                        arc_pass(left_side, {.mid_arc = form.mid_arc(left_side),
                                                             .long_frames = form.long_frames,
                                                             .own_steps = form.after_turn(left_side),
                                                             .matches = form.matches}),
                                        wall_branch(left_side));
    return sector_tree(
        form.name, row(form.head, SequenceStar(stands_on(left_side), left_approach),
                       SequenceStar(stands_on(right_side), form.right_approach), walk_and_break_docking()));
}

// --- the live dock ------------------------------------------------------------------------------

namespace {

Node mid_arc_7002(const Side& side)
{
    return Fallback(both(side.side_signal, side.central_signal), both(side.central_signal, side.side_signal));
}

Nodes steps_7002(const Side&)
{
    const auto silent = optionally(both("None", "None"), reached_sector());
    const auto short_of_line =
        optionally(stops_short_of_line(left_side), guarded_turn(-80, 120), drive_for("20", "100", "100"),
                   guarded_turn(90, 120), reached_sector());
    const auto beyond_line =
        optionally(both("CentralRight", "CentralRight"), guarded_turn(80, 120), drive_for("60", "100", "100"),
                   guarded_turn(-90, 120), reached_sector());
    return row(silent, short_of_line, beyond_line);
}

// A step to the right or left puts the robot onto the line.
Node beside_line()
{
    return choose(
        {{FallbackStar(Sequence(Fallback(hears(ml, "Left"), hears(ml, "CentralLeft")), hears(mr, "Middle")),
                       both("Middle", "None")),
          side_step(left_side)},
         {FallbackStar(Sequence(hears(ml, "Middle"), Fallback(hears(mr, "CentralRight"), hears(mr, "Right"))),
                       both("None", "Middle")),
          side_step(right_side)}},
        AlwaysFailure{});
}

}  // namespace

Node sector_lds_7002()
{
    return sector_lds(
        {.name = "GoToDockSectorLDS7002",
         .head = row(both("Middle", "Middle"), both("CentralLeft", "CentralRight"), beside_line()),
         .mid_arc = mid_arc_7002,
         .long_frames = "180",
         .after_turn = steps_7002,
         .matches =
             row(both("Middle", "Middle"), both("CentralLeft", "CentralRight"), hears(ml, "CentralRight")),
         .right_approach = right_approach_in_one_arc(drive_for("50", "90", "70"))});
}

// --- the sisters --------------------------------------------------------------------------------

namespace {

Nodes sister_head()
{
    return row(hears(ml, "Middle"), hears(mr, "Middle"), both("CentralLeft", "CentralRight"));
}

Node sister_mid_arc(const Side& side)
{
    return Sequence(hears(side.near_receiver, side.side_signal),
                    hears(side.far_receiver, side.central_signal));
}

// The turns are those of the left side on both.
Nodes sister_steps(const Side& side)
{
    return row(optionally(stops_short_of_line(side), guarded_turn(-80, 120), drive_for("60", "80", "80"),
                          guarded_turn(90, 120), reached_sector()));
}

Nodes sister_matches(const Side& side)
{
    return side.sign > 0 ? row(hears(mr, "Middle"), both("CentralLeft", "CentralRight"),
                               hears(ml, "CentralRight"), hears(mr, "CentralRight"))
                         : row(hears(mr, "Middle"), both("CentralLeft", "CentralRight"),
                               hears(ml, "CentralLeft"), hears(mr, "CentralLeft"));
}

}  // namespace

Node sector_lds_7003()
{
    const auto mirrored = approach(right_side, {},
                                   arc_pass(right_side, {.mid_arc = sister_mid_arc(right_side),
                                                         .long_frames = "140",
                                                         .own_steps = sister_steps(right_side),
                                                         .matches = sister_matches(right_side)}),
                                   wall_branch(right_side));
    return sector_lds({.name = "GoToDockSectorLDS7003",
                       .head = sister_head(),
                       .mid_arc = sister_mid_arc,
                       .long_frames = "140",
                       .after_turn = sister_steps,
                       .matches = sister_matches(left_side),
                       .right_approach = mirrored});
}

Node sector_lds_first()
{
    return sector_lds({.name = "GoToDockSectorLDS",
                       .head = sister_head(),
                       .mid_arc = sister_mid_arc,
                       .long_frames = "180",
                       .after_turn = sister_steps,
                       .matches = sister_matches(left_side),
                       .right_approach = right_approach_in_one_arc(IfThenElseStar(
                           switched_on(), drive_for("70", "90", "70"), drive_for("50", "90", "70")))});
}

}  // namespace vemra::trees
