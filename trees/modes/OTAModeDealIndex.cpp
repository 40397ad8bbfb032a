#include "trees/modes/shared.h"

namespace {

// An emptying of the dust box on the station waits until the update is over.
Node pause_dust_station()
{
    return ForceSuccess(Sequence(SetDustLight{"STATTON_LED_WhiteOn"}, DoesRobotGetCharger{},
                                 erase(key::APPDustHandle, key::dust_restart, key::continue_dust,
                                       key::dust_handle, key::Have_dust_task),
                                 key::dust_delay_end.flag(), SaySomething{"dust ota..."},
                                 DustContrlSet{.dust_status = "DUST_PAUSE", .time_set = "${dust_left_time}"},
                                 DustTimeHandle{}));
}

}  // namespace

// Firmware update: the robot stands still with its task closed. An update in quiet hours shows no light and
// leaves the station alone.
TREE(OTAModeDealIndex)
{
    return SequenceStar(
        Stop{}, SlamPause{},
        FallbackStar(SequenceStar(key::annoy_ota.take()),
                     SequenceStar(Led_Mode_Set{"BUTTON_LED_OTA"}, pause_dust_station())),
        SetCleanSystem{.Brush = "0", .Fan = "0", .Pump = "0", .SideBrush = "0"},
        key::robot_status.set("clean_ota"),

        ForceSuccess(close_task(
            SequenceStar(SaySomething{"OTAModeDealIndex.xml wifi 0"}, SubtreeCondition{"SearchChargeEnding"}),
            SequenceStar(SaySomething{"OTAModeDealIndex.xml wifi 1"}, SubtreeCondition{"AdvCleanComplete"}))),
        StopModeDeal{});
}
