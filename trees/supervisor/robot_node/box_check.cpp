// The water box and the mop cloth, which the user puts on and takes off.

#include "trees/idioms.h"
#include "trees/supervisor/robot_node/mode_runner.h"

namespace vemra::trees::robot_node {

namespace {

// Handling the robot at rest is no matter of where it stands. Elsewhere it wants to know whether it was
// lifted into a forbidden zone.
Node at_rest()
{
    return in_any_mode({"PauseAndStopMode", "ErrRepotMode", "StandbyMode", "ChargingMode", "SleepMode"});
}

Node wake_up()
{
    return SubtreeCondition{"WakeFromSleep"};
}

Node water_box_put_on()
{
    return SequenceStar(
        optionally(FallbackStar(at_rest(), SequenceStar(GenerateVirtualWalls{},
                                                        SubtreeCondition{"CheckInVirtualWall.xml"})),
                   music("23", "true"), set_flag("water_box")),
        wake_up(), AlwaysFailure{});
}

Node watch_for_putting_on()
{
    return IfThenElse(DoesRobotPutOnWaterBox{}, water_box_put_on(),
                      IfThenElse(DoesRobotChargerStateChange{}, wake_up(), ForceRunning{}));
}

Node watch_cloth()
{
    return IfThenElse(
        DoesTuobuInstall{},
        IfThenElse(present("mop_mode"), ForceRunning{},
                   SequenceStar(SaySomething{"is mop mode."}, SetBlackboard{"mop_mode", "true"})),
        ForceRunning{});
}

Node watch_for_taking_off()
{
    return IfThenElse(at_rest(),
                      Sequence(DoesRobotDropWaterBox{},
                               optionally(music("63", "true"), present("water_box"), erase("water_box")),
                               wake_up(), ForceRunning{}),
                      IfThenElse(DoesRobotDropWaterBox{},
                                 SequenceStar(music("24", "true"), GenerateVirtualWalls{},
                                              SubtreeCondition{"CheckInVirtualWall.xml"}),
                                 ForceRunning{}));
}

// Under way, a cloth that comes or goes changes what is cleaned.
Node tell_cloth()
{
    return Sequence(switched_off(),
                    in_any_mode({"AutoCleanMode", "PartCleanMode", "SelectAreaCleanMode", "DrawAreaCleanMode",
                                 "SelectPointCleanMode", "BackHomeMode", "RemoteCtrlMode"}),
                    FallbackStar(SequenceStar(DoesRobotPutOnTuobu{}, music("114", "true")),
                                 SequenceStar(DoesRobotDropTuobu{}, present("mop_mode"), erase("mop_mode"),
                                              SaySomething{"is not mop mode."}, music("115", "true"))));
}

}  // namespace

// The last watcher is off in this product and fails at once, so that all of them start anew on every tick.
Node box_check()
{
    return SubTree("BoxCheck", DoWhile(watch_for_putting_on(), watch_cloth(),
                                       SequenceStar(NeedToPlayMopWarningMusic{}, music("70", "false")),
                                       watch_for_taking_off(), tell_cloth()));
}

}  // namespace vemra::trees::robot_node
