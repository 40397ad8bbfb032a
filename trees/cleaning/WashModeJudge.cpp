#include "trees/cleaning/shared.h"

namespace {

Node status_of(const char* mop_mode, const char* status)
{
    return Sequence(key::robot_mop_mode.is(mop_mode), key::robot_status.set(status));
}

}  // namespace

// Shows the app whether the robot sweeps, mops or does both.
TREE(WashModeJudge)
{
    return when(key::robot_mop_mode.present(),
                Fallback(status_of("0", "clean_sweep"), status_of("1", "clean_mop"),
                         status_of("2", "clean_sweep_mop"), SaySomething{"mop mode error..."}));
}
