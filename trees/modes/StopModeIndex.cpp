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
    return IfThenElseStar(StringMatch{"true", "false"}, Led_Mode_Set{"BUTTON_LED_Pause"},
                          IfThenElseStar(RobotPowerGetLowerThan{"15"},
                                         SequenceStar(Led_Mode_Set{"BUTTON_LED_Pause_LowPower"},
                                                      SetBlackboard{"robot_status", "clean_lowp_pause"}),
                                         SequenceStar(Led_Mode_Set{"BUTTON_LED_Pause"},
                                                      SetBlackboard{"robot_status", "clean_task_pause"})));
}

}  // namespace

// Pause: the robot stands where it is and keeps its task, ready to go on.
TREE(StopModeIndex)
{
    return SequenceStar(
        NeedInitialStopMode{}, erase("not_change_mode"), SetBlackboard{"kicked", "false"},
        wash_pause_handle(),

        SlamPause{}, report_standing_still(), SubtreeCondition{"StopModePreset"},

        // A pause without a task is a standby.
        IfThenElseStar(key_is("task_state", "init"),
                       SequenceStar(ChangeRobotModeTo{.IsAimMode_Standby = "true"}, AlwaysFailure{}),
                       AlwaysSuccess{}),

        SetCleanSystem{.Brush = "0", .Fan = "0", .Pump = "0", .SideBrush = "0"}, RobotMopGearSet{"0"}, Stop{},
        SetLastRobotMode{}, RobotTimer_s_Init{},

        DoWhile(SubtreeCondition{"JumpToSleepMode"}, show_state(), StopModeDeal{}));
}
