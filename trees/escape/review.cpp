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
        key::a_b_dist.above(50));
}

Node has_turned()
{
    return SequenceStar(key::current_yaw_deg.plus("-${yaw_cp}", key::delt_deg),
                        FallbackStar(key::delt_deg.above(40), key::delt_deg.below(-40)));
}

// An ordinary step of a follow hardly moves and passes this over. A review that did move the robot ends with
// a step back and asks for a rest.
Node close_review()
{
    return optionally(FallbackStar(has_moved(), has_turned()), SaySomething{"come to BumpPostporcess"},
                      SubTree("BumpPostprocess", DoWhile(off_the_trace("BumpPostProcess"),
                                                         SequenceStar(SubtreeCondition{"Back2cm"}, Delay{1},
                                                                      key::disable_layer_marker.set_typed(1),
                                                                      key::review_halt_token.set_typed(1)))));
}

// --- backing off and coming back -----------------------------------------------------------------

Node is_away(int mm)
{
    return Sequence(
        PointToPointDist{
            .dist_mm = "move_dist", .point_mm_a = "${mark_pose}", .point_mm_b = "${current_pose}"},
        key::move_dist.above(mm));
}

Node hit_behind()
{
    return with_sensor("BackWardsBump", SensorCheckBumped{.out_bump_dir = ""});
}

Node back_counting(int mm_s)
{
    return ForceSuccess(Frameout(kBackOffFrames, DoWhile(key::move_tick_cnt.plus(1), at_both_wheels(-mm_s))));
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
Node review_step(const Key& enable, std::vector<Node> detectors)
{
    std::vector<Node> steps = {
        enable.present(),
        key::current_draw_mode.present(),
        key::current_draw_mode.copy_to(key::current_draw_cp),
        key::review_bumped.erase(),
        key::current_pose.copy_to(key::cp_pose),
        key::current_yaw_deg.copy_to(key::yaw_cp),
    };
    for (Node& detector : detectors)
        steps.push_back(ForceSuccess(std::move(detector)));
    steps.push_back(key::sidebrush_slowdown.set(0));
    steps.push_back(close_review());
    steps.push_back(SetMapDrawMode{.draw_mode = "${current_draw_cp}"});

    return DoWhile(key::sidebrush_slowdown.kept(), key::current_draw_mode.kept(), in_order(std::move(steps)));
}

std::vector<Node> there_and_back(int back_off_mm, int mm_s, const std::vector<Node>& look)
{
    std::vector<Node> steps = {
        key::current_pose.copy_to(key::mark_pose),
        key::move_tick_cnt.set(0),
        Fallback(is_away(back_off_mm), hit_behind(), back_counting(mm_s)),
    };
    steps.insert(steps.end(), look.begin(), look.end());
    steps.push_back(drive_back(mm_s));
    return steps;
}

Node under_review(int yes)
{
    return key::is_review.set_typed(yes);
}

Node start_arc_count()
{
    return key::check_cnt.set(0);
}

Node counted_arc(const Node& motion)
{
    return Frameout(kArcFrames, DoWhile(key::check_cnt.plus(1), motion));
}

Node backing_gate(const BackingGate& gate)
{
    // The sensor behind would hold the robot fast on its step back, hence it is off for that time.
    Node step_back = SubtreeCondition{"Back2cm"};
    step_back = gate.go_on_after_front_bump ? ForceFailure(step_back) : ForceSuccess(step_back);
    step_back = without_sensor("BackWardsBump", step_back);

    const Node hit_is_behind = BumpdirMatch{.para_a = "${bmp_dir}", .para_b = "BackWardsBump"};
    std::vector<Node> after_front_bump = {SensorCheckBumped{.out_bump_dir = "bmp_dir"}};
    if (gate.note_pose_of_bump)
        after_front_bump.push_back(key::current_pose.copy_to(key::stop_backwards_pose));
    after_front_bump.push_back(Inverter(hit_is_behind));
    after_front_bump.push_back(step_back);

    std::vector<Node> ends = {in_order(std::move(after_front_bump)), hit_is_behind};
    if (gate.stop_when_scanned)
        ends.push_back(ScanConditionFinish{});

    const Node behind = sensor_on("BackWardsBump");
    const Node clear = Inverter(any_of(std::move(ends)));
    if (gate.ignore_side_brush)
        return DoWhile(behind, sensor_off("SideBrushPointcloud"), clear);
    return DoWhile(behind, clear);
}

}  // namespace vemra::trees
