#include "trees/idioms.h"
#include "trees/modes/shared.h"

// Power-off: the robot says farewell, closes its task and keeps what must outlast the night. An empty battery
// is complained of first; a robot that slept for too long goes off without a sound.
TREE(PowerOffModeIndex)
{
    return SequenceStar(Stop{}, SetCleanSystem{.Brush = "1", .Fan = "1", .Pump = "0", .SideBrush = "1"},
                        key::update_offline_map_flag.set(1), SlamPause{},

                        optionally(RobotPowerGetLowerThan{"2"}, play(21), Delay{200}),
                        unless(key::longtimepoweroff.present(), queue(200)), Delay{50},

                        ForceSuccess(close_task()),
                        optionally(key::station_info_save.present(), CleanInfoSave{}),

                        Delay{100}, Led_Mode_Set{"BUTTON_LED_OFF"}, PowerOffModeDeal{});
}
