#include "trees/conditions.h"
#include "trees/modes/shared.h"

// Power-off: the robot says farewell, closes its task and keeps what must outlast the night. An empty battery
// is complained of first; a robot that slept for too long goes off without a sound.
TREE(PowerOffModeIndex)
{
    return SequenceStar(Stop{}, SetCleanSystem{.Brush = "1", .Fan = "1", .Pump = "0", .SideBrush = "1"},
                        SetBlackboard{"update_offline_map_flag", "1"}, SlamPause{},

                        optionally(RobotPowerGetLowerThan{"2"}, music("21", "true"), Delay{200}),
                        unless(present("longtimepoweroff"), music("200", "false")), Delay{50},

                        ForceSuccess(close_task()), optionally(present("station_info_save"), CleanInfoSave{}),

                        Delay{100}, Led_Mode_Set{"BUTTON_LED_OFF"}, PowerOffModeDeal{});
}
