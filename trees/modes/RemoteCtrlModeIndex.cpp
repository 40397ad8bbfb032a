#include "trees/cleaning/shared.h"

namespace {

Node submode(const char* name)
{
    return key::move_ctrl_submode.set(name);
}

Node slam_is(const char* state)
{
    return key::slam_status.is(state);
}

Node play_once()
{
    return when(
        Sequence(key::OloWIFICMD_RemoteCtrl_audio.present(), key::OloWIFICMD_RemoteCtrl_audio.is_true()),
        play(62), key::OloWIFICMD_RemoteCtrl_audio.erase());
}

Node leave_dock()
{
    return IfThenElseStar(
        DoesRobotGetCharger{},
        SequenceStar(key::start_from_charger.set("true"), SaySomething{"Remote back start"},
                     SetCleanSystem{.Brush = "110", .Fan = "90", .Pump = "1", .SideBrush = "85"},
                     SubtreeCondition{"AdvPreAutoOnCharger"}, SaySomething{"Remote back end"}),
        key::start_from_charger.set("false"));
}

// A task that was interrupted goes on with its map.
Node note_interrupted_task()
{
    return IfThenElseStar(
        key::task_state.is_any({"init", "complete", "search_charge"}), key::task_in_progress.set("false"),
        SequenceStar(
            key::task_in_progress.set("true"),
            when(FallbackStar(SlamIsResumable{}, slam_is("SLAM_STA_NORMAL"), slam_is("SLAM_STA_PAUSE")),
                 SlamStart{}, submode("cleaning"))));
}

Node start_on_stored_map()
{
    return FallbackStar(
        key::move_ctrl_submode.is("cleaning"),
        SequenceStar(key::reuse_from_charger.is_true(), key::reuse_from_charger.erase(),
                     SaySomething{"AdvRestartCleaning start_from_charger = true"}, submode("cleaning"),
                     when(key::on_charger_pose.present(), SlamStartFromReuse{},
                          key::pretend_reuse_cleaning_token.set("true"),
                          SaySomething{"AdvRestartCleaning pretend reuse cleaning"})),
        SequenceStar(SlamIsResumable{}, SlamStart{}, submode("cleaning")),
        ForceFailure(SequenceStar(slam_is("SLAM_STA_NORMAL"), submode("cleaning"))));
}

Node use_stored_map()
{
    return Named("has history map?",
                 when(IsReuseInfoExist{}, optionally(start_on_stored_map(), key::task_in_progress.is("false"),
                                                     SubtreeCondition{"ReuseRestartCleaning"},
                                                     key::is_start_from_charger.set("false"))));
}

// A human is driving: no sense but the bumper holds the robot back.
Node drive()
{
    return DoWhile(
        MoveCleanSysModeSet{}, set_mop_gear_if_any(), SubtreeCondition{"auto_cleanmode_set.xml"},
        key::move_ctrl_submode.copy_to(key::move_ctrl_token), sensor_off("ChargerVirtualWall"),
        sensor_held_off("DockField"), sensor_held_off("CarpetCheck"), sensor_held_off("PolygonVirtualWall"),
        sensor_held_off("VirtualWall"), sensor_held_off("LdsPointcloud"),
        sensor_held_off("LaserTofPointcloud"), sensor_held_off("SideBrushPointcloud"),
        key::keep_normal_speed.flag(),
        keep_choosing(
            {{SequenceStar(SensorCheckBumped{"bump_dir"}, Frameout(50, GoBackwards{})), ForceRunning{}},
             {RemoteCtrlModeGetSpeed{}, RemoteCtrlModeDeal{}}},
            SequenceStar(Stop{}, Delay{50}, ChangeRobotModeTo{.IsAimMode_Pause = "true"})));
}

}  // namespace

// The app drives the robot. With a map it goes on beside the drive.
TREE(RemoteCtrlModeIndex)
{
    return SequenceStar(
        Led_Mode_Set{"BUTTON_LED_Working"}, Stop{},
        erase(key::robot_standby_flag, key::polygon_virtual_walls), play_once(), SetLastRobotMode{},
        key::kicked.set("false"), MotionActionAccount{"current_motion_type", "Motion", "Gong"}, leave_dock(),
        submode("old"), note_interrupted_task(), use_stored_map(), SaySomething{"move_ctrl_submode:"},
        SaySomething{"${move_ctrl_submode}"},
        when(key::move_ctrl_submode.is("old"), SaySomething{"old move ctrl submode, clear app map"},
             key::is_start_from_charger.erase()),
        SetMapDrawMode{.draw_mode = "None"}, drive());
}
