#include "trees/coverage/switch_line.h"

namespace {

Node arc_is_tight()
{
    return key::turn_radius.below(500);
}

// The turn is a motion of a whole round that the heading ends.
Node turn_quarter(const char* by_deg, const char* whole_round_deg, const Node& passed)
{
    return SequenceStar(key::current_yaw_deg.plus(by_deg, key::check_angle),
                        Fallback(passed, guarded_turn(whole_round_deg, 120)));
}

Node turn_towards_line()
{
    return IfThenElseStar(key::turn_angle.above(0),
                          turn_quarter("90", "360", key::current_yaw_deg.above(key::check_angle.value())),
                          turn_quarter("-90", "-360", key::check_angle.above(key::current_yaw_deg.value())));
}

Node turn_is_quarter()
{
    return BoolMatch{
        "(${turn_angle} > 85 && ${turn_angle} < 95) || (${turn_angle} > -95 && ${turn_angle} < -85)", "true"};
}

Node nothing_touches()
{
    return Inverter(CheckClifBump{.out_bump_dir = "bump_dir"});
}

Node arc()
{
    return DoWhile(
        traced_as("SwitchLineTurn"),
        FallbackStar(Sequence(SetMapDrawMode{.draw_mode = "Default"}, SubtreeCondition{"Escape"},
                              DoWhile(near_points_off(), guarded_arc(nothing_touches(), "100", "150"))),
                     ForceFailure(SubtreeCondition{"Back2cm"})));
}

Node turn()
{
    return SequenceStar(SetMapDrawMode{.draw_mode = "ClearOnly"}, key::High_Speed_Rotate.flag(),
                        turn_towards_line(), key::High_Speed_Rotate.erase(), reckon_turn(), arc_is_tight(),
                        turn_is_quarter(), arc());
}

Node wall_piece()
{
    return SequenceStar(NotTrapped{}, bumped(),
                        DoWhile(traced_as("SwitchLineFollowWall"),
                                SubtreeCondition{"tidemark_pro/SwitchLineFollowWall.xml"}));
}

}  // namespace

// To the neighbouring line: a quarter turn in place and an arc, or the wall that was met.
TREE(SwitchLineTurn)
{
    return IfThenElseStar(
        SequenceStar(reckon_turn(), arc_is_tight(), turn_is_half_round()),
        SequenceStar(set_up_wall_piece("false"), ForceSuccess(FallbackStar(turn(), wall_piece())),
                     near_line("1"), NotTrapped{}),
        SubtreeCondition{"SwitchLineFollowWallCoat", "falsee"});
}
