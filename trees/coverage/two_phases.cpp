#include "trees/coverage/two_phases.h"

namespace vemra::trees {

namespace {

Node cycle(const Node& lines, const Node& walls)
{
    return RetryUntilSuccesful(
        -1,
        FallbackStar(
            Sequence(BlackboardCopy{"gridmap_limit", "clean_region"},
                     SetBlackboard{"gong_complete_confirm", "false"}, ActionDecorator(ForceSuccess(lines)),
                     MapClosureMonitor{}, ActionDecorator(ForceSuccess(walls)),
                     FallbackStar(key_is_true("gong_complete_confirm"), GongCompleteReconfirm{})),
            ForceFailure(SetBlackboard{"gong_complete", "false"})));
}

}  // namespace

Node two_phases(const Node& lines, const Node& walls)
{
    return IfThenElse(
        GridmapLimitCheck{},
        Sequence(ForceSuccess(SubtreeCondition{"EscapeCoat"}),
                 DoWhile(StackBlackboard{"OnElave"}, TraceLogger{},
                         SequenceStar(
                             default_from("origin_point", "current_coord"),
                             RetryUntilSuccesful(-1, SequenceStar(cycle(lines, walls),
                                                                  SetBlackboard{"gong_complete", "false"},
                                                                  prove_way_home(drive_or_follow_walls()))),
                             absent("OnElave")))),
        SubtreeCondition{"BackToMapLimit.xml"});
}

}  // namespace vemra::trees
