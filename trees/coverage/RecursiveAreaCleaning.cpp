#include "trees/conditions.h"
#include "trees/coverage/two_phases.h"

namespace {

Node lines_by_rooms()
{
    return DoWhile(ConditionTimerFrames{.frames_out_key = "automode_frames_consumption",
                                        .start_from = "${automode_frames_consumption}"},
                   StackBlackboard{"skip_origin"},
                   SequenceStar(set_flag("skip_origin"), SetBlackboard{"zone_reached", "true"},
                                SubtreeCondition{"CleanSelectedAreas"}));
}

Node lines()
{
    return DoWhile(
        open_doors(),
        SequenceStar(account_motion("Gong"),
                     FallbackStar(key_is("gong_complete", "false"), CurrentAreaNeedsFollowwall{}),
                     IfThenElseStar(present("enable_overall_follow_wall"), lines_by_rooms(),
                                    SubtreeCondition{"AutoMode_FollowGong"}),
                     SetBlackboard{"gong_complete", "true"}, SetBlackboard{"gong_complete_confirm", "true"},
                     when(all_passes_done(), SetBlackboardWithType{"current_clean_times", "int", "1"}),
                     MakeMap{.roi = "${gridmap_limit}"}, MapCopy{"obstacle_expanded_map", "oe_map_snap"}));
}

// The whole home counts as one room.
Node walls()
{
    return DoWhile(open_doors(),
                   SequenceStar(ForceSuccess(all_passes_done()), account_motion("Followwall"),
                                DoWhile(StackBlackboard{"current_area_val"},
                                        SequenceStar(BlackboardCopy{"gridmap_limit", "current_subregion"},
                                                     SetBlackboardWithType{"current_area_val", "int", "125"},
                                                     increase_coverage(row(UpdateSegmentMap{"true"}))))));
}

}  // namespace

// Covers the home by lines first, room by room if asked for, and by its walls afterwards.
TREE(RecursiveAreaCleaning)
{
    return two_phases(lines(), walls());
}
