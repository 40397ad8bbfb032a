// What the app asks for, and the choice of the mode that a start command means.

#include <utility>

#include "trees/idioms.h"
#include "trees/supervisor/robot_node/commands.h"
#include "trees/supervisor/robot_node/station.h"
#include "trees/tasks.h"

namespace vemra::trees::robot_node {

namespace {

Node command_is(const char* mode)
{
    return WhatsTheAPPCMDMode{mode};
}

// Too low for a task, the robot only says so.
Node unless_too_low(Node start)
{
    return IfThenElse(too_low_to_start(), play(20), std::move(start));
}

// --- cleaning the home, or rooms of it ------------------------------------------------------------

/// What a command to clean the home and one to clean chosen rooms differ in.
struct Cleaning
{
    const char* name;
    const char* mode;
    Task task;
    Node by_user;
};

// A timed order takes up a task that rests: the same choice, but for tasks that have not begun.
Node order_mode_switch()
{
    const auto open = [](const Task& task) { return Case{task.open(), task.take_up}; };
    return SubTree("OrderModeSwitch", choose({open(drawn_zones()), open(chosen_rooms()),
                                              open(chosen_points()), open(whole_home())}));
}

// The order becomes a task of its own kind, whatever kind was open.
Node turn_task_into(const Task& own)
{
    const Node as_own = key::task_state.set(own.cleaning);
    return SequenceStar(
        ForceSuccess(FallbackStar(
            SequenceStar(drawn_zones().open(), as_own, when(switched_off(), key::Draw_Area_Set_Pong.erase())),
            SequenceStar(chosen_rooms().open(), as_own), SequenceStar(chosen_points().open(), as_own))),
        own.take_up);
}

// An order without a region to merge is dropped; at rest, it still takes up the task that is open.
Node timed_order(const Cleaning& cleaning)
{
    const Node charging_for_a_task =
        Sequence(in_mode("ChargingMode"),
                 key::task_state.is_any({"area_lowpower", "point_lowpower", "zone_lowpower", "lowpower"}));
    return SequenceStar(
        FallbackStar(NeedToMergeRegion{cleaning.mode},
                     SequenceStar(in_any_mode("PauseAndStopMode", "ErrRepotMode", "SleepMode", "StandbyMode"),
                                  ForceFailure(order_mode_switch())),
                     ForceFailure(key::OrderAutoClean.erase())),
        key::ElecCalculate.set("false"), key::US_breakpoint_get.set("false"),
        choose({{in_mode(cleaning.mode), SequenceStar(key::OrderAutoClean.erase(), play(9))},

                // The order only makes the task its own.
                {charging_for_a_task,
                 SequenceStar(key::task_state.set(cleaning.task.lowpower), key::OrderAutoClean.erase())}},
               turn_task_into(cleaning.task)));
}

Node cleaning_command(const Cleaning& cleaning)
{
    const Node no_order_may_disturb = in_any_mode("RemoteCtrlMode", "WIFISetMode", "OtaModeMode",
                                                  "FctModeMode", "PowerOffMode", "FactoryMode");
    const auto end_order = [](const Node& then, const Node& without_order) {
        return IfThenElse(key::OrderAutoClean.present(), SequenceStar(key::OrderAutoClean.erase(), then),
                          without_order);
    };
    return SubTree(cleaning.name,
                   choose({{too_low_to_start(), end_order(play(25), play(20))},
                           {no_order_may_disturb, end_order(RestoreCleanMode{}, AlwaysSuccess{})},
                           {Sequence(key::OrderAutoClean.present(), key::cleanmode_restore.set("true")),
                            timed_order(cleaning)}},
                          cleaning.by_user));
}

Node app_auto_deal()
{
    return cleaning_command(
        {.name = "APP_Auto_Deal",
         .mode = "AutoCleanMode",
         .task = whole_home(),
         .by_user = SequenceStar(key::start_clean_method_app.set(3), dual_clean_mode_select())});
}

Node app_select_area_deal()
{
    return cleaning_command(
        {.name = "APP_SelectArea_Deal",
         .mode = "SelectAreaCleanMode",
         .task = chosen_rooms(),
         .by_user = SequenceStar(key::start_clean_method_app.set(4), chosen_rooms().take_up)});
}

Node app_draw_area_deal()
{
    return SubTree("APP_DrawArea_Deal",
                   unless_too_low(SequenceStar(drawn_zones().take_up, key::start_clean_method_app.set(5))));
}

Node app_select_point_deal()
{
    return SubTree("APP_SelectPoint_Deal", unless_too_low(chosen_points().take_up));
}

// --- stopping, going home -------------------------------------------------------------------------

Node app_running_mode()
{
    return in_any_mode(kTaskModes, "BackHomeMode", "FollowWallMode");
}

// A pause is announced when there is something to pause, a wash included where the station has one.
Node app_pause()
{
    return SequenceStar(IfThenElse(app_running_mode(), play(11),
                                   optionally(switched_off(), DoesRobotGetCharger{}, wash_or_dry_runs(),
                                              interrupt_wash(), play(11))),
                        ChangeRobotModeTo{.IsAimMode_Pause = "true"});
}

// The task is given up for good. Where it began on the charger, that place is kept for the way back.
Node app_standby()
{
    return SequenceStar(SaySomething{"Force Standby From APP"}, key::ForceStandby.set("true"),
                        when(Sequence(key::clear_map_flag.absent(), app_running_mode()),
                             SaySomething{"clean modeforce  changed to standby1."},
                             SaySomething{"clean modeforce  changed to standby2."}),
                        when(key::start_from_charger_pose.present(),
                             key::start_from_charger_pose.copy_to(key::charger_pose_cache),
                             key::from_charge_fake_flag.flag(), key::robot_standby_flag.flag()),
                        play(11), ChangeRobotModeTo{.IsAimMode_Standby = "true"});
}

Node app_back_home()
{
    return IfThenElseStar(
        DoesRobotGetCharger{}, SequenceStar(play(18), SubtreeCondition{"WakeFromSleep"}),
        SequenceStar(ChangeRobotModeTo{.IsAimMode_BackHome = "true"},
                     when(key::start_backhome_method_key.absent(), key::start_backhome_method_app.set(1))));
}

// Paused on the way to a wash, a start command sends the robot on to the station and goes no further.
Node not_on_way_to_wash()
{
    return Inverter(SequenceStar(paused_on_way_to_wash(),
                                 FallbackStar(command_is("AutoCleanMode"), command_is("SelectAreaCleanMode"),
                                              command_is("DrawAreaCleanMode")),
                                 ChangeRobotModeTo{.IsAimMode_BackHome = "true"}));
}

// The command is the station button's: the child lock bars it, or was changed by it.
Node app_command()
{
    return keep_choosing({{Sequence(key::StationButtonClickStatus.present(), child_lock_is_on()),
                           SequenceStar(key::StationButtonClickStatus.erase(),
                                        when(key::StationWashOpChildLock.present(),
                                             key::StationWashOpChildLock.erase(), play(116)))},
                          {key::StationWashOpChildLock.present(),
                           SequenceStar(key::StationWashOpChildLock.erase(), play(117))}},
                         SequenceStar(revert_charge_music(), not_on_way_to_wash(), app_mode_switch(),
                                      key::HealthDelay.set("true")));
}

}  // namespace

Node revert_charge_music()
{
    return SubTree("revert_charge_music",
                   optionally(key::charge_voice_disable.is_true(), key::charge_voice_disable.set("false")));
}

Nodes paused_on_way_to_wash()
{
    return row(switched_off(), in_mode("PauseAndStopMode"), Inverter(DoesRobotGetCharger{}),
               FallbackStar(key::hand_wash_flag.present(), key::mop_is_dirty.present()));
}

// A start key and the plain start command resume the task that is open; with none open, the whole home is
// cleaned, and the log of the task is told who asked for it.
Node dual_clean_mode_select()
{
    const Node note_who_asked =
        choose({{key::start_clean_method_app.present(), key::start_clean_method_app.set(3)},
                {key::start_clean_method_key.present(), key::start_clean_method_key.set(1)}});

    const Node map_open =
        FallbackStar(key::task_state.is("map_cleaning"),
                     Sequence(key::task_state.is("completing"), key::last_clean_mode.is("FastMapBuildMode")),
                     Sequence(key::task_state.is("precleaning"), key::task_type.is("MapClean")));

    const auto resumed = [](const Task& task) { return Case{task.open_or_starting(), task.take_up}; };
    return SubTree("DualCleanModeSelect",
                   choose({resumed(drawn_zones()),
                           resumed(chosen_rooms()),
                           resumed(chosen_points()),
                           {map_open, ChangeRobotModeTo{.IsAimMode_FastMapBuild = "true"}}},
                          SequenceStar(whole_home().take_up, note_who_asked)));
}

// A command that nothing here knows holds this place until the next one comes.
Node app_mode_switch()
{
    const auto on = [](const char* mode, Node then) { return Case{command_is(mode), std::move(then)}; };
    return SubTree(
        "APP_Mode_Swtich",
        SequenceStar(RobotAnnoyLedON{},
                     choose({on("PauseAndStopMode", app_pause()), on("StandbyMode", app_standby()),
                             on("AutoCleanMode", app_auto_deal()), on("BackHomeMode", app_back_home()),
                             on("RemoteCtrlMode", ChangeRobotModeTo{.IsAimMode_Remote = "true"}),
                             on("OtaModeMode", ChangeRobotModeTo{.IsAimMode_OTA = "true"}),
                             on("SelectAreaCleanMode", app_select_area_deal()),
                             on("DrawAreaCleanMode", app_draw_area_deal()),
                             on("SelectPointCleanMode", app_select_point_deal()),
                             on("FastMapBuildMode",
                                unless_too_low(ChangeRobotModeTo{.IsAimMode_FastMapBuild = "true"}))},
                            SequenceStar(SaySomething{"No Deal With This WIFI CMD"}, ForceRunning{}))));
}

// First a key, then an app command, then the health of the robot. A robot that is updated, tested or
// switched off takes none.
Node commands(Node health_check)
{
    const Node app_sends = DoesReceiveWIFICMD{
        .CMD = "${OloWIFICMD_Mode}", .Index = "${OloWIFICMD_Index}", .Len = "${OloWIFICMD_Len}"};
    return FallbackStar(
        in_mode("OtaModeMode"), in_mode("SelfTestMode"), in_mode("PowerOffMode"), in_mode("FactoryMode"),
        keep_choosing({{IsKeysStatueChanged{},
                        SequenceStar(revert_charge_music(), key_process(), key::HealthDelay.set("true"))},
                       {app_sends, app_command()}},
                      std::move(health_check)));
}

}  // namespace vemra::trees::robot_node
