#include "trees/idioms.h"

// Follows walls, and nothing else.
TREE(FollowWallModeIndex)
{
    return SequenceStar(SetBlackboard{"reset_collision_times", "0"}, SetBlackboard{"tof_reset_map", "1"},
                        Stop{}, Led_Mode_Set{"BUTTON_LED_Working"}, SetLastRobotMode{}, play("8"),
                        SetCleanSystem{.Brush = "1", .Fan = "0", .Pump = "0", .SideBrush = "0"},
                        InitGyroDrift{}, SubtreeCondition{"OtherModePreset"}, SubtreeCondition{"ForceDelay"},
                        SubtreeCondition{"RestartCleaning"}, SlamStart{}, SubtreeCondition{"ForceDelay"},
                        SetBlackboard{"moved_during_pause", "false"},
                        SetCleanSystem{.Brush = "90", .Fan = "110", .Pump = "1", .SideBrush = "90"},
                        DoWhile(set_flag("gridmap_token_draw_map"), SubtreeCondition{"FollowWallDeal"}));
}
