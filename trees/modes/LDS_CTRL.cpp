#include "trees/idioms.h"

// Lets the laser spin in the modes that move the robot, and only there. A fault of the laser is remembered
// for good. The result is a success once the laser is off.
TREE(LDS_CTRL)
{
    return IfThenElseStar(
        DoesHappenThisWarning{"OLO_HEALTH_STATUS_TYPE_I_LDS_ERROR"},
        SequenceStar(SaySomething{"LdsForceOff"}, key::LdsForceOff.set("true"), Delay{300}),
        SequenceStar(
            FallbackStar(in_mode("StandbyMode"), in_mode("ErrRepotMode"), in_mode("PauseAndStopMode"),
                         in_mode("ChargingMode"), in_mode("OtaModeMode"), in_mode("SleepMode"),
                         in_mode("WIFISetMode"), in_mode("PowerOffMode"), ForceFailure(LDS_Switch{"true"})),
            LDS_Switch{"false"}));
}
