#include "description/keys.h"

TREE(Snippet)
{
    return key::task_sate.is("init");
}
