#include "trees/coverage/shared.h"

namespace {

// Behind a polygon wall there would be a way: the user is told once.
Node report_blocked_by_wall()
{
    return ForceFailure(
        only_polygon_wall_bars(SequenceStar(search_way_to_origin("0"), report_clean_blocked())));
}

Node by_doubtful_way()
{
    return IfThenElseStar(
        search_way_to_origin("1"),
        IfThenElseStar(FallbackStar(way_is_sound(), search_way_to_origin("0")),
                       SubtreeCondition{"BackToOrigin"}, ForceFailure(SubtreeCondition{"NavigateProc"})),
        key::OnElave.flag());
}

Node clean_and_go_back()
{
    return RetryUntilSuccesful(
        -1, SequenceStar(ForceSuccess(SubtreeCondition{"PlanInSubregion_FollowGong.xml"}),
                         find_track_near_origin(),
                         IfThenElseStar(search_way_to_origin("0"), SubtreeCondition{"BackToOrigin"},
                                        FallbackStar(report_blocked_by_wall(), by_doubtful_way()))));
}

}  // namespace

// Cleans the floor around the robot and goes back to where it stood.
TREE(NeighborCleaningMode)
{
    return IfThenElse(
        GridmapLimitCheck{},
        Sequence(ForceSuccess(SubtreeCondition{"EscapeCoat"}),
                 Named("AutoMode",
                       DoWhile(key::OnElave.kept(), TraceLogger{},
                               Named("AutoMode",
                                     SequenceStar(key::origin_point.default_from(key::current_coord),
                                                  SetNeighborCleaningSubregion{},
                                                  key::current_subregion.copy_to(key::clean_region),
                                                  clean_and_go_back(), Stop{}, key::OnElave.absent()))))),
        SubtreeCondition{"BackToMapLimit"});
}
