// The two ways in which the supervisor acts by itself on battery and charger, and what follows from a robot
// that was moved by hand.

#include "trees/idioms.h"
#include "trees/supervisor/robot_node/watchers.h"

namespace vemra::trees::robot_node {

namespace {

Node save_station_info()
{
    return Sequence(switched_on(), NeedSaveStationInfo{}, CleanInfoSave{});
}

// A cleaning that is under way owes nothing to the last visit to the charger.
Node forget_last_charge()
{
    return Sequence(in_any_mode(kCleaningModes, "RemoteCtrlMode"), key::breakpoint_getcharger.erase(),
                    Inverter(DoesRobotGetCharger{}), erase(key::handle_wash_task, key::breakpoint_wash_flag));
}

Node forget_wash_at_rest()
{
    return Sequence(key::LastRobotMode.present(), key::LastRobotMode.is("3"),
                    in_any_mode("PauseAndStopMode", "StandbyMode", "ErrRepotMode"),
                    key::StationNotNormal.is("false"), key::handle_wash_task.erase());
}

Node lowpower_detect()
{
    return Named(
        "LowpowerDetect",
        keep_choosing({{DoesRobotGetCharger{}, ForceRunning{}},
                       {RobotPowerGetLowerThan{"1"}, ChangeRobotModeTo{.IsAimMode_PowerOff = "true"}}},
                      ForceRunning{}));
}

// A robot at rest that somebody sets on the charger begins to charge.
Node landing()
{
    return SequenceStar(DoesRobotGetCharger{},
                        optionally(in_mode("RemoteCtrlMode"), key::moved_during_pause.set("true"),
                                   key::moved_flag_for_calc_charger.flag()),
                        in_any_mode("PauseAndStopMode", "PowerOffMode", "StandbyMode"),
                        IfThenElse(Sequence(DoesRobotGetCharger{}, key::not_change_mode.present()),
                                   AlwaysSuccess{}, ChangeRobotModeTo{.IsAimMode_Charging = "true"}));
}

// Moved by hand where the robot does not move by itself: where it stands is no longer known.
Node moved_by_hand()
{
    return SequenceStar(
        Inverter(in_any_mode(kTaskModes, "FollowWallMode", "BackHomeMode", "FactoryFuncTest")),
        DoesRobotMoved{}, key::moved_during_pause.set("true"), key::robot_moved.set("true"),
        key::moved_flag_for_calc_charger.flag(), key::moved_unable_auto_dust.flag(),
        key::charger_moved.flag(), erase(key::just_on_charger, key::calcu_chargerpos));
}

Node extend_virtual_wall()
{
    return Sequence(key::build_virtualwall_start.take(), VirtualWallAddPoint{.point_mm = "${current_pose}"});
}

}  // namespace

// The tick on which a landing, a move or a wall point is dealt with ends the round; the next begins anew.
// What must not end it stands under a forced failure, and the last child keeps the round from failing.
Node robot_state_watch()
{
    return SubTree("RobotStateWatch",
                   ParallelNode("1", ForceFailure(save_station_info()), ForceFailure(forget_last_charge()),
                                ForceFailure(forget_wash_at_rest()), lowpower_detect(), landing(),
                                moved_by_hand(), extend_virtual_wall(), ForceRunning{}));
}

}  // namespace vemra::trees::robot_node
