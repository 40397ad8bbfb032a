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
        SequenceStar(switched_on(), key::Robot_with_station.absent(), key::StationConnectStatus_flag.absent(),
                     key::StationConnectStatus.present(), IsInfraredConnect{},
                     SaySomething{"pv: Set connect flag"}, key::StationConnectStatus.set("true"),
                     key::StationConnectStatus_flag.flag(), CleanInfoSave{}));
}

// A landing that the robot made to charge for its task may be silenced by the mode.
Node charge_tune()
{
    return choose({{key::chargemuiscflag.present(), SequenceStar(queue(47), key::chargemuiscflag.erase())},
                   {key::charge_voice_disable.is_true(), key::charge_voice_disable.set("false")}},
                  play(47));
}

// A robot with a dirty mop that nobody has moved comes to be washed, not to charge.
Node lands_for_wash()
{
    return Sequence(switched_off(), key::charge_audio_judge.is_true(), key::mop_is_dirty.present(),
                    key::dirty_music_judge.absent(), Inverter(key::moved_during_pause.is_true()));
}

Node warning(const std::string& code)
{
    return DoesHappenThisWarning{"OLO_HEALTH_STATUS_TYPE_" + code};
}

Node warn_once(const char* code, int number, const Key& told)
{
    return IfThenElse(warning(code), SequenceStar(told.absent(), play(number), told.set("true")),
                      ForceFailure(told.erase()));
}

}  // namespace

Node ir_switch()
{
    return SubTree(
        "IR_Switch",
        SequenceStar(FallbackStar(in_any_mode(kModesOnDock),
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
                SaySomething{"Debugxxx: 1"}, Delay{100}, SaySomething{"Debugxxx: 2"},
                IfThenElse(key::chargemode_poweron.present(),
                           SequenceStar(SaySomething{"Debugxxx:power on"}, Loop("20", AlwaysSuccess{}),
                                        key::chargemode_poweron.erase()),
                           AlwaysSuccess{}),
                IfThenElse(lands_for_wash(), AlwaysSuccess{}, DoWhile(save_connect_info(), charge_tune())),
                SaySomething{"Debugxxx: 3"}, ForceRunning{})));
}

Node warning_music()
{
    return SubTree(
        "WarningMusic",
        Fallback(warn_once("I_LDS_ERROR", 0, key::LDSwarningMusicDisable),
                 warn_once("HEAP_CHECK", 75, key::HEAPwarningMusicDisable),

                 // A cleaning that cannot reach its place any more goes home.
                 SequenceStar(in_any_mode(kCleaningModes), Delay{3},
                              FallbackStar(SequenceStar(warning("CANNOTREACH_OBSTACLESTUCK"), queue(149)),
                                           SequenceStar(warning("CANNOTREACH_VIRTUALWALLSTUCK"), queue(150)),
                                           SequenceStar(warning("CANNOTOUT_INVIRTUALWALLSTUCK"), queue(153))),
                              ChangeRobotModeTo{.IsAimMode_BackHome = "true"})));
}

Node charger_sig_delay()
{
    return SubTree(
        "ChargerSigDelay",
        IfThenElse(
            DoesRobotGetCharger{},
            FallbackStar(key::just_on_charger.present(), SequenceStar(key::just_on_charger.set("true"),
                                                                      SaySomething{"set  just_on_charger"})),
            SequenceStar(key::just_on_charger.present(), Delay{100}, key::just_on_charger.erase(),
                         SaySomething{"erase just_on_charger"})));
}

Node log_task_state()
{
    return FallbackStar(
        StringMatch{"${task_state}", "${task_state_last}"},
        SequenceStar(SaySomething{"task_state changed !"}, SaySomething{"${task_state}"},
                     SaySomething{"${task_state_last}"}, key::task_state_last.set(key::task_state.value())));
}

Node lock_watchdog()
{
    return SequenceStar(Repeat("100", key::RobotModeSwitchLock.present()), key::RobotModeSwitchLock.erase());
}

}  // namespace vemra::trees::robot_node
