#include "trees/dock/greedy.h"

// Past the obstacle that the drive to the dock went round, or back to where it was met.
TREE(SearchForChargerLoopSolvGoTowardCharger)
{
    return Named("LoopSolv", solve_loop("go_toward_charger_loop_break"));
}
