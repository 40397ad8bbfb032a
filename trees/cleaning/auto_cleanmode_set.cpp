#include "trees/cleaning/shared.h"

// On a carpet the water is shut off and the fan turned up.
TREE(auto_cleanmode_set)
{
    return optionally(DoesRobotCheckCarpet{},
                      ForceSuccess(IfThenElseStar(key::water_box.present(), key::close_water_box.flag(),
                                                  SequenceStar(key::close_water_box.take()))),
                      DoesRobotCarpetPressEnable{}, RobotMotorPressPlusSet{});
}
