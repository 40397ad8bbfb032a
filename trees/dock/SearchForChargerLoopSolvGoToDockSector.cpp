#include "trees/dock/greedy.h"

// The same for the approach to the dock's sector.
TREE(SearchForChargerLoopSolvGoToDockSector)
{
    return solve_loop("docking_big_loop_break");
}
