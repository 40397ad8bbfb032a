#include "trees/escape/review.h"
#include "trees/escape/shared.h"

namespace {

// The camera has found something under the robot's own outline. The robot counts as clear of it only with
// some margin, which is therefore widened as soon as it moves. The halt stands in front of the motion as a
// guard, so that the robot backs by single frames with a rest between them.
Node back_off_obstacle()
{
    return SubTree("AINeedBackWards",
                   Sequence(key::outline_dist.set(-30), BodyInObstacle{"${outline_dist}"},
                            key::sidebrush_slowdown.set(1), SetMapDrawMode{.draw_mode = "BlockOnly"},
                            DoWhile(off_the_trace("BackWardsDetect"),
                                    SequenceStar(account_action("BackWardsDetect"), Stop{}, Delay{5})),
                            ForceSuccess(Sequence(
                                key::outline_dist.set(30),
                                backing_gate({.note_pose_of_bump = true, .go_on_after_front_bump = true}),
                                OpenCloseMove{.left_mm_s = -80, .right_mm_s = -80})),
                            Stop{}));
}

// An arc at the wheel speeds that the camera asks for, until it has seen enough.
Node scan()
{
    return ForceSuccess(
        Sequence(backing_gate({.ignore_side_brush = true, .stop_when_scanned = true}),
                 counted_arc(OpenCloseMove{.left_mm_s = "${left_speed}", .right_mm_s = "${right_speed}"})));
}

Node undo_scan()
{
    return ForceSuccess(
        Fallback(SequenceStar(SensorCheckBumped{.out_bump_dir = ""}, SubtreeCondition{"Back2cm"}),
                 Frameout("${check_cnt}",
                          OpenCloseMove{.left_mm_s = "-${left_speed}", .right_mm_s = "-${right_speed}"})));
}

// A spot that the camera wants to see from more than one side: an arc, a look from farther off, the arc back.
Node scan_obstacle()
{
    return SubTree(
        "AiNeeddetect",
        SequenceStar(AiNeedScan{.wheel_left = "left_speed", .wheel_right = "right_speed"}, Stop{},
                     key::sidebrush_slowdown.set(1), SetMapDrawMode{.draw_mode = "BlockOnly"},
                     DoWhile(off_the_trace("BlindZoneDetect"), key::keep_normal_speed.flag(),
                             SequenceStar(start_arc_count(), account_action("AiBlindZoneDetect"),
                                          under_review(1), scan(), Stop{},
                                          SubTree("BackAndHead",
                                                  in_order(there_and_back(100, 120, {Stop{}, Delay{20}}))),
                                          undo_scan(), under_review(0)))));
}

}  // namespace

// The review with the camera, in the frame of the laser's. No tree runs it at present.
TREE(AiReviewAction)
{
    return review_step(key::Enable_AI, {back_off_obstacle(), scan_obstacle()});
}
