#include "trees/cleaning/shared.h"

namespace {

Node status_of(const char* mop_mode, const char* status)
{
    return SequenceStar(key_is("robot_mop_mode", mop_mode), SetBlackboard{"robot_status", status});
}

}  // namespace

// Shows the app whether the robot sweeps, mops or does both.
TREE(WashModeJudge)
{
    return when(present("robot_mop_mode"),
                Fallback(status_of("0", "clean_sweep"), status_of("1", "clean_mop"),
                         status_of("2", "clean_sweep_mop"), SaySomething{"mop mode error..."}));
}
