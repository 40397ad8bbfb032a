#include "generator/awkward_trees.h"
#include "generator/treegen.h"

int main(int argc, char** argv)
{
    return vemra::generator::treegen(argc, argv, vemra::test::awkwardTrees());
}
