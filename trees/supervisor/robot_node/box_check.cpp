// The water box and the mop cloth, which the user puts on and takes off.

#include "trees/idioms.h"
#include "trees/supervisor/robot_node/mode_runner.h"

namespace vemra::trees::robot_node {

namespace {

// Handling the robot at rest is no matter of where it stands. Elsewhere it wants to know whether it was
// lifted into a forbidden zone.
Node at_rest()
{
    return in_any_mode("PauseAndStopMode", "ErrRepotMode", "StandbyMode", "ChargingMode", "SleepMode");
}

Node wake_up()
{
    return SubtreeCondition{"WakeFromSleep"};
}

Node water_box_put_on()
{
    return fail_after(
        optionally(FallbackStar(at_rest(), SequenceStar(GenerateVirtualWalls{},
                                                        SubtreeCondition{"CheckInVirtualWall.xml"})),
                   play(23), key::water_box.flag()),
        wake_up());
}

Node watch_for_putting_on()
{
    return keep_choosing(
        {{DoesRobotPutOnWaterBox{}, water_box_put_on()}, {DoesRobotChargerStateChange{}, wake_up()}},
        ForceRunning{});
}

Node watch_cloth()
{
    return IfThenElse(DoesTuobuInstall{},
                      IfThenElse(key::mop_mode.present(), ForceRunning{},
                                 SequenceStar(SaySomething{"is mop mode."}, key::mop_mode.set("true"))),
                      ForceRunning{});
}

Node watch_for_taking_off()
{
    return keep_choosing(
        {{at_rest(), Sequence(DoesRobotDropWaterBox{}, optionally(play(63), key::water_box.take()), wake_up(),
                              ForceRunning{})},
         {DoesRobotDropWaterBox{},
          SequenceStar(play(24), GenerateVirtualWalls{}, SubtreeCondition{"CheckInVirtualWall.xml"})}},
        ForceRunning{});
}

// Under way, a cloth that comes or goes changes what is cleaned.
Node tell_cloth()
{
    return Sequence(switched_off(), in_any_mode(kCleaningModes, "BackHomeMode", "RemoteCtrlMode"),
                    FallbackStar(SequenceStar(DoesRobotPutOnTuobu{}, play(114)),
                                 SequenceStar(DoesRobotDropTuobu{}, key::mop_mode.take(),
                                              SaySomething{"is not mop mode."}, play(115))));
}

}  // namespace

// The last watcher is off in this product and fails at once, so that all of them start anew on every tick.
Node box_check()
{
    return SubTree("BoxCheck", DoWhile(watch_for_putting_on(), watch_cloth(),
                                       SequenceStar(NeedToPlayMopWarningMusic{}, queue(70)),
                                       watch_for_taking_off(), tell_cloth()));
}

}  // namespace vemra::trees::robot_node
