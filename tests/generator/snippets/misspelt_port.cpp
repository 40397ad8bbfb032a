#include "description/tree.h"

TREE(Snippet)
{
    return Rotate{.angle_degrees = 90};
}
