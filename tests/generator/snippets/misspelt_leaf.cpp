#include "description/tree.h"

TREE(Snippet)
{
    return Sequence(BlackboardContain{"finish_escape"}, GoBackwards{});
}
