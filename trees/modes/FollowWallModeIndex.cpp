#include "trees/idioms.h"

// Follows walls, and nothing else.
TREE(FollowWallModeIndex)
{
    return SequenceStar(key::reset_collision_times.set(0), key::tof_reset_map.set(1), Stop{},
                        Led_Mode_Set{"BUTTON_LED_Working"}, SetLastRobotMode{}, play(8),
                        SetCleanSystem{.Brush = "1", .Fan = "0", .Pump = "0", .SideBrush = "0"},
                        InitGyroDrift{}, SubtreeCondition{"OtherModePreset"}, SubtreeCondition{"ForceDelay"},
                        SubtreeCondition{"RestartCleaning"}, SlamStart{}, SubtreeCondition{"ForceDelay"},
                        key::moved_during_pause.set("false"),
                        SetCleanSystem{.Brush = "90", .Fan = "110", .Pump = "1", .SideBrush = "90"},
                        DoWhile(key::gridmap_token_draw_map.flag(), SubtreeCondition{"FollowWallDeal"}));
}
