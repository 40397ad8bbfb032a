#include "trees/cleaning/shared.h"

// On a carpet the water is shut off and the fan turned up.
TREE(auto_cleanmode_set)
{
    return optionally(
        DoesRobotCheckCarpet{},
        ForceSuccess(IfThenElseStar(present("water_box"), set_flag("close_water_box"),
                                    SequenceStar(present("close_water_box"), erase("close_water_box")))),
        DoesRobotCarpetPressEnable{}, RobotMotorPressPlusSet{});
}
