#include "trees/cleaning/preparations.h"

#include "trees/cleaning/cleaning_mode.h"

namespace vemra::trees {

Node leave_dock_and_watch_level()
{
    return optionally(SaySomething{"-------------------start  back-----------------------------"},
                      GetIMUPose{"IMU_POSE_Oncharger"}, SubtreeCondition{"AdvPreAutoOnCharger"},
                      GetIMUPose{"IMU_POSE_Oncharger_BackEnd"},
                      SaySomething{"-------------------backing  End-----------------------------"});
}

Node turn_and_watch_level()
{
    return Sequence(SubtreeCondition{"EscapeCoat"}, ActionDecorator(SubtreeCondition{"Back2cm"}),
                    SetMapDrawMode{.draw_mode = "None"}, SaySomething{"GetIMUPose 1"}, InitRollPitchCheck{},
                    DoWhile(RollPitchMinMaxUpdate{}, turn_half_round()), GetIMUPose{"IMU_POSE_TurnEnd"},
                    SaySomething{"GetIMUPose 2"}, note_drift_on_dock());
}

Node calc_charger_position_or_not()
{
    return optionally(
        SaySomething{"进入CalcChargerPositionOrNot"}, SlamPreend{},
        IfThenElseStar(
            key::OdomAfterCopied.present(), key::OdomAfterCopied.erase(),
            SequenceStar(key::odom_pos_after.erase(), key::current_odom.copy_to(key::odom_pos_after))),
        ForceSuccess(
            choose({{key::moved_flag_for_calc_charger.present(),
                     SequenceStar(erase(key::moved_flag_for_calc_charger, key::start_from_charger_pose))},
                    {key::start_from_charger.is_true(), CalcChargerPosition{"charger_position"}}},
                   key::start_from_charger_pose.erase())),
        key::calcu_chargerpos.erase(), SaySomething{"退出CalcChargerPositionOrNot"});
}

}  // namespace vemra::trees
