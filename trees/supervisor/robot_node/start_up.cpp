// Power-on: the parameters of the board, the first values of the keys, and the first mode.

#include "trees/supervisor/robot_node/start_up.h"

#include "trees/idioms.h"

namespace vemra::trees::robot_node {

namespace {

// Having sent a set of parameters, the step fails, so that the board is asked anew on the next tick.
Node confirmed_or_sent(const Node& confirmed, const Node& send)
{
    return Fallback(confirmed, Inverter(send));
}

Node robot_init_para()
{
    return SubTree(
        "RobotInitPara",
        RetryUntilSuccesful("-1", Sequence(confirmed_or_sent(IsElecParaInitOK{}, SendElecPara{}),
                                           confirmed_or_sent(IsGyroParaInitOK{}, SendGyroPara{}),
                                           confirmed_or_sent(IsIrParaInitOK{}, SendIrPara{}),
                                           confirmed_or_sent(IsLightFlowParaInitOK{}, SendLightFlowPara{}))));
}

}  // namespace

Node robot_sys_init()
{
    return SubTree(
        "RobotSysInit",
        SequenceStar(
            InitSysBBPara{}, SaySomething{"Robot Running"}, robot_init_para(),

            SetBlackboard{"moved_during_pause", "false"}, SetBlackboard{"task_state", "init"},
            SetBlackboard{"task_type", "Idle"}, SetBlackboard{"task_state_last", "init"}, PresetBlackboard{},
            RestoreCaCt{}, ResetMap{},

            SetBlackboard{"clean_task_end", "none"}, SetBlackboard{"continue_work", "clean_none"},
            SetBlackboard{"mode_dirty_record", "none"}, SetBlackboard{"robot_moved", "false"},
            SetBlackboard{"kicked", "false"}, SetBlackboard{"StationNotNormal", "false"},
            SetBlackboard{"gong_complete", "false"}, SetBlackboard{"got_charger_force_halt", "false"},
            SetBlackboard{"search_charger_timeout", "60000"}, SetBlackboard{"search_charger_time", "0"},
            SetBlackboard{"last_clean_mode", "AutoCleanMode"}, SetBlackboard{"bump_dir", "None"},

            RobotTimer_ms_Init{}, RobotTimer_s_Init{}));
}

Node first_mode()
{
    return IfThenElseStar(DoesRobotGetCharger{},
                          SequenceStar(SetBlackboard{"chargemode_poweron", "true"},
                                       SaySomething{"Robot Detect Charger When Power On"},
                                       ChangeRobotModeTo{.IsAimMode_Charging = "true"}),
                          ChangeRobotModeTo{.IsAimMode_Standby = "true"});
}

}  // namespace vemra::trees::robot_node
