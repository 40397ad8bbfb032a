#include "trees/escape/blind_advance.h"

// The long form of the blind leg, twice as far. No tree runs it at present.
TREE(BlindAdvanceDouble)
{
    return blind_advance(144);
}
