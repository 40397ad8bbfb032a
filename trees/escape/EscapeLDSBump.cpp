#include "trees/idioms.h"

// Last rung of the escapes: the laser's own bumper. Without a warning there is nothing to do.
TREE(EscapeLDSBump)
{
    // Alone among the choices of its kind this one says nothing about a reset after a failure.
    return {"IfThenElseStar", {}, {IsLDSBumpWarning{}, EscapeLDSBumpDeal{}, AlwaysSuccess{}}};
}
