#include "description/tree.h"

TREE(Snippet)
{
    return ForceSuccess(Sequence());
}
