#include "generator/awkward_trees.h"

#include "description/tree.h"

namespace vemra::test {

std::vector<NamedTree> awkwardTrees()
{
    const auto quoted = [] {
        return SequenceStar(
            Named("a \"quoted\" \\ name", SaySomething{"脱困过\t1f, 100% \"?\?=\" \\n"}),
            Named("", SetBlackboard{"kicked_dock", ""}),
            ParallelNode("1", Inverter(BlackboardContains{"${potential_charger}"}), AlwaysSuccess{}));
    };
    return {
        {"Z", SubTree("inner  one", quoted())},
        {"_", SubtreeCondition{"Z.xml"}},
        {"auto_mode", IfThenElseWithoutHalt(SubtreeCondition{"Z"}, SubTree("inner  one", quoted()),
                                            ForceFailure(SubTree("inner  one", quoted())))},
    };
}

}  // namespace vemra::test
