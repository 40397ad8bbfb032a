#include "trees/navigation/goto_point.h"

// The plain walk along a plan. The limit lies far above any home, so the token is
// granted for every path whose length is known. After a failed bridge the robot backs off and drops the bump,
// so that the caller does not take the bridge for an obstacle to be followed.
TREE(GotoPoint)
{
    return walk_the_plan(
        {.drive = drive_traced_on_request(1048576),
         .after_failed_bridge = SequenceStar(SubtreeCondition{"Back2cm"}, key::bump_dir.set("None"),
                                             record_and_leave_virtual_wall())});
}
