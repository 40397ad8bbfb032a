#include "description/tree.h"

TREE(Snippet)
{
    return Inverter(BlackboardContains{"kicked"}, BlackboardContains{"trapped"});
}
