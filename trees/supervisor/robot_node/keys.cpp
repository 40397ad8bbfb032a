// The keys of the robot: key 1 starts and pauses, key 2 sends home, and each has a long press of its own.

#include "trees/idioms.h"
#include "trees/supervisor/robot_node/commands.h"
#include "trees/supervisor/robot_node/station.h"

namespace vemra::trees::robot_node {

namespace {

// A paused task, announced as such unless the robot sleeps.
Node pause()
{
    return SequenceStar(FallbackStar(in_mode("SleepMode"), play(11)),
                        ChangeRobotModeTo{.IsAimMode_Pause = "true"});
}

// A key under the child lock: at rest it does nothing but tell so; under way it still stops the robot.
Node key_under_child_lock()
{
    return IfThenElse(in_any_mode("PauseAndStopMode", "ChargingMode", "OtaModeMode", "SleepMode",
                                  "StandbyMode", "ErrRepotMode"),
                      play(118), SequenceStar(ChangeRobotModeTo{.IsAimMode_Pause = "true"}, queue(11)));
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
    return Sequence(switched_off(), DoesRobotGetCharger{}, wash_or_dry_runs(),
                    choose({{DoesKeyValueIs{"1"}, SequenceStar(interrupt_wash(), play(11))},
                            {DoesKeyValueIs{"6"}, key::station_button_value.set("longpush")}},
                           key::station_button_value.set("shortpush")));
}

// Paused on the way to a wash, the start key sends the robot on to the station.
Node key_on_way_to_wash()
{
    return Sequence(paused_on_way_to_wash(), Is_Key1_Click{},
                    ChangeRobotModeTo{.IsAimMode_BackHome = "true"});
}

// What a key does, unless the child lock is on. The robot stands still first.
Node unlocked(Node steps)
{
    return IfThenElse(child_lock_is_on(), key_under_child_lock(), SequenceStar(Stop{}, std::move(steps)));
}

// Power off, which takes a robot that stands still and is off the charger.
Node key1_long_press()
{
    const Node at_work =
        in_any_mode("AutoCleanMode", "BackHomeMode", "SelectAreaCleanMode", "DrawAreaCleanMode",
                    "SelectPointCleanMode", "FastMapBuildMode", "PartCleanMode", "FollowWallMode");
    return SubTree(
        "Key1_LongPressProcess_Index",
        SequenceStar(Is_Key1_LongPressed{}, Stop{},
                     choose({{DoesRobotGetCharger{},
                              SequenceStar(SaySomething{"please move out the charger base first"}, play(19))},
                             {at_work, AlwaysSuccess{}}},
                            ChangeRobotModeTo{.IsAimMode_PowerOff = "true"})));
}

// Start and pause. At rest in the quiet hours, the first press only lights the keys.
Node key1_click()
{
    const Node start = FallbackStar(
        IsRobotInAnnoyModeLedOff{},
        SequenceStar(too_low_to_start(), when(switched_off(), key::low_power_button.flag()), play(20)),
        SequenceStar(key::start_clean_method_key.set(1), dual_clean_mode_select()));
    return SubTree(
        "Key1_ClickProcess_Index",
        SequenceStar(Is_Key1_Click{}, unlocked(IfThenElseStar(in_any_mode(kTaskModes, "BackHomeMode",
                                                                          "FollowWallMode", "SleepMode"),
                                                              pause(), start))));
}

// At rest, key 2 sends the robot home. A map being built is given up with it, and a dirty mop counts as
// dealt with.
Node go_home()
{
    return SequenceStar(
        when(Sequence(key::task_state.is("completing"), key::last_clean_mode.is("FastMapBuildMode")),
             key::FastMapCleanCancleFlag.set("true")),
        SaySomething{"Need to deal backhome mode ..."}, ChangeRobotModeTo{.IsAimMode_BackHome = "true"},
        when(key::start_backhome_method_app.absent(), key::start_backhome_method_key.set(2),
             SaySomething{"start_backhome_method_key"}),
        key::hand_wash_flag.erase(),
        when(key::mop_is_dirty.present(), Delay{500}, key::mop_dirty.set_typed(0),
             key::mop_is_dirty.erase()));
}

// Home, or where the robot is at work, a pause. Cleaning on the spot ends.
Node key2_click()
{
    const Node end_part_clean = SequenceStar(SaySomething{"force finish partclean task"}, play(11),
                                             ChangeRobotModeTo{.IsAimMode_Standby = "true"});
    return SubTree("Key2_SingleClick_Index",
                   SequenceStar(Is_Key2_Click{},
                                unlocked(choose(
                                    {{DoesRobotGetCharger{}, IfThenElse(switched_off(), play(157), play(18))},
                                     {in_any_mode(kTaskModes, "BackHomeMode", "SleepMode"),
                                      IfThenElseStar(in_mode("PartCleanMode"), end_part_clean, pause())}},
                                    go_home()))));
}

// Wi-Fi set-up, which a task that is under way does not give way to.
Node wifi_key_click()
{
    return SubTree("SetKey_Click_Process_Index",
                   Sequence(Is_SetWIFIKey_Click{}, IfThenElse(in_any_mode("BackHomeMode", kCleaningModes),
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
    const Node at_work =
        in_any_mode("AutoCleanMode", "BackHomeMode", "FollowWallMode", "DrawAreaCleanMode",
                    "SelectAreaCleanMode", "SelectPointCleanMode", "FastMapBuildMode", "PartCleanMode");
    const Node clean_on_the_spot = choose(
        {{at_work, pause()},
         {switched_off(), SaySomething{"Invalid Long Press Home  Key Value!"}},
         {too_low_to_start(), play(20)}},
        SequenceStar(ChangeRobotModeTo{.IsAimMode_FiledClean = "true"}, key::start_clean_method_key.set(2)));
    return SubTree(
        "Key2_LongPress_Process_Index",
        SequenceStar(
            when(Sequence(DoesKeyValueIs{"6"}, child_lock_is_on()), ForceFailure(key_under_child_lock())),
            when(DoesKeyValueIs{"12"}, child_lock_is_on()), Is_Key2_LongPressed{},
            IfThenElse(child_lock_is_on(), SequenceStar(key::RobotChildLockStatus.set_typed(0), play(117)),
                       SequenceStar(Stop{}, clean_on_the_spot))));
}

}  // namespace

// The steps are tried in order until one takes the key. A press of any kind ends a timed order and an
// automatic mapping.
Node key_process()
{
    return SubTree(
        "KeyProcess",
        Fallback(ForceFailure(SequenceStar(key::OrderAutoClean.take())),
                 ForceFailure(SequenceStar(key::AutoMappingClean.take())), ForceFailure(RobotAnnoyLedON{}),

                 in_any_mode("OtaModeMode", "SelfTestMode"),
                 Sequence(in_mode("FactoryFuncTest"), ChangeRobotModeTo{.IsAimMode_Standby = "true"}),
                 wake_up(), key_during_wash(), key_on_way_to_wash(),

                 key1_long_press(), key1_click(), key2_click(), wifi_key_click(), reset_key_long_press(),
                 key2_long_press(), key::OloButton.erase()));
}

}  // namespace vemra::trees::robot_node
