#include "trees/escape/review.h"

#include "trees/escape/shared.h"

namespace vemra::trees {

namespace {

constexpr int kBackOffFrames = 100;
constexpr int kArcFrames = 60;

Node at_both_wheels(int mm_s)
{
    return OpenCloseMove{.left_mm_s = mm_s, .right_mm_s = mm_s};
}

// --- the end of a step ---------------------------------------------------------------------------

Node has_moved()
{
    return SequenceStar(
        PointToPointDist{.dist_mm = "a_b_dist", .point_mm_a = "${cp_pose}", .point_mm_b = "${current_pose}"},
        IsAGreaterThanBFloat{.A = "${a_b_dist}", .B = 50});
}

Node has_turned()
{
    return SequenceStar(FloatAdd{.a = "${current_yaw_deg}", .b = "-${yaw_cp}", .out_sum = "delt_deg"},
                        FallbackStar(IsAGreaterThanBFloat{.A = "${delt_deg}", .B = 40},
                                     IsAGreaterThanBFloat{.A = -40, .B = "${delt_deg}"}));
}

// An ordinary step of a follow hardly moves and passes this over. A review that did move the robot ends with
// a step back and asks for a rest.
Node close_review()
{
    return optionally(FallbackStar(has_moved(), has_turned()), SaySomething{"come to BumpPostporcess"},
                      SubTree("BumpPostprocess",
                              DoWhile(off_the_trace("BumpPostProcess"),
                                      SequenceStar(SubtreeCondition{"Back2cm"}, Delay{1},
                                                   SetBlackboardWithType{"disable_layer_marker", "int", 1},
                                                   SetBlackboardWithType{"review_halt_token", "int", 1}))));
}

// --- backing off and coming back -----------------------------------------------------------------

Node is_away(int mm)
{
    return SequenceStar(
        PointToPointDist{
            .dist_mm = "move_dist", .point_mm_a = "${mark_pose}", .point_mm_b = "${current_pose}"},
        IsAGreaterThanBFloat{.A = "${move_dist}", .B = mm});
}

Node hit_behind()
{
    return DoWhile(TemporarilyEnableSensor{.lock_status = "false", .sensor = "BackWardsBump"},
                   SensorCheckBumped{.out_bump_dir = ""});
}

Node back_counting(int mm_s)
{
    return ForceSuccess(Frameout(
        kBackOffFrames, DoWhile(IntAdd{.int_a = "${move_tick_cnt}", .int_b = 1, .out_sum = "move_tick_cnt"},
                                at_both_wheels(-mm_s))));
}

Node drive_back(int mm_s)
{
    return Fallback(
        SequenceStar(SensorCheckBumped{.out_bump_dir = ""}, ForceSuccess(SubtreeCondition{"Back2cm"})),
        ForceSuccess(Frameout("${move_tick_cnt}", at_both_wheels(mm_s))));
}

}  // namespace

// The draw mode that the step found is put back at its end, so that what a review sets lasts no longer than
// the review.
Node review_step(const char* enable, std::vector<Node> detectors)
{
    std::vector<Node> steps = {
        present(enable),
        present("current_draw_mode"),
        BlackboardCopy{.source = "current_draw_mode", .target = "current_draw_cp"},
        erase("review_bumped"),
        BlackboardCopy{.source = "current_pose", .target = "cp_pose"},
        BlackboardCopy{.source = "current_yaw_deg", .target = "yaw_cp"},
    };
    for (Node& detector : detectors)
        steps.push_back(ForceSuccess(std::move(detector)));
    steps.push_back(SetBlackboard{"sidebrush_slowdown", 0});
    steps.push_back(close_review());
    steps.push_back(SetMapDrawMode{.draw_mode = "${current_draw_cp}"});

    return DoWhile(StackBlackboard{"sidebrush_slowdown"}, StackBlackboard{"current_draw_mode"},
                   in_order(std::move(steps)));
}

std::vector<Node> there_and_back(int back_off_mm, int mm_s, const std::vector<Node>& look)
{
    std::vector<Node> steps = {
        BlackboardCopy{.source = "current_pose", .target = "mark_pose"},
        SetBlackboard{"move_tick_cnt", 0},
        Fallback(is_away(back_off_mm), hit_behind(), back_counting(mm_s)),
    };
    steps.insert(steps.end(), look.begin(), look.end());
    steps.push_back(drive_back(mm_s));
    return steps;
}

Node under_review(int yes)
{
    return SetBlackboardWithType{"is_review", "int", yes};
}

Node start_arc_count()
{
    return SetBlackboard{"check_cnt", 0};
}

Node counted_arc(const Node& motion)
{
    return Frameout(kArcFrames,
                    DoWhile(IntAdd{.int_a = "${check_cnt}", .int_b = 1, .out_sum = "check_cnt"}, motion));
}

Node backing_gate(const BackingGate& gate)
{
    // The sensor behind would hold the robot fast on its step back, hence it is off for that time.
    Node step_back = SubtreeCondition{"Back2cm"};
    step_back = gate.go_on_after_front_bump ? ForceFailure(step_back) : ForceSuccess(step_back);
    step_back =
        DoWhile(TemporarilyDisableSensor{.lock_status = "false", .sensor = "BackWardsBump"}, step_back);

    const Node hit_is_behind = BumpdirMatch{.para_a = "${bmp_dir}", .para_b = "BackWardsBump"};
    std::vector<Node> after_front_bump = {SensorCheckBumped{.out_bump_dir = "bmp_dir"}};
    if (gate.note_pose_of_bump)
        after_front_bump.push_back(BlackboardCopy{.source = "current_pose", .target = "stop_backwards_pose"});
    after_front_bump.push_back(Inverter(hit_is_behind));
    after_front_bump.push_back(step_back);

    std::vector<Node> ends = {in_order(std::move(after_front_bump)), hit_is_behind};
    if (gate.stop_when_scanned)
        ends.push_back(ScanConditionFinish{});

    const Node behind = TemporarilyEnableSensor{.lock_status = "false", .sensor = "BackWardsBump"};
    const Node clear = Inverter(any_of(std::move(ends)));
    if (gate.ignore_side_brush)
        return DoWhile(
            behind, TemporarilyDisableSensor{.lock_status = "false", .sensor = "SideBrushPointcloud"}, clear);
    return DoWhile(behind, clear);
}

}  // namespace vemra::trees
