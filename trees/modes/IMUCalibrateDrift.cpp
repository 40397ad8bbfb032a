#include "trees/idioms.h"

namespace {

Node ask_for_stop()
{
    return SequenceStar(key::IMUCaliStopTicks.set(200), key::IMUCaliEn.set("true"), ForceRunning{});
}

}  // namespace

// Watches the drift of the inertial sensor. When it grows too large, the robot is asked to stand still for a
// calibration, and to go on once that is done.
TREE(IMUCalibrateDrift)
{
    return keep_choosing(
        {{Does_NeedToCalibrate_IMU_Diff{}, ask_for_stop()},
         {Does_NeedToCalibrate_IMU_Err{}, ask_for_stop()},
         {Does_FinishCalibrate_IMU{}, SequenceStar(key::IMUCaliStopTicks.set(0), ForceRunning{})}},
        ForceRunning{});
}
