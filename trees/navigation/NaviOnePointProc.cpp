#include "trees/idioms.h"

// A guarded straight run to a near point, without a plan. The dock's field does not stop it. Every frame the
// gates are passed anew before the wheels get their next order: escape, bump or cliff, cliff stop.
TREE(NaviOnePointProc)
{
    return without_sensor(
        "DockField", Sequence(SubtreeCondition{"Escape.xml"}, back_off_on_contact(), stop_for_cliff_sensors(),
                              NaviOnePoint{.target_point = "${navi_target_point}"}));
}
