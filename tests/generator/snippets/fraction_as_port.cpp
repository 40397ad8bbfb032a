#include "description/tree.h"

TREE(Snippet)
{
    return Rotate{.angle_deg = 22.5};
}
