#include "trees/escape/review.h"
#include "trees/escape/shared.h"

namespace {

// --- swings --------------------------------------------------------------------------------------

/// One turn of the swing: it asks for a full turn and lasts as long as `not_there_yet` holds.
Node swing_while(const Node& not_there_yet, int frames, int angle_deg)
{
    return ForceSuccess(
        Sequence(not_there_yet, Frameout(frames, guarded(Rotate{.angle_deg = angle_deg,
                                                                .angular_velocity_deg_s = 60,
                                                                .false_relative_true_absolute = "false"}))));
}

// To the left by the first amplitude, to the right by the second, and back to the middle.
Node action_swing()
{
    return SubTree(
        "ActionSwing",
        SequenceStar(
            key::current_yaw_deg.copy_to(key::last_pose_yaw_deg),
            swing_while(key::current_yaw_deg.below("${last_pose_yaw_deg} + ${fAngle_start}"), 60, 360),
            swing_while(key::current_yaw_deg.above("${last_pose_yaw_deg} - ${fAngle_dest}"), 120, -360),
            swing_while(key::current_yaw_deg.below("${last_pose_yaw_deg} "), 60, 360)));
}

// --- a wire --------------------------------------------------------------------------------------

// Something that may be a wire lies ahead: a short way back brings it into the laser's reach.
Node suspect_wire_detection()
{
    std::vector<Node> steps = {account_action("SuspectWireDetect"), under_review(1), Stop{}};
    for (Node& step : there_and_back(
             50, 90, {key::fAngle_start.set_typed(20), key::fAngle_dest.set_typed(20), action_swing()}))
        steps.push_back(std::move(step));
    steps.push_back(under_review(0));

    return SubTree("SuspectWireDetection",
                   SequenceStar(SuspectWireDetect{}, SetMapDrawMode{.draw_mode = "BlockOnly"},
                                DoWhile(off_the_trace("SuspectWireDetect"), key::is_review.kept(),
                                        in_order(std::move(steps)))));
}

// --- a step in the floor -------------------------------------------------------------------------

Node is_beyond(const char* yaw, const char* limit)
{
    return IsAGreaterThanBFloat{.A = yaw, .B = limit};
}

Node turn_until(const Node& arrived, int angle_deg)
{
    return SequenceStar(key::current_yaw_deg.plus(key::turn_angle.value(), key::check_angle),
                        Fallback(arrived, guarded_turn(angle_deg, 60)));
}

// Looks at the middle of the step, by way of the nearer side.
Node turn_to_mid_point()
{
    return SubTree("TurnToMidPoint",
                   IfThenElseStar(is_beyond("${turn_angle}", "0"),
                                  turn_until(is_beyond("${current_yaw_deg}", "${check_angle}"), 360),
                                  turn_until(is_beyond("${check_angle}", "${current_yaw_deg}"), -360)));
}

// A line on the floor that may be the edge of a step. The swing goes as wide as the last wire review left it,
// and the robot stays marked as being under review.
Node suspect_line_detect()
{
    return SubTree(
        "SuspectLineDetect",
        SequenceStar(
            key::suspect_step.present(),
            IsStepNearBy{.i_step = "${suspect_step}", .o_angle_deg = "turn_angle", .o_mid_pt = "mid_point"},
            under_review(1), SetMapDrawMode{.draw_mode = "BlockOnly"},
            DoWhile(off_the_trace("SuspectLineDetect"),
                    SequenceStar(
                        account_action("SuspectLineDetect"), turn_to_mid_point(), Stop{},
                        key::current_pose.copy_to(key::last_detect_pose),
                        SubTree("BackAndHeadAndSwing", in_order(there_and_back(100, 120, {action_swing()}))),
                        erase(key::last_pose_yaw_deg, key::last_detect_pose)))));
}

// --- the blind zone beside the wall --------------------------------------------------------------

Node wall_is_on_the_right()
{
    return key::follow_wall_dir.holds("true");
}

Node by_wheels(int left_mm_s, int right_mm_s)
{
    return OpenCloseMove{.left_mm_s = left_mm_s, .right_mm_s = right_mm_s};
}

// The wheel at the wall goes faster, so that the nose comes round to the wall.
Node arc_back()
{
    return ForceSuccess(
        Sequence(backing_gate({}), IfThenElseStar(wall_is_on_the_right(), counted_arc(by_wheels(-55, -200)),
                                                  counted_arc(by_wheels(-200, -55)))));
}

// The same arc forward, for as many frames.
Node arc_forward()
{
    return ForceSuccess(
        Sequence(Inverter(SequenceStar(SensorCheckBumped{.out_bump_dir = "bmp_dir"},
                                       ForceSuccess(SubtreeCondition{"Back2cm"}))),
                 IfThenElseStar(wall_is_on_the_right(), Frameout("${check_cnt}", by_wheels(55, 200)),
                                Frameout("${check_cnt}", by_wheels(200, 55)))));
}

/// A positive angle turns to the wall.
Node turn_to_wall(int angle_deg)
{
    return IfThenElseStar(wall_is_on_the_right(), guarded_turn(-angle_deg, 60), guarded_turn(angle_deg, 60));
}

enum class Way
{
    ToTheWall,
    Back
};

// What the arc did not turn is turned on the spot: much after a short arc, less after a middling one, nothing
// after a full one. The first case fails on purpose, to keep out of the second.
Node make_up_for_short_arc(Way way)
{
    const int sign = way == Way::ToTheWall ? 1 : -1;
    return optionally(
        FallbackStar(IsAGreaterThanBFloat{"${check_cnt}", "30"}, ForceFailure(turn_to_wall(sign * 80))),
        FallbackStar(IsAGreaterThanBFloat{"${check_cnt}", "49"}, turn_to_wall(sign * 60)));
}

// Right beside the robot the laser sees nothing: it leaves the wall in an arc, looks at the place where it
// stood, and comes back the same way.
Node blind_zone_detect()
{
    return SubTree(
        "BlindZoneDetect",
        SequenceStar(
            BlindZoneDetected{}, SetMapDrawMode{.draw_mode = "BlockOnly"},
            DoWhile(off_the_trace("BlindZoneDetect"), key::keep_normal_speed.flag(), key::is_review.kept(),
                    SequenceStar(start_arc_count(), account_action("BlindZoneDetect"), under_review(1),
                                 arc_back(), make_up_for_short_arc(Way::ToTheWall), Stop{}, Delay{15},
                                 make_up_for_short_arc(Way::Back), arc_forward(), under_review(0)))));
}

}  // namespace

// The review with the laser, one step of it before each step of a wall follow.
TREE(LaserReviewAction)
{
    return review_step(key::Enable_Laser,
                       {suspect_wire_detection(), suspect_line_detect(), blind_zone_detect()});
}
