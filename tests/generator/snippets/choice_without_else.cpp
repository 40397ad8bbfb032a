#include "description/tree.h"

TREE(Snippet)
{
    return IfThenElse(BlackboardContains{"kicked"}, GoBackwards{});
}
