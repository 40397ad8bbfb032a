#include "trees/modes/shared.h"

namespace {

// A pause on a washing station would also stop its work.
Node wash_pause_handle()
{
    return SubTree(
        "WashPauseHandle",
        IfThenElse(Sequence(switched_off(), DoesRobotGetCharger{},
                            any_of({DoesWashStatus{"WASH_RUNNING"}, DoesWashStatus{"WASH_DRYING"}})),
                   SequenceStar(SetWashStatus{"WASH_INTERRUPT"}, StopWashHandle{}), AlwaysSuccess{}));
}

Node show_state()
{
    return choose({{StringMatch{"true", "false"}, Led_Mode_Set{"BUTTON_LED_Pause"}},
                   {RobotPowerGetLowerThan{"15"}, SequenceStar(Led_Mode_Set{"BUTTON_LED_Pause_LowPower"},
                                                               key::robot_status.set("clean_lowp_pause"))}},
                  SequenceStar(Led_Mode_Set{"BUTTON_LED_Pause"}, key::robot_status.set("clean_task_pause")));
}

}  // namespace

// Pause: the robot stands where it is and keeps its task, ready to go on.
TREE(StopModeIndex)
{
    return SequenceStar(
        NeedInitialStopMode{}, key::not_change_mode.erase(), key::kicked.set("false"), wash_pause_handle(),

        SlamPause{}, report_standing_still(), SubtreeCondition{"StopModePreset"},

        // A pause without a task is a standby.
        when(key::task_state.is("init"), fail_after(ChangeRobotModeTo{.IsAimMode_Standby = "true"})),

        SetCleanSystem{.Brush = "0", .Fan = "0", .Pump = "0", .SideBrush = "0"}, RobotMopGearSet{"0"}, Stop{},
        SetLastRobotMode{}, RobotTimer_s_Init{},

        DoWhile(SubtreeCondition{"JumpToSleepMode"}, show_state(), StopModeDeal{}));
}
