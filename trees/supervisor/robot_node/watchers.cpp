// The small watchers: infrared sensors, the tunes of charger and warnings, keys that outlive their cause.

#include "trees/supervisor/robot_node/watchers.h"

#include "trees/idioms.h"

namespace vemra::trees::robot_node {

namespace {

// The user's phone may have told before that there is a station; otherwise its infrared light does.
Node save_connect_info()
{
    return SubTree(
        "SaveConnectInfo",
        SequenceStar(switched_on(), absent("Robot_with_station"), absent("StationConnectStatus_flag"),
                     present("StationConnectStatus"), IsInfraredConnect{},
                     SaySomething{"pv: Set connect flag"}, SetBlackboard{"StationConnectStatus", "true"},
                     set_flag("StationConnectStatus_flag"), CleanInfoSave{}));
}

// A landing that the robot made to charge for its task may be silenced by the mode.
Node charge_tune()
{
    return IfThenElseStar(
        present("chargemuiscflag"), SequenceStar(music("47", "false"), erase("chargemuiscflag")),
        IfThenElseStar(key_is_true("charge_voice_disable"), SetBlackboard{"charge_voice_disable", "false"},
                       music("47", "true")));
}

// A robot with a dirty mop that nobody has moved comes to be washed, not to charge.
Node lands_for_wash()
{
    return Sequence(switched_off(), key_is_true("charge_audio_judge"), present("mop_is_dirty"),
                    absent("dirty_music_judge"), Inverter(key_is_true("moved_during_pause")));
}

Node warning(const std::string& code)
{
    return DoesHappenThisWarning{"OLO_HEALTH_STATUS_TYPE_" + code};
}

Node warn_once(const char* code, const char* number, const char* told)
{
    return IfThenElse(warning(code),
                      SequenceStar(absent(told), music(number, "true"), SetBlackboard{told, "true"}),
                      ForceFailure(erase(told)));
}

}  // namespace

Node ir_switch()
{
    return SubTree(
        "IR_Switch",
        SequenceStar(FallbackStar(in_any_mode({"ChargingMode", "SleepMode"}),
                                  ForceFailure(RobotIRSwitch{.Cliff_ON = "true", .Front_ON = "true"}),
                                  IfThenElse(Sequence(switched_off()), AlwaysSuccess{}, AlwaysFailure{})),
                     RobotIRSwitch{.Cliff_ON = "false", .Front_ON = "false"}));
}

// The tune waits until the robot has come to rest on the contacts, and after a power-on for the melody of
// that as well. After it the watcher stays where it is until the robot has left the charger.
Node charge_music()
{
    return SubTree(
        "ChargeMusic",
        Sequence(
            DoesRobotGetCharger{},
            SequenceStar(
                SaySomething{"Debugxxx: 1"}, Delay{"100"}, SaySomething{"Debugxxx: 2"},
                IfThenElse(present("chargemode_poweron"),
                           SequenceStar(SaySomething{"Debugxxx:power on"}, Loop("20", AlwaysSuccess{}),
                                        erase("chargemode_poweron")),
                           AlwaysSuccess{}),
                IfThenElse(lands_for_wash(), AlwaysSuccess{}, DoWhile(save_connect_info(), charge_tune())),
                SaySomething{"Debugxxx: 3"}, ForceRunning{})));
}

Node warning_music()
{
    return SubTree(
        "WarningMusic",
        Fallback(
            warn_once("I_LDS_ERROR", "0", "LDSwarningMusicDisable"),
            warn_once("HEAP_CHECK", "75", "HEAPwarningMusicDisable"),

            // A cleaning that cannot reach its place any more goes home.
            SequenceStar(
                in_any_mode({"AutoCleanMode", "PartCleanMode", "SelectAreaCleanMode", "DrawAreaCleanMode",
                             "SelectPointCleanMode"}),
                Delay{"3"},
                FallbackStar(SequenceStar(warning("CANNOTREACH_OBSTACLESTUCK"), music("149", "false")),
                             SequenceStar(warning("CANNOTREACH_VIRTUALWALLSTUCK"), music("150", "false")),
                             SequenceStar(warning("CANNOTOUT_INVIRTUALWALLSTUCK"), music("153", "false"))),
                ChangeRobotModeTo{.IsAimMode_BackHome = "true"})));
}

Node charger_sig_delay()
{
    return SubTree("ChargerSigDelay",
                   IfThenElse(DoesRobotGetCharger{},
                              FallbackStar(present("just_on_charger"),
                                           SequenceStar(SetBlackboard{"just_on_charger", "true"},
                                                        SaySomething{"set  just_on_charger"})),
                              SequenceStar(present("just_on_charger"), Delay{"100"}, erase("just_on_charger"),
                                           SaySomething{"erase just_on_charger"})));
}

Node log_task_state()
{
    return FallbackStar(
        StringMatch{"${task_state}", "${task_state_last}"},
        SequenceStar(SaySomething{"task_state changed !"}, SaySomething{"${task_state}"},
                     SaySomething{"${task_state_last}"}, SetBlackboard{"task_state_last", "${task_state}"}));
}

Node lock_watchdog()
{
    return SequenceStar(Repeat("100", present("RobotModeSwitchLock")), erase("RobotModeSwitchLock"));
}

}  // namespace vemra::trees::robot_node
