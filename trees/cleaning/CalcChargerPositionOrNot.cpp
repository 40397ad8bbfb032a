#include "trees/cleaning/preparations.h"

// Reckons the dock's place from the drive off it, unless somebody moved the robot.
TREE(CalcChargerPositionOrNot)
{
    return calc_charger_position_or_not();
}
