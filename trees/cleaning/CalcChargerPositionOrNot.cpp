#include "trees/cleaning/shared.h"

// Reckons the dock's place from the drive off it, unless somebody moved the robot.
TREE(CalcChargerPositionOrNot)
{
    return optionally(
        SaySomething{"进入CalcChargerPositionOrNot"}, SlamPreend{},
        IfThenElseStar(
            present("OdomAfterCopied"), erase("OdomAfterCopied"),
            SequenceStar(erase("odom_pos_after"), BlackboardCopy{"current_odom", "odom_pos_after"})),
        ForceSuccess(
            choose({{present("moved_flag_for_calc_charger"),
                     SequenceStar(erase("moved_flag_for_calc_charger"), erase("start_from_charger_pose"))},
                    {key_is_true("start_from_charger"), CalcChargerPosition{"charger_position"}}},
                   erase("start_from_charger_pose"))),
        erase("calcu_chargerpos"), SaySomething{"退出CalcChargerPositionOrNot"});
}
