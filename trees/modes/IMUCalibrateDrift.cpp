#include "trees/idioms.h"

namespace {

Node ask_for_stop()
{
    return SequenceStar(SetBlackboard{"IMUCaliStopTicks", "200"}, SetBlackboard{"IMUCaliEn", "true"},
                        ForceRunning{});
}

}  // namespace

// Watches the drift of the inertial sensor. When it grows too large, the robot is asked to stand still for a
// calibration, and to go on once that is done.
TREE(IMUCalibrateDrift)
{
    return IfThenElse(
        Does_NeedToCalibrate_IMU_Diff{}, ask_for_stop(),
        IfThenElse(Does_NeedToCalibrate_IMU_Err{}, ask_for_stop(),
                   IfThenElse(Does_FinishCalibrate_IMU{},
                              SequenceStar(SetBlackboard{"IMUCaliStopTicks", "0"}, ForceRunning{}),
                              ForceRunning{})));
}
