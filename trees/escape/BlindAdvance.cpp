#include "trees/escape/blind_advance.h"

// The short form of the blind leg: some 60 cm in all, a side of the triangle driven to relocalise.
TREE(BlindAdvance)
{
    return blind_advance(44);
}
