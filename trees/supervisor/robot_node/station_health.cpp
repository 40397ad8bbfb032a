// The health of the station: telling what ails it, and taking up an emptying that an error cut short.

#include "trees/idioms.h"
#include "trees/supervisor/robot_node/station.h"

namespace vemra::trees::robot_node {

namespace {

Node tell(const Node& fault, const Node& melody)
{
    return SequenceStar(fault, melody);
}

Node tell(const Node& fault, const char* robot_status, const Node& melody)
{
    return SequenceStar(fault, SaySomething{robot_status}, SetBlackboard{"robot_status", robot_status},
                        melody);
}

// The first fault that holds is told, and no other.
Node station_error_audio()
{
    return SubTree(
        "StationErrorAudio",
        Fallback(tell(station_error("DUST_LOCK"), music("154", "false")),
                 tell(station_error("DUST_BLOCK"), music("102", "true")),
                 tell(station_error("DUST_BAG"),
                      IfThenElse(switched_off(), music("97", "true"), music("101", "true"))),
                 tell(station_error("DUST_CAP"),
                      IfThenElse(switched_off(), music("99", "true"), music("101", "true"))),
                 tell(DoesHappenStationWarning{"OLO_HEALTH_STATUS_TYPE_DUST_FULL"}, music("102", "true")),
                 tell(station_error("CLEAN_WATERTANK_NOTINSTALLED"), "clean_no_rinsing", music("91", "true")),
                 tell(station_error("DIRT_WATERTANK_NOTINSTALLED"), "clean_no_sewage", music("109", "true")),
                 tell(station_error("CLEAN_WATERTANK_NOWATER"), "clean_no_purge", music("93", "true")),
                 tell(station_error("DIRT_WATERTANK_FULL"), "clean_purge_full", music("109", "true")),
                 tell(station_error("DIRT_WATER_BLOCKING"), "clean_purge_full", music("109", "true")),
                 tell(station_error("DIRT_WATER_PUMP"), "clean_purge_full", music("109", "true")),
                 tell(station_error("WASHDISH_NOTINSTALLED"), "clean_purge_full", music("104", "true")),
                 SequenceStar(station_error("WASHDISH_WATERLEVE"),
                              SetBlackboard{"robot_status", "clean_purge_full"}, music("108", "true"))));
}

// --- the dust station ---------------------------------------------------------------------------

// The duct was blocked under way: the fan goes on for what was left, and for the length of a short run more.
Node continue_dust()
{
    return SubTree(
        "Continue_Dust",
        IfThenElse(Sequence(DoesRobotGetCharger{}, present("continue_dust")),
                   SequenceStar(
                       set_flag("dust_delay_start"), set_flag("continue_dust_flag"),
                       DustContrlSet{.dust_status = "DUST_CONTINUE", .time_set = "10000+${dust_left_time}"},
                       SaySomething{"1 continue dust..."}, DustTimeHandle{},
                       DustContrlSet{.dust_status = "DUST_QUIT", .time_set = "0"}, erase("dust_delay_start"),
                       set_flag("dust_delay_end"), erase("continue_dust"), erase("Have_dust_task")),
                   AlwaysFailure{}));
}

// In the quiet hours a station that is well stays dark.
Node quiet_hours_light()
{
    return IfThenElse(IsRobotInAnnoyMode{},
                      IfThenElse(Sequence(DoesRobotGetCharger{}, IsStationNormal{}),
                                 SequenceStar(set_flag("IsInAnnoy"), SetDustLight{"STATTON_LED_WhiteOff"}),
                                 erase("IsInAnnoy")),
                      SequenceStar(erase("IsInAnnoy"), erase("DustInAnnoy")));
}

// An error has held up an emptying. Once the station is well again, the emptying starts anew, unless it is
// one that goes on by itself.
Node recovery()
{
    return SequenceStar(
        present("Have_dust_task"), absent("station_block_flag"), RetryUntilSuccesful("-1", IsStationNormal{}),
        key_is_true("StationNotNormal"), SetBlackboard{"StationNotNormal", "false"},
        SaySomething{"Recover error..."},
        optionally(present("pre_handle_dust"), erase("pre_handle_dust"), erase("APPDustHandle")),
        IfThenElse(FallbackStar(present("auto_dust"), present("continue_dust")), AlwaysSuccess{},
                   set_flag("dust_restart")));
}

Node while_fan_runs()
{
    return IfThenElse(IsStationNormal{},

                      // A duct that blocks under way is only a warning: the emptying is to be continued.
                      FallbackStar(present("have_deal_block"),
                                   SequenceStar(DoesHappenStationWarning{"OLO_HEALTH_STATUS_TYPE_DUST_BLOCK"},
                                                set_flag("continue_dust"), SaySomething{"2 continue dust..."},
                                                SaySomething{"${dust_left_time}"}, erase("APPDustHandle"),
                                                erase("dust_handle"), erase("dust_restart"))),

                      FallbackStar(key_is_true("StationNotNormal"), in_mode("WIFISetMode"),
                                   ForceFailure(erase("OrderAutoClean")), station_status_detect()));
}

// A block that stays after the fan has stopped is remembered; when it clears, the block counts as dealt with.
Node while_fan_rests()
{
    return IfThenElse(
        station_error("DUST_BLOCK"),
        SequenceStar(erase("dust_delay_start"), set_flag("dust_delay_end"),
                     FallbackStar(present("station_block_flag"), set_flag("station_block_flag"))),
        IfThenElse(present("station_block_flag"),
                   SequenceStar(erase("station_block_flag"), set_flag("have_deal_block"),
                                optionally(present("continue_dust_flag"), erase("Have_dust_task"))),
                   AlwaysSuccess{}));
}

Node run_watch()
{
    return SequenceStar(IsInfraredConnect{},
                        IfThenElse(DoesDustStatus{"DUST_RUNNING"}, while_fan_runs(), while_fan_rests()));
}

Node restart_emptying()
{
    return IfThenElse(
        present("dust_restart"),
        SequenceStar(set_flag("dust_delay_start"), SaySomething{"restart dust..."}, dust_light(),
                     DustContrlSet{.dust_status = "DUST_START", .time_set = "${dust_left_time}"},
                     DustTimeHandle{}, DustContrlSet{.dust_status = "DUST_QUIT", .time_set = "0"},
                     erase("dust_delay_start"), erase("dust_restart"), set_flag("dust_delay_end"),
                     erase("Have_dust_task")),
        AlwaysFailure{});
}

Node dust_station_err_check()
{
    return SubTree("DustStationErrCheck",
                   ParallelNode("1", continue_dust(),
                                DoWhile(quiet_hours_light(), recovery(), run_watch(), restart_emptying())));
}

}  // namespace

Node station_status_detect()
{
    return SubTree("Station_Status_Detect",
                   SequenceStar(Stop{}, station_error_audio(), SetBlackboard{"StationNotNormal", "true"},
                                ChangeRobotModeTo{.IsAimMode_ErrReport = "true"}));
}

// Which station the robot has is settled when the product is made: one that takes the dust, or one that
// washes.
Node station_health_check()
{
    return SubTree("Station_Health_Check",
                   IfThenElseStar(switched_on(), dust_station_err_check(), wash_station_err_check()));
}

}  // namespace vemra::trees::robot_node
