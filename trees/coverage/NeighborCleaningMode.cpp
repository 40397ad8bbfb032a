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
        set_flag("OnElave"));
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
        Sequence(
            ForceSuccess(SubtreeCondition{"EscapeCoat"}),
            Named("AutoMode",
                  DoWhile(StackBlackboard{"OnElave"}, TraceLogger{},
                          Named("AutoMode", SequenceStar(default_from("origin_point", "current_coord"),
                                                         SetNeighborCleaningSubregion{},
                                                         BlackboardCopy{"current_subregion", "clean_region"},
                                                         clean_and_go_back(), Stop{}, absent("OnElave")))))),
        SubtreeCondition{"BackToMapLimit"});
}
