#include "trees/coverage/two_phases.h"

namespace {

Node steps_closed()
{
    return StepUtility{.new_step_status = "Closed", .need_trace_invalid = "true"};
}

Node lines()
{
    return DoWhile(steps_closed(), open_doors(),
                   SequenceStar(account_motion("Gong"), key::gong_complete.is("false"),
                                SubtreeCondition{"AutoMode_FollowGong"}, key::gong_complete.set("true"),
                                key::gong_complete_confirm.set("true"), UpdateSnapMap{}));
}

Node walls()
{
    return DoWhile(
        steps_closed(), open_doors(),
        SequenceStar(ForceSuccess(all_passes_done()), account_motion("Followwall"), increase_coverage({})));
}

}  // namespace

// Covers the home by lines first and by its walls afterwards.
TREE(RecursiveAutoMode_GongFollow)
{
    return two_phases(lines(), walls());
}
