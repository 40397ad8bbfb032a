// The health of the robot: telling what ails it, and the error mode.

#include <string>

#include "trees/idioms.h"
#include "trees/supervisor/robot_node/commands.h"
#include "trees/supervisor/robot_node/watchers.h"

namespace vemra::trees::robot_node {

namespace {

Node error(const std::string& code)
{
    return DoesHappenThisErr{"OLO_HEALTH_STATUS_TYPE_" + code};
}

Node tell(const Node& fault, const char* number)
{
    return Sequence(fault, play(number));
}

// The robot cannot get to where it has to clean. A product without these melodies has a common one.
Node stuck_music(const char* number)
{
    return IfThenElse(switched_off(), play(69), queue(number));
}

// Being stuck, and what has no entry of its own.
Node other_error_music()
{
    return keep_choosing({{FallbackStar(error("TURN_SUFFOCATE"), error("FORWARD_SUFFOCATE")), play(40)},
                          {error("PATH_CLOSEDOORSTUCK"), stuck_music("151")},
                          {error("CANNOTREACH_OUTRANGSTUCK"), stuck_music("152")},
                          {error("CANNOTOUT_INVIRTUALWALLSTUCK"), stuck_music("153")},
                          {IsError_BatteryVeryLow{}, play(20)}},
                         play(44));
}

// Of several faults the first is told, and no other.
Node error_music()
{
    return SubTree(
        "ErrorMusic",
        Fallback(
            Sequence(IsError_Drop{}, key::robot_status.set("clean_drop"), play(41)),
            tell(error("MOP_CHECK"), "111"), tell(IsError_Cliff{}, "39"), tell(error("I_LDS_ERROR"), "71"),
            tell(error("I_LDS_BUMPER"), "72"), tell(error("I_FAN_SPEED"), "42"),
            tell(error("CHARGE_FAULT"), "50"), tell(error("BATTERY_FAULT"), "51"), tell(IsError_Box{}, "34"),
            tell(error("HEAP_CHECK"), "75"),
            tell(FallbackStar(error("I_LEFTWHELL_SPEED"), error("LEFT_WHEEL_MOTOR")), "38"),
            tell(FallbackStar(error("I_RIGHTWHELL_SPEED"), error("RIGHT_WHEEL_MOTOR")), "37"),
            tell(IsError_Bumper{}, "43"), tell(error("GESTURE"), "52"), tell(error("STRONG_MAGNET"), "49"),
            tell(error("FOLLOWSIDE"), "73"), tell(IsError_Trap{}, "40"), tell(IsError_Brush{}, "35"),
            tell(IsError_SideBrush{}, "36"), tell(IsError_TankBox{}, "24"),
            tell(error("CARPET_WATEBOX_START"), "77"), tell(error("TOF_OFFLINE"), "74"),
            tell(FallbackStar(error("CAMERA_FAULT"), IsError_ChargeFault{}, IsError_Heart{}), "44"),
            other_error_music()));
}

// The child lock was changed in the app.
Node tell_child_lock()
{
    return Sequence(key::ChildLockAppButtonClick.take(),
                    IfThenElse(child_lock_is_on(), play(116), play(117)));
}

}  // namespace

// An error is told once, on the way into the error mode, and not at all where the robot is at rest anyway. It
// ends a timed order and an automatic mapping.
Node health_check()
{
    return FallbackStar(
        ForceFailure(
            SequenceStar(key::clear_map_while_standby.take(), SubtreeCondition{"SearchChargeEnding"})),

        // A command that has just been handled gets the time to take effect.
        ForceFailure(SequenceStar(key::HealthDelay.present(), Delay{4}, key::HealthDelay.erase())),
        ForceFailure(tell_child_lock()),

        IsRobotHealthy{},
        in_any_mode("ErrRepotMode", "ChargingMode", "SleepMode", "WIFISetMode", "StandbyMode"),

        ForceFailure(SequenceStar(key::OrderAutoClean.take())),
        ForceFailure(SequenceStar(key::AutoMappingClean.take())), ForceFailure(revert_charge_music()),
        SubTree("Healthy_Detect",
                SequenceStar(Stop{}, error_music(), ChangeRobotModeTo{.IsAimMode_ErrReport = "true"})));
}

}  // namespace vemra::trees::robot_node
