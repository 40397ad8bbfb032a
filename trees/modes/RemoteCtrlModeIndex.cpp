#include "trees/cleaning/shared.h"

namespace {

Node submode(const char* name)
{
    return SetBlackboard{"move_ctrl_submode", name};
}

Node slam_is(const char* state)
{
    return key_is("slam_status", state);
}

Node play_once()
{
    return when(
        SequenceStar(present("OloWIFICMD_RemoteCtrl_audio"), key_is_true("OloWIFICMD_RemoteCtrl_audio")),
        play("62"), erase("OloWIFICMD_RemoteCtrl_audio"));
}

Node leave_dock()
{
    return IfThenElseStar(
        DoesRobotGetCharger{},
        SequenceStar(SetBlackboard{"start_from_charger", "true"}, SaySomething{"Remote back start"},
                     SetCleanSystem{.Brush = "110", .Fan = "90", .Pump = "1", .SideBrush = "85"},
                     SubtreeCondition{"AdvPreAutoOnCharger"}, SaySomething{"Remote back end"}),
        SetBlackboard{"start_from_charger", "false"});
}

// A task that was interrupted goes on with its map.
Node note_interrupted_task()
{
    return IfThenElseStar(key_is_any("task_state", {"init", "complete", "search_charge"}),
                          SetBlackboard{"task_in_progress", "false"},
                          SequenceStar(SetBlackboard{"task_in_progress", "true"},
                                       when(FallbackStar(SlamIsResumable{}, slam_is("SLAM_STA_NORMAL"),
                                                         slam_is("SLAM_STA_PAUSE")),
                                            SlamStart{}, submode("cleaning"))));
}

Node start_on_stored_map()
{
    return FallbackStar(
        key_is("move_ctrl_submode", "cleaning"),
        SequenceStar(key_is_true("reuse_from_charger"), erase("reuse_from_charger"),
                     SaySomething{"AdvRestartCleaning start_from_charger = true"}, submode("cleaning"),
                     when(present("on_charger_pose"), SlamStartFromReuse{},
                          SetBlackboard{"pretend_reuse_cleaning_token", "true"},
                          SaySomething{"AdvRestartCleaning pretend reuse cleaning"})),
        SequenceStar(SlamIsResumable{}, SlamStart{}, submode("cleaning")),
        ForceFailure(SequenceStar(slam_is("SLAM_STA_NORMAL"), submode("cleaning"))));
}

Node use_stored_map()
{
    return Named("has history map?",
                 IfThenElseStar(IsReuseInfoExist{},
                                optionally(start_on_stored_map(), key_is("task_in_progress", "false"),
                                           SubtreeCondition{"ReuseRestartCleaning"},
                                           SetBlackboard{"is_start_from_charger", "false"}),
                                AlwaysSuccess{}));
}

Node lock_off(const char* sensor)
{
    return TemporarilyDisableSensor{.lock_status = "true", .sensor = sensor};
}

// A human is driving: no sense but the bumper holds the robot back.
Node drive()
{
    return DoWhile(
        MoveCleanSysModeSet{}, set_mop_gear_if_any(), SubtreeCondition{"auto_cleanmode_set.xml"},
        BlackboardCopy{"move_ctrl_submode", "move_ctrl_token"},
        TemporarilyDisableSensor{.lock_status = "false", .sensor = "ChargerVirtualWall"},
        lock_off("DockField"), lock_off("CarpetCheck"), lock_off("PolygonVirtualWall"),
        lock_off("VirtualWall"), lock_off("LdsPointcloud"), lock_off("LaserTofPointcloud"),
        lock_off("SideBrushPointcloud"), set_flag("keep_normal_speed"),
        IfThenElse(
            SequenceStar(SensorCheckBumped{"bump_dir"}, Frameout(50, GoBackwards{})), ForceRunning{},
            IfThenElse(RemoteCtrlModeGetSpeed{}, RemoteCtrlModeDeal{},
                       SequenceStar(Stop{}, Delay{50}, ChangeRobotModeTo{.IsAimMode_Pause = "true"}))));
}

}  // namespace

// The app drives the robot. With a map it goes on beside the drive.
TREE(RemoteCtrlModeIndex)
{
    return SequenceStar(
        Led_Mode_Set{"BUTTON_LED_Working"}, Stop{}, erase("robot_standby_flag"),
        erase("polygon_virtual_walls"), play_once(), SetLastRobotMode{}, SetBlackboard{"kicked", "false"},
        MotionActionAccount{"current_motion_type", "Motion", "Gong"}, leave_dock(), submode("old"),
        note_interrupted_task(), use_stored_map(), SaySomething{"move_ctrl_submode:"},
        SaySomething{"${move_ctrl_submode}"},
        when(key_is("move_ctrl_submode", "old"), SaySomething{"old move ctrl submode, clear app map"},
             erase("is_start_from_charger")),
        SetMapDrawMode{.draw_mode = "None"}, drive());
}
