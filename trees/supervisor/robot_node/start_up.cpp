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
    return SubTree("RobotSysInit",
                   SequenceStar(InitSysBBPara{}, SaySomething{"Robot Running"}, robot_init_para(),

                                key::moved_during_pause.set("false"), key::task_state.set("init"),
                                key::task_type.set("Idle"), key::task_state_last.set("init"),
                                PresetBlackboard{}, RestoreCaCt{}, ResetMap{},

                                key::clean_task_end.set("none"), key::continue_work.set("clean_none"),
                                key::mode_dirty_record.set("none"), key::robot_moved.set("false"),
                                key::kicked.set("false"), key::StationNotNormal.set("false"),
                                key::gong_complete.set("false"), key::got_charger_force_halt.set("false"),
                                key::search_charger_timeout.set(60000), key::search_charger_time.set(0),
                                key::last_clean_mode.set("AutoCleanMode"), key::bump_dir.set("None"),

                                RobotTimer_ms_Init{}, RobotTimer_s_Init{}));
}

Node first_mode()
{
    return IfThenElseStar(
        DoesRobotGetCharger{},
        SequenceStar(key::chargemode_poweron.set("true"), SaySomething{"Robot Detect Charger When Power On"},
                     ChangeRobotModeTo{.IsAimMode_Charging = "true"}),
        ChangeRobotModeTo{.IsAimMode_Standby = "true"});
}

}  // namespace vemra::trees::robot_node
