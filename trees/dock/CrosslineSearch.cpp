#include "trees/dock/walks.h"

namespace {

Nodes walk_arm(const char* offset_mm)
{
    return row(
        CoordOffset{
            .base_point = "${crossline_center}", .offset_mm = offset_mm, .out_point = "navi_target_point"},
        ForceSuccess(SubtreeCondition{"NaviOnePointProc"}), SetMapDrawMode{.draw_mode = "None"},
        SubtreeCondition{"SearchForCharger_lds.xml"});
}

// The arms across begin anew from where the robot got back to.
Nodes back_to_center()
{
    return row(key::crossline_center.copy_to(key::navi_target_point),
               ForceSuccess(SubtreeCondition{"NaviOnePointProc"}),
               key::current_coord.copy_to(key::crossline_center));
}

}  // namespace

// Walks the four arms of a cross and searches for the dock at the end of each.
TREE(CrosslineSearch)
{
    return Fallback(
        SubtreeCondition{"ReadyToSearchForCharger.xml"},
        SequenceStar(key::current_coord.copy_to(key::crossline_center),
                     FallbackStar(SequenceStar(SetMapDrawMode{.draw_mode = "None"}, walk_arm("1000;0")),
                                  SequenceStar(walk_arm("-1000;0")),
                                  SequenceStar(back_to_center(), walk_arm("0;1000")),
                                  SequenceStar(walk_arm("0;-1000")))));
}
