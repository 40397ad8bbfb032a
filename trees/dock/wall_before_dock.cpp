#include "trees/dock/docking_lds.h"

namespace vemra::trees {

namespace {

// --- looking towards the dock from the wall -----------------------------------------------------

Node look_round(const Side& side, const char* begin, const char* heard)
{
    return SequenceStar(
        SaySomething{begin},
        Fallback(Sequence(Fallback(hears(ml, side.side_signal), hears(mr, side.side_signal),
                                   hears(ml, side.central_signal), hears(mr, side.central_signal)),
                          key::follow_wall_dist.set(50), SaySomething{heard}),
                 guarded(Rotate{.angle_deg = turned(side, 135),
                                .angular_velocity_deg_s = "33",
                                .false_relative_true_absolute = "false"})));
}

Node turn_back(const Side& side)
{
    return Rotate{.angle_deg = turned(side, -135),
                  .angular_velocity_deg_s = "33",
                  .false_relative_true_absolute = "false"};
}

// The receivers are blind along a wall. After a stretch of it the robot looks, and turns back for as long.
Node probe()
{
    const auto by_side = [](Node on_left, Node on_right) {
        return IfThenElseStar(key::in_left_signal.is_true(), std::move(on_left), std::move(on_right));
    };
    return SequenceStar(
        FallbackStar(key::follow_wall_dist.present(), key::follow_wall_dist.set(100)),
        IfThenElseStar(
            within("${follow_wall_dist}", "${new_judge_pose}"), AlwaysSuccess{},
            SequenceStar(key::current_pose.copy_to(key::new_judge_pose), key::check_cnt.set(0),
                         DoWhile(key::check_cnt.plus(1),
                                 by_side(look_round(left_side, "在左侧，开始左转", "中左看到左侧信号"),
                                         look_round(right_side, "在右侧开始右转", "中右看到右边信号"))),
                         ForceSuccess(Frameout("${check_cnt}",
                                               by_side(turn_back(left_side), turn_back(right_side)))))));
}

// --- along the wall -----------------------------------------------------------------------------

// One receiver on the line is not enough, but the robot looks again soon.
Node on_line(const char* receiver, const char* other, const char* other_signal, const char* say)
{
    return Sequence(
        hears(receiver, "Middle"),
        Fallback(Sequence(Fallback(hears(other, "Middle"), hears(other, other_signal)), SaySomething{say}),
                 ForceFailure(key::follow_wall_dist.set(30))));
}

Node because_said(const char* reason, const char* say)
{
    return SequenceStar(because(reason), SaySomething{say});
}

Node overturned()
{
    return IfThenElse(wall_on_right("false"), yaw_above("${follow_wall_break_yaw}"),
                      yaw_below("${follow_wall_break_yaw}"));
}

Node follow_wall_before_docker()
{
    return SubTree(
        "FollowWallBeforeDocker",
        SequenceStar(
            SaySomething{"开始沿边"},
            IfThenElseStar(wall_on_right("false"),
                           offset_yaw("${initial_bump_yaw}", "120", "follow_wall_break_yaw"),
                           offset_yaw("${initial_bump_yaw}", "-120", "follow_wall_break_yaw")),
            follow_wall_command("true"),
            keep_choosing(
                {{Fallback(on_line(ml, mr, "CentralRight", "看到对中信号left"),
                           on_line(mr, ml, "CentralLeft", "看到对中信号right")),
                  because("good")},
                 {overturned(), because_said("overturn", "转过了")},
                 {Inverter(wall_is_not_looped()), because_said("loop", "转圈了")},
                 {Inverter(within("700", "${initial_bump_pose}")), because_said("range", "超过700")}},
                Sequence(probe(), SubtreeCondition{"Escape"}, SubtreeCondition{"FollowWallDeal"})),
            erase(key::new_judge_pose, key::follow_wall_dist), SaySomething{"绕障结束"}));
}

// --- what comes of it ---------------------------------------------------------------------------

Node after_overturn(const Side& side)
{
    const auto until_it_is_lost = Fallback(Inverter(hears(side.near_receiver, side.side_signal)),
                                           Inverter(hears(side.near_receiver, side.central_signal)),
                                           ForceFailure(turn(side, -360, "40")));
    const auto beyond_line = Fallback(hears(side.near_receiver, side.other_central_signal),
                                      hears(side.far_receiver, side.other_central_signal));
    return SequenceStar(
        key::current_yaw_deg.copy_to(key::turn_around_start),
        IfThenElseStar(hears_side(side), until_it_is_lost,
                       SequenceStar(IfThenElseStar(beyond_line, key::go_to_sector_lds.set("true"),
                                                   key::docking_big_loop_break.set("true")),
                                    Delay{1})));
}

}  // namespace

Node wall_branch(const Side& side)
{
    return SequenceStar(back2cm(), note_bump(), set_wall_side(side.sign > 0 ? "true" : "false"),
                        follow_wall_before_docker(),
                        by_text(key::break_condition,
                                {{"good", SequenceStar(reached_sector())},
                                 {"overturn", after_overturn(side)},
                                 {"loop", greedy_way_past_obstacle()}},
                                break_docking_step()));
}

}  // namespace vemra::trees
