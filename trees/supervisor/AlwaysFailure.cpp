#include "description/tree.h"

// Fails at once. Stands where a tree is called for that must not pass.
TREE(AlwaysFailure)
{
    return AlwaysFailure{};
}
