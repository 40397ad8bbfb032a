#include "trees/idioms.h"
#include "trees/supervisor/robot_node/commands.h"
#include "trees/supervisor/robot_node/mode_runner.h"
#include "trees/supervisor/robot_node/start_up.h"
#include "trees/supervisor/robot_node/station.h"
#include "trees/supervisor/robot_node/watchers.h"

namespace {

using namespace vemra::trees::robot_node;  // NOLINT(google-build-using-namespace)

// Nothing stands here in this product.
Node vacant()
{
    return SubtreeCondition{"AlwaysSuccess.xml"};
}

// The charger has just been touched.
Node charger_found()
{
    return IfThenElse(Sequence(switched_on(), DoesChargerGetOn{}, Inverter(in_mode("SleepMode")),
                               Inverter(DoesDustStatus{"DUST_RUNNING"})),
                      dust_init_subtree(), AlwaysSuccess{});
}

Node charger_lost()
{
    return SubTree("DustInit",
                   SequenceStar(DoesChargerDrop{}, SaySomething{"charger drop.."}, dust_init_subtree()));
}

Node wifi_answer()
{
    return Sequence(switched_off(), Inverter(in_mode("WIFISetMode")), DoesAlreadyGetWIFIRes{});
}

// The way home is made without the complaint of a missing dust box.
Node allow_box_music()
{
    return SequenceStar(key::DisableErrMusic_Box.present(),
                        SequenceStar(Inverter(in_mode("BackHomeMode")), key::DisableErrMusic_Box.erase()));
}

// One tick: all the watchers in order, then the mode. No watcher holds up the mode, and none but a change of
// mode ends it.
Node supervise()
{
    return DoWhile(charger_found(), robot_state_watch(), station_base_handle(), Parse_MCU_FCT_CMD{},
                   SequenceStar(manual_dust(), IsInDustLock{}), auto_dust(), lock_watchdog(),
                   adv_clean_complete_impl(), SequenceStar(Repeat("10", AlwaysSuccess{}), MultMapRecover{}),
                   map_load(), wifi_answer(), commands(health_check()), auto_wash(), manual_wash(),
                   station_health_check(), ir_switch(), charge_music(), vacant(),
                   SubtreeCondition{"LDS_CTRL.xml"}, warning_music(), charger_sig_delay(), charger_lost(),
                   wash_init(), log_task_state(), allow_box_music(), Loop("-1", run_mode()));
}

}  // namespace

// The robot from power-on to power-off: it is brought up once, with the laser at rest and no music asked for,
// and is then supervised for ever.
TREE(RobotNode)
{
    return SequenceStar(LDS_Switch{"false"},
                        SetMusicPlayPara{.Interrupt_En = "false", .MusicNumber = "0", .MusicPlayTimes = "0"},
                        key::Start_Map_Load.set("true"), key::robot_status.set("normal"), map_load(),
                        robot_sys_init(), first_mode(), vacant(), vacant(), Loop("-1", supervise()));
}
