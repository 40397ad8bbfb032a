#include "trees/coverage/two_phases.h"

namespace vemra::trees {

namespace {

Node cycle(const Node& lines, const Node& walls)
{
    return RetryUntilSuccesful(
        -1,
        FallbackStar(Sequence(key::gridmap_limit.copy_to(key::clean_region),
                              key::gong_complete_confirm.set("false"), ActionDecorator(ForceSuccess(lines)),
                              MapClosureMonitor{}, ActionDecorator(ForceSuccess(walls)),
                              FallbackStar(key::gong_complete_confirm.is_true(), GongCompleteReconfirm{})),
                     ForceFailure(key::gong_complete.set("false"))));
}

}  // namespace

Node two_phases(const Node& lines, const Node& walls)
{
    return IfThenElse(
        GridmapLimitCheck{},
        Sequence(
            ForceSuccess(SubtreeCondition{"EscapeCoat"}),
            DoWhile(key::OnElave.kept(), TraceLogger{},
                    SequenceStar(key::origin_point.default_from(key::current_coord),
                                 RetryUntilSuccesful(
                                     -1, SequenceStar(cycle(lines, walls), key::gong_complete.set("false"),
                                                      prove_way_home(drive_or_follow_walls()))),
                                 key::OnElave.absent()))),
        SubtreeCondition{"BackToMapLimit.xml"});
}

}  // namespace vemra::trees
