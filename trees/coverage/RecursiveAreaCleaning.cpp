#include "trees/coverage/two_phases.h"
#include "trees/idioms.h"

namespace {

Node lines_by_rooms()
{
    return DoWhile(key::automode_frames_consumption.counts_frames(), key::skip_origin.kept(),
                   SequenceStar(key::skip_origin.flag(), key::zone_reached.set("true"),
                                SubtreeCondition{"CleanSelectedAreas"}));
}

Node lines()
{
    return DoWhile(
        open_doors(),
        SequenceStar(account_motion("Gong"),
                     FallbackStar(key::gong_complete.is("false"), CurrentAreaNeedsFollowwall{}),
                     IfThenElseStar(key::enable_overall_follow_wall.present(), lines_by_rooms(),
                                    SubtreeCondition{"AutoMode_FollowGong"}),
                     key::gong_complete.set("true"), key::gong_complete_confirm.set("true"),
                     when(all_passes_done(), key::current_clean_times.set_typed(1)),
                     MakeMap{.roi = "${gridmap_limit}"}, MapCopy{"obstacle_expanded_map", "oe_map_snap"}));
}

// The whole home counts as one room.
Node walls()
{
    return DoWhile(open_doors(),
                   SequenceStar(account_motion("Followwall"),
                                DoWhile(key::current_area_val.kept(),
                                        SequenceStar(key::gridmap_limit.copy_to(key::current_subregion),
                                                     key::current_area_val.set_typed(125),
                                                     increase_coverage(row(UpdateSegmentMap{"true"}))))));
}

}  // namespace

// Covers the home by lines first, room by room if asked for, and by its walls afterwards.
TREE(RecursiveAreaCleaning)
{
    return two_phases(lines(), walls());
}
