// A library of small trees in which constants switch branches off.

#include "support/sketched_tree.h"

BT_REGISTER_NODES(factory)
{
    using namespace vemra::test;
    registerTree(factory, "Dead", node("Sequence", {leaf("AlwaysSuccess")}));
    registerTree(factory, "Living",
                 node("FallbackStar", {node("ForceFailure", {leaf("BlackboardContains", {{"key", "y"}})}),
                                       leaf("AlwaysSuccess"), leaf("AlwaysFailure")}));
    registerTree(factory, "RobotNode",
                 node("SequenceStar",
                      {node("IfThenElseStar", {leaf("StringMatch", {{"string_a", "a"}, {"string_b", "b"}}),
                                               enter("Dead"), enter("Living.xml")}),
                       node("Fallback", {leaf("BoolMatch", {{"bool_a", "true"}, {"bool_b", "true"}}),
                                         node("Inverter", {leaf("AlwaysFailure")})}),
                       node("Loop", {{"num_cycles", "-1"}}, {leaf("BlackboardContains", {{"key", "x"}})}),
                       leaf("AlwaysSuccess")}));
}
