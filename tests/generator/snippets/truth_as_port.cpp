#include "description/tree.h"

TREE(Snippet)
{
    return BoolMatch{.bool_a = true, .bool_b = "true"};
}
