#include "trees/idioms.h"

// Stands still for as long as a calibration of the inertial sensor has asked for.
TREE(IMUCalib)
{
    return optionally(key::IMUCaliEn.present(), Stop{}, Delay{key::IMUCaliStopTicks.value()},
                      key::IMUCaliEn.erase());
}
