#include "trees/cleaning/shared.h"
#include "trees/navigation/search.h"

namespace {

// Between a quarter and half a metre from the dock its field is even enough to calibrate the receivers.
Node watch_for_calibration()
{
    return SubTree("${infrared_calibration}",
                   SequenceStar(PointToPointDist{"a_b_dist", "${current_odom}", "${back_origin_pose}"},
                                when(SequenceStar(IsAGreaterThanBFloat{"${a_b_dist}", "250"},
                                                  IsAGreaterThanBFloat{"500", "${a_b_dist}"}),
                                     SetBlackboard{"need_infrared_calibration", "true"})));
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
                SetBlackboard{"Cnt", "0"},
                Fallback(IfOnAPlane{"400"},
                         ForceSuccess(Frameout(150, DoWhile(count_one("Cnt"), DetachNode{"-80"})))),
                SaySomething{"${Cnt}"},
                unless(IsAGreaterThanBInt{"50", "${Cnt}"}, ForceSuccess(Frameout(100, DetachNode{"-80"}))),
                IsAGreaterThanBInt{"${Cnt}", "140"}, SetBlackboard{"Leans_Cnt", "0"},
                Fallback(IfOnAPlane{"500"},
                         ForceSuccess(Frameout(50, DoWhile(count_one("Leans_Cnt"), DetachNode{"-80"})))),
                SaySomething{"${Leans_Cnt}"}, IsAGreaterThanBInt{"${Leans_Cnt}", "45"},
                set_flag("robot_leans_charger"))));
}

Node turn_back_to_start()
{
    return FallbackStar(NotTrapped{},
                        RetryUntilSuccesful(1, Sequence(SubtreeCondition{"Escape"},
                                                        Rotate{.angle_deg = "${back_origin_yaw}",
                                                               .angular_velocity_deg_s = "60",
                                                               .false_relative_true_absolute = "true"})));
}

}  // namespace

// Leaves the dock backwards, half a metre by odometry, and sees that the robot stands level by then.
TREE(PreAutoOnCharger)
{
    return Named(
        "PreAutoOnCharger",
        SequenceStar(
            SetBlackboard{"reset_mop_line", "true"}, account_motion("Detach"),
            SetBlackboard{"rotate_target_angle", "180"}, BlackboardCopy{"current_yaw_deg", "back_origin_yaw"},
            BlackboardCopy{"current_odom", "back_origin_pose"}, SetMapDrawMode{.draw_mode = "None"},
            when(SlamIsResumable{}, Delay{100}), back_off_dock(), ForceSuccess(judge_on_a_plane()),
            set_flag("infrared_calibration_finished"), when(present("detach_origin_yaw"), ModifyYaw{}),
            turn_back_to_start(), Stop{}, account_motion("Stop")));
}
