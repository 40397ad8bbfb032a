// What the app asks for, and the choice of the mode that a start command means.

#include <utility>
#include <vector>

#include "trees/idioms.h"
#include "trees/supervisor/robot_node/commands.h"
#include "trees/supervisor/robot_node/station.h"

namespace vemra::trees::robot_node {

namespace {

Node command_is(const char* mode)
{
    return WhatsTheAPPCMDMode{mode};
}

// --- which task is open -------------------------------------------------------------------------

Node zone_task_open()
{
    return key_is_any("task_state", {"zone_cleaning", "zone_lowpower", "zone_lowpower_pause"});
}

Node area_task_open()
{
    return key_is_any("task_state", {"area_cleaning", "area_lowpower", "area_lowpower_pause"});
}

Node point_task_open()
{
    return key_is_any("task_state", {"point_cleaning", "point_lowpower", "point_lowpower_pause"});
}

Node starting(const char* task_type)
{
    return SequenceStar(key_is("task_state", "precleaning"), key_is("task_type", task_type));
}

// A timed order takes up a task that rests: the same choice, but for tasks that have not begun.
Node order_mode_switch()
{
    return SubTree(
        "OrderModeSwitch",
        IfThenElseStar(
            zone_task_open(), ChangeRobotModeTo{.IsAimMode_DrawArea = "true"},
            IfThenElseStar(
                area_task_open(), ChangeRobotModeTo{.IsAimMode_AreaSelect = "true"},
                IfThenElseStar(
                    point_task_open(), ChangeRobotModeTo{.IsAimMode_PointSelect = "true"},
                    IfThenElseStar(key_is_any("task_state", {"cleaning", "lowpower", "lowpower_pause"}),
                                   ChangeRobotModeTo{.IsAimMode_Auto = "true"}, AlwaysSuccess{})))));
}

// --- cleaning the home, or rooms of it ------------------------------------------------------------

/// What a command to clean the home and one to clean chosen rooms differ in.
struct Cleaning
{
    const char* name;
    const char* mode;
    const char* task_lowpower;
    const char* task_cleaning;
    ChangeRobotModeTo change_mode;
    Node by_user;
};

// The order becomes a task of its own kind, whatever kind was open.
Node turn_task_into(const Cleaning& cleaning)
{
    return SequenceStar(
        ForceSuccess(FallbackStar(
            SequenceStar(zone_task_open(), SetBlackboard{"task_state", cleaning.task_cleaning},
                         optionally(switched_off(), erase("Draw_Area_Set_Pong"))),
            SequenceStar(area_task_open(), SetBlackboard{"task_state", cleaning.task_cleaning}),
            SequenceStar(point_task_open(), SetBlackboard{"task_state", cleaning.task_cleaning}))),
        cleaning.change_mode);
}

// An order without a region to merge is dropped; at rest, it still takes up the task that is open.
Node timed_order(const Cleaning& cleaning)
{
    return SequenceStar(
        FallbackStar(
            NeedToMergeRegion{cleaning.mode},
            SequenceStar(in_any_mode({"PauseAndStopMode", "ErrRepotMode", "SleepMode", "StandbyMode"}),
                         ForceFailure(order_mode_switch())),
            ForceFailure(erase("OrderAutoClean"))),
        SetBlackboard{"ElecCalculate", "false"}, SetBlackboard{"US_breakpoint_get", "false"},
        IfThenElseStar(
            in_mode(cleaning.mode), SequenceStar(erase("OrderAutoClean"), music("9", "true")),

            // While charging for a task, the order only makes that task its own.
            IfThenElseStar(
                Sequence(in_mode("ChargingMode"), key_is_any("task_state", {"area_lowpower", "point_lowpower",
                                                                            "zone_lowpower", "lowpower"})),
                SequenceStar(SetBlackboard{"task_state", cleaning.task_lowpower}, erase("OrderAutoClean")),
                turn_task_into(cleaning))));
}

Node cleaning_command(const Cleaning& cleaning)
{
    return SubTree(
        cleaning.name,
        IfThenElseStar(
            too_low_to_start(),
            IfThenElseStar(present("OrderAutoClean"),
                           SequenceStar(erase("OrderAutoClean"), music("25", "true")), music("20", "true")),

            // Modes that no order may disturb.
            IfThenElseStar(
                in_any_mode({"RemoteCtrlMode", "WIFISetMode", "OtaModeMode", "FctModeMode", "PowerOffMode",
                             "FactoryMode"}),
                IfThenElseStar(present("OrderAutoClean"),
                               SequenceStar(erase("OrderAutoClean"), RestoreCleanMode{}), AlwaysSuccess{}),
                IfThenElseStar(
                    Sequence(present("OrderAutoClean"), SetBlackboard{"cleanmode_restore", "true"}),
                    timed_order(cleaning), cleaning.by_user))));
}

Node app_auto_deal()
{
    return cleaning_command(
        {.name = "APP_Auto_Deal",
         .mode = "AutoCleanMode",
         .task_lowpower = "lowpower",
         .task_cleaning = "cleaning",
         .change_mode = {.IsAimMode_Auto = "true"},
         .by_user = SequenceStar(SetBlackboard{"start_clean_method_app", "3"}, dual_clean_mode_select())});
}

Node app_select_area_deal()
{
    return cleaning_command({.name = "APP_SelectArea_Deal",
                             .mode = "SelectAreaCleanMode",
                             .task_lowpower = "area_lowpower",
                             .task_cleaning = "area_cleaning",
                             .change_mode = {.IsAimMode_AreaSelect = "true"},
                             .by_user = SequenceStar(SetBlackboard{"start_clean_method_app", "4"},
                                                     ChangeRobotModeTo{.IsAimMode_AreaSelect = "true"})});
}

Node app_draw_area_deal()
{
    return SubTree("APP_DrawArea_Deal",
                   IfThenElseStar(too_low_to_start(), music("20", "true"),
                                  SequenceStar(ChangeRobotModeTo{.IsAimMode_DrawArea = "true"},
                                               SetBlackboard{"start_clean_method_app", "5"})));
}

Node app_select_point_deal()
{
    return SubTree("APP_SelectPoint_Deal",
                   IfThenElseStar(too_low_to_start(), music("20", "true"),
                                  ChangeRobotModeTo{.IsAimMode_PointSelect = "true"}));
}

// --- stopping, going home -------------------------------------------------------------------------

Node app_running_mode()
{
    return in_any_mode({"AutoCleanMode", "DrawAreaCleanMode", "SelectAreaCleanMode", "SelectPointCleanMode",
                        "FastMapBuildMode", "PartCleanMode", "BackHomeMode", "FollowWallMode"});
}

// A pause is announced when there is something to pause, a wash included where the station has one.
Node app_pause()
{
    return SequenceStar(IfThenElseStar(app_running_mode(), music("11", "true"),
                                       optionally(switched_off(), DoesRobotGetCharger{}, wash_or_dry_runs(),
                                                  interrupt_wash(), music("11", "true"))),
                        ChangeRobotModeTo{.IsAimMode_Pause = "true"});
}

// The task is given up for good. Where it began on the charger, that place is kept for the way back.
Node app_standby()
{
    return SequenceStar(
        SaySomething{"Force Standby From APP"}, SetBlackboard{"ForceStandby", "true"},
        optionally(absent("clear_map_flag"), app_running_mode(),
                   SaySomething{"clean modeforce  changed to standby1."},
                   SaySomething{"clean modeforce  changed to standby2."}),
        optionally(present("start_from_charger_pose"),
                   BlackboardCopy{.source = "start_from_charger_pose", .target = "charger_pose_cache"},
                   set_flag("from_charge_fake_flag"), set_flag("robot_standby_flag")),
        music("11", "true"), ChangeRobotModeTo{.IsAimMode_Standby = "true"});
}

Node app_back_home()
{
    return IfThenElseStar(DoesRobotGetCharger{},
                          SequenceStar(music("18", "true"), SubtreeCondition{"WakeFromSleep"}),
                          SequenceStar(ChangeRobotModeTo{.IsAimMode_BackHome = "true"},
                                       optionally(absent("start_backhome_method_key"),
                                                  SetBlackboard{"start_backhome_method_app", "1"})));
}

// Paused on the way to a wash, a start command sends the robot on to the station and goes no further.
Node not_on_way_to_wash()
{
    return Inverter(SequenceStar(switched_off(), in_mode("PauseAndStopMode"), Inverter(DoesRobotGetCharger{}),
                                 FallbackStar(present("hand_wash_flag"), present("mop_is_dirty")),
                                 FallbackStar(command_is("AutoCleanMode"), command_is("SelectAreaCleanMode"),
                                              command_is("DrawAreaCleanMode")),
                                 ChangeRobotModeTo{.IsAimMode_BackHome = "true"}));
}

// The command is the station button's: the child lock bars it, or was changed by it.
Node app_command()
{
    return IfThenElseStar(
        Sequence(present("StationButtonClickStatus"), child_lock_is_on()),
        SequenceStar(erase("StationButtonClickStatus"),
                     optionally(present("StationWashOpChildLock"), erase("StationWashOpChildLock"),
                                music("116", "true"))),
        IfThenElseStar(present("StationWashOpChildLock"),
                       SequenceStar(erase("StationWashOpChildLock"), music("117", "true")),
                       SequenceStar(revert_charge_music(), not_on_way_to_wash(), app_mode_switch(),
                                    SetBlackboard{"HealthDelay", "true"})));
}

}  // namespace

Node open_or_starting(std::initializer_list<const char*> task_states, const char* task_type)
{
    std::vector<Node> tests;
    for (const char* state : task_states)
        tests.push_back(key_is("task_state", state));
    tests.push_back(starting(task_type));
    return any_of(std::move(tests));
}

Node revert_charge_music()
{
    return SubTree("revert_charge_music", optionally(key_is_true("charge_voice_disable"),
                                                     SetBlackboard{"charge_voice_disable", "false"}));
}

// A start key and the plain start command resume the task that is open; with none open, the whole home is
// cleaned, and the log of the task is told who asked for it.
Node dual_clean_mode_select()
{
    const Node whole_home = SequenceStar(
        ChangeRobotModeTo{.IsAimMode_Auto = "true"},
        IfThenElseStar(present("start_clean_method_app"), SetBlackboard{"start_clean_method_app", "3"},
                       IfThenElseStar(present("start_clean_method_key"),
                                      SetBlackboard{"start_clean_method_key", "1"}, AlwaysSuccess{})));

    const Node map_open = FallbackStar(
        key_is("task_state", "map_cleaning"),
        SequenceStar(key_is("task_state", "completing"), key_is("last_clean_mode", "FastMapBuildMode")),
        starting("MapClean"));

    return SubTree(
        "DualCleanModeSelect",
        IfThenElseStar(
            open_or_starting({"zone_cleaning", "zone_lowpower", "zone_lowpower_pause"}, "ZoneClean"),
            ChangeRobotModeTo{.IsAimMode_DrawArea = "true"},
            IfThenElseStar(
                open_or_starting({"area_cleaning", "area_lowpower", "area_lowpower_pause"}, "AreaClean"),
                ChangeRobotModeTo{.IsAimMode_AreaSelect = "true"},
                IfThenElseStar(open_or_starting({"point_cleaning", "point_lowpower", "point_lowpower_pause"},
                                                "PointClean"),
                               ChangeRobotModeTo{.IsAimMode_PointSelect = "true"},
                               IfThenElseStar(map_open, ChangeRobotModeTo{.IsAimMode_FastMapBuild = "true"},
                                              whole_home)))));
}

// A command that nothing here knows holds this place until the next one comes.
Node app_mode_switch()
{
    const Node build_map = IfThenElseStar(too_low_to_start(), music("20", "true"),
                                          ChangeRobotModeTo{.IsAimMode_FastMapBuild = "true"});
    const Node unknown = SequenceStar(SaySomething{"No Deal With This WIFI CMD"}, ForceRunning{});

    // Last command first: each choice stands in the else-branch of the one before it.
    Node cascade = IfThenElseStar(command_is("FastMapBuildMode"), build_map, unknown);
    cascade = IfThenElseStar(command_is("SelectPointCleanMode"), app_select_point_deal(), cascade);
    cascade = IfThenElseStar(command_is("DrawAreaCleanMode"), app_draw_area_deal(), cascade);
    cascade = IfThenElseStar(command_is("SelectAreaCleanMode"), app_select_area_deal(), cascade);
    cascade = IfThenElseStar(command_is("OtaModeMode"), ChangeRobotModeTo{.IsAimMode_OTA = "true"}, cascade);
    cascade =
        IfThenElseStar(command_is("RemoteCtrlMode"), ChangeRobotModeTo{.IsAimMode_Remote = "true"}, cascade);
    cascade = IfThenElseStar(command_is("BackHomeMode"), app_back_home(), cascade);
    cascade = IfThenElseStar(command_is("AutoCleanMode"), app_auto_deal(), cascade);
    cascade = IfThenElseStar(command_is("StandbyMode"), app_standby(), cascade);
    cascade = IfThenElseStar(command_is("PauseAndStopMode"), app_pause(), cascade);
    return SubTree("APP_Mode_Swtich", SequenceStar(RobotAnnoyLedON{}, cascade));
}

// First a key, then an app command, then the health of the robot. A robot that is updated, tested or
// switched off takes none.
Node commands(Node health_check)
{
    return FallbackStar(
        in_mode("OtaModeMode"), in_mode("SelfTestMode"), in_mode("PowerOffMode"), in_mode("FactoryMode"),
        IfThenElse(IsKeysStatueChanged{},
                   SequenceStar(revert_charge_music(), key_process(), SetBlackboard{"HealthDelay", "true"}),
                   IfThenElse(DoesReceiveWIFICMD{.CMD = "${OloWIFICMD_Mode}",
                                                 .Index = "${OloWIFICMD_Index}",
                                                 .Len = "${OloWIFICMD_Len}"},
                              app_command(), std::move(health_check))));
}

}  // namespace vemra::trees::robot_node
