#include "trees/conditions.h"
#include "trees/modes/shared.h"

namespace {

// A standby on a washing station would also end its work and empty its dirty water.
Node wash_standby_handle()
{
    return SubTree(
        "WashStandbyHandle",
        IfThenElse(Sequence(switched_off(), DoesRobotGetCharger{},
                            any_of({DoesWashStatus{"WASH_RUNNING"}, DoesWashStatus{"WASH_DRYING"}})),
                   SequenceStar(SetWashStatus{"WASH_IDLE"}, StopWashHandle{}, set_flag("force_start_sewage")),
                   AlwaysSuccess{}));
}

Node pause_drying()
{
    return optionally(SaySomething{"enter standby,pause wash and dry 0"}, SaySomething{"${wash_status}"},
                      present("dry_procssing"), set_flag("wash_dry_stop_flag"),
                      SaySomething{"enter standby,pause wash and dry 1"},
                      SetBlackboard{"wash_dry_pause_falg", "true"});
}

Node show_state()
{
    return IfThenElseStar(
        RobotPowerGetLowerThan{"15"},
        SequenceStar(SetBlackboard{"robot_status", "clean_lowp_standby"},
                     Led_Mode_Set{"BUTTON_LED_Standby_LowPower"}),
        SequenceStar(Led_Mode_Set{"BUTTON_LED_Standby"},
                     IfThenElseStar(SequenceStar(present("dry_procssing"), Inverter(DoesRobotGetCharger{}),
                                                 switched_off()),
                                    SetBlackboard{"robot_status", "clean_UV_open"},
                                    SetBlackboard{"robot_status", "clean_nontask"})));
}

}  // namespace

// Standby: the robot has no task and waits for one.
TREE(StandbyModeIndex)
{
    return SequenceStar(
        NeedInitialStopMode{}, erase("not_change_mode"), SetBlackboard{"kicked", "false"},
        wash_standby_handle(), pause_drying(),

        SetDustLight{"STATTON_LED_WhiteOn"},
        SetCleanSystem{.Brush = "1", .Fan = "0", .Pump = "0", .SideBrush = "0"}, RobotMopGearSet{"0"}, Stop{},
        Delay{5}, SlamPause{}, report_standing_still(),

        // A standby with a live task is a pause.
        FallbackStar(key_is("task_state", "complete"), key_is("task_state", "init"), present("ForceStandby"),
                     ForceFailure(ChangeRobotModeTo{.IsAimMode_Pause = "true"})),

        SubtreeCondition{"StopModePreset"},
        when(present("Load_After_Complete"), SetBlackboard{"Start_Map_Load", "true"},
             erase("Load_After_Complete")),

        SetLastRobotMode{}, RobotTimer_s_Init{},
        optionally(switched_off(), key_is("LastRobotMode", "13"), set_flag("virtual_start_from_charger")),

        // On a test stand the robot cleans over and over again.
        IfThenElseStar(key_is_true("Life_Test"), ChangeRobotModeTo{.IsAimMode_Auto = "true"},
                       DoWhile(SubtreeCondition{"JumpToSleepMode"}, show_state(), StopModeDeal{})));
}
