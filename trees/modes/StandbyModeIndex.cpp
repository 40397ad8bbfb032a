#include "trees/idioms.h"
#include "trees/modes/shared.h"

namespace {

// A standby on a washing station would also end its work and empty its dirty water.
Node wash_standby_handle()
{
    return SubTree(
        "WashStandbyHandle",
        IfThenElse(Sequence(switched_off(), DoesRobotGetCharger{},
                            any_of({DoesWashStatus{"WASH_RUNNING"}, DoesWashStatus{"WASH_DRYING"}})),
                   SequenceStar(SetWashStatus{"WASH_IDLE"}, StopWashHandle{}, key::force_start_sewage.flag()),
                   AlwaysSuccess{}));
}

Node pause_drying()
{
    return optionally(SaySomething{"enter standby,pause wash and dry 0"}, SaySomething{"${wash_status}"},
                      key::dry_procssing.present(), key::wash_dry_stop_flag.flag(),
                      SaySomething{"enter standby,pause wash and dry 1"},
                      key::wash_dry_pause_falg.set("true"));
}

Node show_state()
{
    return IfThenElseStar(
        RobotPowerGetLowerThan{"15"},
        SequenceStar(key::robot_status.set("clean_lowp_standby"),
                     Led_Mode_Set{"BUTTON_LED_Standby_LowPower"}),
        SequenceStar(
            Led_Mode_Set{"BUTTON_LED_Standby"},
            IfThenElseStar(
                Sequence(key::dry_procssing.present(), Inverter(DoesRobotGetCharger{}), switched_off()),
                key::robot_status.set("clean_UV_open"), key::robot_status.set("clean_nontask"))));
}

}  // namespace

// Standby: the robot has no task and waits for one.
TREE(StandbyModeIndex)
{
    return SequenceStar(
        NeedInitialStopMode{}, key::not_change_mode.erase(), key::kicked.set("false"), wash_standby_handle(),
        pause_drying(),

        SetDustLight{"STATTON_LED_WhiteOn"},
        SetCleanSystem{.Brush = "1", .Fan = "0", .Pump = "0", .SideBrush = "0"}, RobotMopGearSet{"0"}, Stop{},
        Delay{5}, SlamPause{}, report_standing_still(),

        // A standby with a live task is a pause.
        FallbackStar(key::task_state.is("complete"), key::task_state.is("init"), key::ForceStandby.present(),
                     ForceFailure(ChangeRobotModeTo{.IsAimMode_Pause = "true"})),

        SubtreeCondition{"StopModePreset"},
        when(key::Load_After_Complete.present(), key::Start_Map_Load.set("true"),
             key::Load_After_Complete.erase()),

        SetLastRobotMode{}, RobotTimer_s_Init{},
        optionally(switched_off(), key::LastRobotMode.present(), key::LastRobotMode.is("13"),
                   key::virtual_start_from_charger.flag()),

        // On a test stand the robot cleans over and over again.
        IfThenElseStar(key::Life_Test.is_true(), ChangeRobotModeTo{.IsAimMode_Auto = "true"},
                       DoWhile(SubtreeCondition{"JumpToSleepMode"}, show_state(), StopModeDeal{})));
}
