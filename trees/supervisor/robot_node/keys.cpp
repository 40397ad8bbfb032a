// The keys of the robot: key 1 starts and pauses, key 2 sends home, and each has a long press of its own.

#include "trees/idioms.h"
#include "trees/supervisor/robot_node/commands.h"
#include "trees/supervisor/robot_node/station.h"

namespace vemra::trees::robot_node {

namespace {

// A paused task, announced as such unless the robot sleeps.
Node pause()
{
    return SequenceStar(FallbackStar(in_mode("SleepMode"), music("11", "true")),
                        ChangeRobotModeTo{.IsAimMode_Pause = "true"});
}

// A key under the child lock: at rest it does nothing but tell so; under way it still stops the robot.
Node key_under_child_lock()
{
    return IfThenElseStar(in_any_mode({"PauseAndStopMode", "ChargingMode", "OtaModeMode", "SleepMode",
                                       "StandbyMode", "ErrRepotMode"}),
                          music("118", "true"),
                          SequenceStar(ChangeRobotModeTo{.IsAimMode_Pause = "true"}, music("11", "false")));
}

// Two of the key values leave a sleeping robot asleep. Any other wakes it, and is used up by that.
Node wake_up()
{
    return IfThenElseStar(FallbackStar(DoesKeyValueIs{"3"}, DoesKeyValueIs{"9"}), AlwaysFailure{},
                          SubtreeCondition{"WakeFromSleep"});
}

// A wash station at work: its wash can be interrupted, or steered as with the station's own button.
Node key_during_wash()
{
    return SequenceStar(
        switched_off(), DoesRobotGetCharger{}, wash_or_dry_runs(),
        IfThenElseStar(DoesKeyValueIs{"1"}, SequenceStar(interrupt_wash(), music("11", "true")),
                       IfThenElseStar(DoesKeyValueIs{"6"}, SetBlackboard{"station_button_value", "longpush"},
                                      SetBlackboard{"station_button_value", "shortpush"})));
}

// Paused on the way to a wash, the start key sends the robot on to the station.
Node key_on_way_to_wash()
{
    return SequenceStar(switched_off(), in_mode("PauseAndStopMode"), Inverter(DoesRobotGetCharger{}),
                        FallbackStar(present("hand_wash_flag"), present("mop_is_dirty")), Is_Key1_Click{},
                        ChangeRobotModeTo{.IsAimMode_BackHome = "true"});
}

// Power off, which takes a robot that stands still and is off the charger.
Node key1_long_press()
{
    return SubTree(
        "Key1_LongPressProcess_Index",
        SequenceStar(
            Is_Key1_LongPressed{}, Stop{},
            IfThenElseStar(
                DoesRobotGetCharger{},
                SequenceStar(SaySomething{"please move out the charger base first"}, music("19", "true")),
                IfThenElseStar(in_any_mode({"AutoCleanMode", "BackHomeMode", "SelectAreaCleanMode",
                                            "DrawAreaCleanMode", "SelectPointCleanMode", "FastMapBuildMode",
                                            "PartCleanMode", "FollowWallMode"}),
                               AlwaysSuccess{}, ChangeRobotModeTo{.IsAimMode_PowerOff = "true"}))));
}

// Start and pause. At rest in the quiet hours, the first press only lights the keys.
Node key1_click()
{
    return SubTree(
        "Key1_ClickProcess_Index",
        SequenceStar(
            Is_Key1_Click{},
            IfThenElseStar(
                child_lock_is_on(), key_under_child_lock(),
                SequenceStar(
                    Stop{},
                    IfThenElseStar(
                        in_any_mode({"AutoCleanMode", "DrawAreaCleanMode", "SelectAreaCleanMode",
                                     "SelectPointCleanMode", "FastMapBuildMode", "PartCleanMode",
                                     "BackHomeMode", "FollowWallMode", "SleepMode"}),
                        pause(),
                        FallbackStar(IsRobotInAnnoyModeLedOff{},
                                     SequenceStar(too_low_to_start(),
                                                  optionally(switched_off(), set_flag("low_power_button")),
                                                  music("20", "true")),
                                     SequenceStar(SetBlackboard{"start_clean_method_key", "1"},
                                                  dual_clean_mode_select())))))));
}

// At rest, key 2 sends the robot home. A map being built is given up with it, and a dirty mop counts as
// dealt with.
Node go_home()
{
    return SequenceStar(
        optionally(key_is("task_state", "completing"), key_is("last_clean_mode", "FastMapBuildMode"),
                   SetBlackboard{"FastMapCleanCancleFlag", "true"}),
        SaySomething{"Need to deal backhome mode ..."}, ChangeRobotModeTo{.IsAimMode_BackHome = "true"},
        optionally(absent("start_backhome_method_app"), SetBlackboard{"start_backhome_method_key", "2"},
                   SaySomething{"start_backhome_method_key"}),
        erase("hand_wash_flag"),
        optionally(present("mop_is_dirty"), Delay{"500"},
                   SetBlackboardWithType{.key = "mop_dirty", .type = "float", .value = "0"},
                   erase("mop_is_dirty")));
}

Node key2_click()
{
    return SubTree(
        "Key2_SingleClick_Index",
        SequenceStar(
            Is_Key2_Click{},
            IfThenElseStar(
                child_lock_is_on(), key_under_child_lock(),
                SequenceStar(
                    Stop{},
                    IfThenElseStar(
                        DoesRobotGetCharger{},
                        IfThenElseStar(switched_off(), music("157", "true"), music("18", "true")),
                        IfThenElseStar(
                            in_any_mode({"AutoCleanMode", "DrawAreaCleanMode", "SelectAreaCleanMode",
                                         "SelectPointCleanMode", "FastMapBuildMode", "PartCleanMode",
                                         "BackHomeMode", "SleepMode"}),
                            IfThenElseStar(
                                in_mode("PartCleanMode"),
                                SequenceStar(SaySomething{"force finish partclean task"}, music("11", "true"),
                                             ChangeRobotModeTo{.IsAimMode_Standby = "true"}),
                                pause()),
                            go_home()))))));
}

// Wi-Fi set-up, which a task that is under way does not give way to.
Node wifi_key_click()
{
    return SubTree("SetKey_Click_Process_Index",
                   Sequence(Is_SetWIFIKey_Click{},
                            IfThenElseStar(in_any_mode({"BackHomeMode", "AutoCleanMode", "PartCleanMode",
                                                        "SelectAreaCleanMode", "DrawAreaCleanMode",
                                                        "SelectPointCleanMode"}),
                                           EraseKeyValue{}, SetWIFIKey_Click_Process{})));
}

Node reset_key_long_press()
{
    return SubTree("ResetKey_Long_Process_Index",
                   SequenceStar(Is_ResetKey_LongPress{}, ResetKey_LongPress_Process{}));
}

// Cleaning on the spot. Held for longer, the same key takes off the child lock.
Node key2_long_press()
{
    return SubTree(
        "Key2_LongPress_Process_Index",
        SequenceStar(
            IfThenElseStar(Sequence(DoesKeyValueIs{"6"}, child_lock_is_on()),
                           ForceFailure(key_under_child_lock()), AlwaysSuccess{}),
            IfThenElseStar(DoesKeyValueIs{"12"}, child_lock_is_on(), AlwaysSuccess{}), Is_Key2_LongPressed{},
            IfThenElseStar(
                child_lock_is_on(),
                SequenceStar(
                    SetBlackboardWithType{.key = "RobotChildLockStatus", .type = "int", .value = "0"},
                    music("117", "true")),
                SequenceStar(
                    Stop{},
                    IfThenElseStar(
                        in_any_mode({"AutoCleanMode", "BackHomeMode", "FollowWallMode", "DrawAreaCleanMode",
                                     "SelectAreaCleanMode", "SelectPointCleanMode", "FastMapBuildMode",
                                     "PartCleanMode"}),
                        pause(),
                        IfThenElseStar(
                            switched_off(), SaySomething{"Invalid Long Press Home  Key Value!"},
                            IfThenElseStar(too_low_to_start(), music("20", "true"),
                                           SequenceStar(ChangeRobotModeTo{.IsAimMode_FiledClean = "true"},
                                                        SetBlackboard{"start_clean_method_key", "2"}))))))));
}

}  // namespace

// The steps are tried in order until one takes the key. A press of any kind ends a timed order and an
// automatic mapping.
Node key_process()
{
    return SubTree(
        "KeyProcess",
        Fallback(ForceFailure(SequenceStar(present("OrderAutoClean"), erase("OrderAutoClean"))),
                 ForceFailure(SequenceStar(present("AutoMappingClean"), erase("AutoMappingClean"))),
                 ForceFailure(RobotAnnoyLedON{}),

                 in_any_mode({"OtaModeMode", "SelfTestMode"}),
                 SequenceStar(in_mode("FactoryFuncTest"), ChangeRobotModeTo{.IsAimMode_Standby = "true"}),
                 wake_up(), key_during_wash(), key_on_way_to_wash(),

                 key1_long_press(), key1_click(), key2_click(), wifi_key_click(), reset_key_long_press(),
                 key2_long_press(), erase("OloButton")));
}

}  // namespace vemra::trees::robot_node
