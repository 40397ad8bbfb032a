// The health of the station: telling what ails it, and taking up an emptying that an error cut short.

#include "trees/idioms.h"
#include "trees/supervisor/robot_node/station.h"

namespace vemra::trees::robot_node {

namespace {

Node tell(const char* fault, const Node& melody)
{
    return Sequence(station_error(fault), melody);
}

Node tell(const char* fault, const char* robot_status, int music)
{
    return Sequence(station_error(fault), SaySomething{robot_status}, key::robot_status.set(robot_status),
                    play(music));
}

// The first fault that holds is told, and no other.
Node station_error_audio()
{
    return SubTree("StationErrorAudio",
                   Fallback(tell("DUST_LOCK", queue(154)), tell("DUST_BLOCK", play(102)),
                            tell("DUST_BAG", IfThenElse(switched_off(), play(97), play(101))),
                            tell("DUST_CAP", IfThenElse(switched_off(), play(99), play(101))),
                            Sequence(DoesHappenStationWarning{"OLO_HEALTH_STATUS_TYPE_DUST_FULL"}, play(102)),
                            tell("CLEAN_WATERTANK_NOTINSTALLED", "clean_no_rinsing", 91),
                            tell("DIRT_WATERTANK_NOTINSTALLED", "clean_no_sewage", 109),
                            tell("CLEAN_WATERTANK_NOWATER", "clean_no_purge", 93),
                            tell("DIRT_WATERTANK_FULL", "clean_purge_full", 109),
                            tell("DIRT_WATER_BLOCKING", "clean_purge_full", 109),
                            tell("DIRT_WATER_PUMP", "clean_purge_full", 109),
                            tell("WASHDISH_NOTINSTALLED", "clean_purge_full", 104),
                            Sequence(station_error("WASHDISH_WATERLEVE"),
                                     key::robot_status.set("clean_purge_full"), play(108))));
}

// --- the dust station ---------------------------------------------------------------------------

// The duct was blocked under way: the fan goes on for what was left, and for the length of a short run more.
Node continue_dust()
{
    return SubTree(
        "Continue_Dust",
        IfThenElse(
            Sequence(DoesRobotGetCharger{}, key::continue_dust.present()),
            SequenceStar(key::dust_delay_start.flag(), key::continue_dust_flag.flag(),
                         DustContrlSet{.dust_status = "DUST_CONTINUE", .time_set = "10000+${dust_left_time}"},
                         SaySomething{"1 continue dust..."}, DustTimeHandle{}, stop_dust_fan(),
                         key::dust_delay_start.erase(), key::dust_delay_end.flag(),
                         erase(key::continue_dust, key::Have_dust_task)),
            AlwaysFailure{}));
}

// In the quiet hours a station that is well stays dark.
Node quiet_hours_light()
{
    return IfThenElse(IsRobotInAnnoyMode{},
                      IfThenElse(Sequence(DoesRobotGetCharger{}, IsStationNormal{}),
                                 SequenceStar(key::IsInAnnoy.flag(), SetDustLight{"STATTON_LED_WhiteOff"}),
                                 key::IsInAnnoy.erase()),
                      SequenceStar(erase(key::IsInAnnoy, key::DustInAnnoy)));
}

// An error has held up an emptying. Once the station is well again, the emptying starts anew, unless it is
// one that goes on by itself.
Node recovery()
{
    return SequenceStar(key::Have_dust_task.present(), key::station_block_flag.absent(),
                        RetryUntilSuccesful("-1", IsStationNormal{}), key::StationNotNormal.is_true(),
                        key::StationNotNormal.set("false"), SaySomething{"Recover error..."},
                        optionally(key::pre_handle_dust.take(), key::APPDustHandle.erase()),
                        IfThenElse(FallbackStar(key::auto_dust.present(), key::continue_dust.present()),
                                   AlwaysSuccess{}, key::dust_restart.flag()));
}

Node while_fan_runs()
{
    return IfThenElse(
        IsStationNormal{},

        // A duct that blocks under way is only a warning: the emptying is to be continued.
        FallbackStar(key::have_deal_block.present(),
                     SequenceStar(DoesHappenStationWarning{"OLO_HEALTH_STATUS_TYPE_DUST_BLOCK"},
                                  key::continue_dust.flag(), SaySomething{"2 continue dust..."},
                                  SaySomething{"${dust_left_time}"},
                                  erase(key::APPDustHandle, key::dust_handle, key::dust_restart))),

        FallbackStar(key::StationNotNormal.is_true(), in_mode("WIFISetMode"),
                     ForceFailure(key::OrderAutoClean.erase()), station_status_detect()));
}

// A block that stays after the fan has stopped is remembered; when it clears, the block counts as dealt with.
Node while_fan_rests()
{
    return keep_choosing(
        {{station_error("DUST_BLOCK"),
          SequenceStar(key::dust_delay_start.erase(), key::dust_delay_end.flag(),
                       FallbackStar(key::station_block_flag.present(), key::station_block_flag.flag()))},
         {key::station_block_flag.present(),
          SequenceStar(key::station_block_flag.erase(), key::have_deal_block.flag(),
                       when(key::continue_dust_flag.present(), key::Have_dust_task.erase()))}});
}

Node run_watch()
{
    return SequenceStar(IsInfraredConnect{},
                        IfThenElse(DoesDustStatus{"DUST_RUNNING"}, while_fan_runs(), while_fan_rests()));
}

Node restart_emptying()
{
    return IfThenElse(
        key::dust_restart.present(),
        SequenceStar(key::dust_delay_start.flag(), SaySomething{"restart dust..."}, dust_light(),
                     run_dust_fan("${dust_left_time}"), erase(key::dust_delay_start, key::dust_restart),
                     key::dust_delay_end.flag(), key::Have_dust_task.erase()),
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
                   SequenceStar(Stop{}, station_error_audio(), key::StationNotNormal.set("true"),
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
