#include "trees/relocalising/reloc.h"

namespace {

Node advance()
{
    return ForceSuccess(SubtreeCondition{"BlindAdvance"});
}

Nodes leg(const char* next_yaw)
{
    return row(advance(), turn_to("-1", next_yaw), Stop{}, Delay{10});
}

Node walk_triangle()
{
    return SequenceStar(Delay{10}, key::current_yaw_deg.plus(-120, key::relocalize_first_yaw),
                        key::current_yaw_deg.plus(120, key::relocalize_second_yaw),
                        key::current_yaw_deg.copy_to(key::relocalize_final_yaw),
                        leg("${relocalize_first_yaw}"), leg("${relocalize_second_yaw}"), advance(), Stop{},
                        Delay{10}, turn_to("-1", "${relocalize_final_yaw}"), Stop{}, walk_has_failed());
}

}  // namespace

// The same by a walk along a triangle.
TREE(ActiveRelocalize_Triangle)
{
    return SequenceStar(key::relocalize_failed.set("false"), account_motion("Reloc"),
                        key::reset_mop_line.set("true"), look_while_walking(walls_off(), walk_triangle()),
                        end_walk());
}
