#include "trees/idioms.h"

namespace {

Node show_state()
{
    return IfThenElseStar(
        DoesRobotGetCharger{},
        choose({{RobotPowerGetLowerThan{"15"}, Led_Mode_Set{"BUTTON_LED_SetWifiPassword_Charging_Lowpower"}},
                {RobotPowerGetLowerThan{"99"}, Led_Mode_Set{"BUTTON_LED_SetWifiPassword_Charging"}}},
               Led_Mode_Set{"BUTTON_LED_SetWifiPassword_ChargDone"}),
        Led_Mode_Set{"BUTTON_LED_SetWifiPassword_Normal"});
}

}  // namespace

// Wi-Fi set-up: the robot stands still and waits for the credentials, then stands by, with them or without.
TREE(SetWIFIModeIndex)
{
    return SequenceStar(
        Stop{}, SlamPause{}, SetCleanSystem{.Brush = "1", .Fan = "0", .Pump = "0", .SideBrush = "1"},
        key::kicked.set("false"), key::robot_status.set("clean_wifi_conneting"), show_state(),
        RobotTimer_s_Init{}, SetDustLight{"STATTON_LED_WhiteOn"},

        // Half an hour is the limit, however often the wait is begun anew.
        IfThenElse(RobotTimerLongerThan_s{"1800"}, ChangeRobotModeTo{.IsAimMode_Standby = "true"},
                   FallbackStar(DoesAlreadyGetWIFIRes{}, Delay{300})),
        ChangeRobotModeTo{.IsAimMode_Standby = "true"});
}
