#include "trees/navigation/goto_point.h"

// The walk over known floor. Only short hops may count as traced.
TREE(GotoPointNoUnknown)
{
    return walk_the_plan({.drive = drive_traced_on_request(30),
                          .after_failed_bridge = SequenceStar(record_and_leave_virtual_wall())});
}
