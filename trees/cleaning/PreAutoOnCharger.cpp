#include "trees/cleaning/shared.h"
#include "trees/navigation/search.h"

namespace {

// Between a quarter and half a metre from the dock its field is even enough to calibrate the receivers.
Node watch_for_calibration()
{
    return SubTree("${infrared_calibration}",
                   SequenceStar(PointToPointDist{"a_b_dist", "${current_odom}", "${back_origin_pose}"},
                                when(Sequence(key::a_b_dist.above(250), key::a_b_dist.below(500)),
                                     key::need_infrared_calibration.set("true"))));
}

Node back_off_dock()
{
    return IfThenElseStar(
        switched_off(),
        ForceSuccess(Frameout(
            750, Named("GoForward40cm",
                       Sequence(ArePointsTooClose{"660", "${current_odom}", "${back_origin_pose}"},
                                Fallback(SubtreeCondition{"Escape"}, Delay{5}), DetachNode{"100"})))),
        ForceSuccess(Frameout(
            750, Named("Back30cm",
                       Sequence(ArePointsTooClose{"500", "${current_odom}", "${back_origin_pose}"},
                                watch_for_calibration(), Fallback(SubtreeCondition{"Escape"}, Delay{5}),
                                IfThenElse(switched_off(), DetachNode{"-50"}, DetachNode{"-160"}))))));
}

Node count_one(const char* key)
{
    return IntAdd{"${" + std::string(key) + "}", "1", key};
}

// A robot that still leans on its dock by then backs on, until it is level, and counts how long it leans.
Node judge_on_a_plane()
{
    return SubTree(
        "JudgeOnAPlane",
        FallbackStar(
            IfOnAPlane{"200"},
            SequenceStar(
                key::Cnt.set(0),
                Fallback(IfOnAPlane{"400"},
                         ForceSuccess(Frameout(150, DoWhile(count_one("Cnt"), DetachNode{"-80"})))),
                SaySomething{"${Cnt}"},
                unless(IsAGreaterThanBFloat{"50", "${Cnt}"}, ForceSuccess(Frameout(100, DetachNode{"-80"}))),
                IsAGreaterThanBFloat{"${Cnt}", "140"}, key::Leans_Cnt.set(0),
                Fallback(IfOnAPlane{"500"},
                         ForceSuccess(Frameout(50, DoWhile(count_one("Leans_Cnt"), DetachNode{"-80"})))),
                SaySomething{"${Leans_Cnt}"}, IsAGreaterThanBFloat{"${Leans_Cnt}", "45"},
                key::robot_leans_charger.flag())));
}

Node turn_back_to_start()
{
    return FallbackStar(NotTrapped{},
                        RetryUntilSuccesful(1, guarded(Rotate{.angle_deg = "${back_origin_yaw}",
                                                              .angular_velocity_deg_s = "60",
                                                              .false_relative_true_absolute = "true"})));
}

}  // namespace

// Leaves the dock backwards, half a metre by odometry, and sees that the robot stands level by then.
TREE(PreAutoOnCharger)
{
    return Named(
        "PreAutoOnCharger",
        SequenceStar(key::reset_mop_line.set("true"), account_motion("Detach"),
                     key::rotate_target_angle.set(180), key::current_yaw_deg.copy_to(key::back_origin_yaw),
                     key::current_odom.copy_to(key::back_origin_pose), SetMapDrawMode{.draw_mode = "None"},
                     when(SlamIsResumable{}, Delay{100}), back_off_dock(), ForceSuccess(judge_on_a_plane()),
                     key::infrared_calibration_finished.flag(),
                     when(key::detach_origin_yaw.present(), ModifyYaw{}), turn_back_to_start(), Stop{},
                     account_motion("Stop")));
}
