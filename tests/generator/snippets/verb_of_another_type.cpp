#include "description/keys.h"

TREE(Snippet)
{
    return key::task_state.above(3);
}
