#include "trees/cleaning/shared.h"

namespace {

Node follow_wall_until_dock_is_heard()
{
    return IfThenElse(DoesGetChargerMiddleSig{}, AlwaysSuccess{},
                      DoWhile(PSD_interpolation{}, get_local_map{}, FollowWallModeDeal{"${FollowSideCMD}"}));
}

Node dock()
{
    return IfThenElse(DoesRobotGetCharger{}, SequenceStar(UpdateSlamInfo{}, SendFinishTestToVslam{}),
                      without_sensor("LdsPointcloud", ForceSuccess(SubtreeCondition{"GoCharging_lds.xml"})));
}

// For ever: only the power switch ends it.
Node show_fault()
{
    const auto light = [](const char* mode) { return Loop(-1, Led_Mode_Set{mode}); };
    return by_text(key::TestResId,
                   {{"laser", light("BUTTON_LED_Pause_LowPower")},
                    {"slam", light("BUTTON_LED_Working_ERROR")},
                    {"tof", light("BUTTON_LED_Backhome_LowPower")}},
                   light("BUTTON_LED_Working"));
}

}  // namespace

// A run on the factory's floor: along the wall to the dock, and a light for what failed.
TREE(FactoryRunModeIndex)
{
    return SequenceStar(
        Led_Mode_Set{"BUTTON_LED_Working"},
        IfThenElseStar(switched_off(), SaySomething{"No Brush calibration.."}, CheckBrushCalibrat{}),
        SetCleanSystem{.Brush = "1", .Fan = "1", .Pump = "1", .SideBrush = "1"},
        SetCleanSystem{.Brush = "110", .Fan = "105", .Pump = "1", .SideBrush = "85"},
        SubtreeCondition{"RestartCleaning"}, key::Have_Clean_Before_AutoDust.flag(), Stop{}, Delay{100},
        SendStartTestToVslam{}, SlamStart{},
        DoWhile(GetPoseOdomDiff{}, AutorunTestCalibrateReliable{}, key::gridmap_token_draw_map.flag(),
                SequenceStar(follow_wall_until_dock_is_heard(), dock())),
        Stop{}, SetCleanSystem{.Brush = "0", .Fan = "0", .Pump = "0", .SideBrush = "0"},
        IfThenElseStar(AutorunTestResReturn{}, go_to_standby(), show_fault()));
}
