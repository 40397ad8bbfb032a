#include "trees/coverage/line_start.h"

namespace {

// Away from the line that was left, the limit is the narrower one.
Node narrow_limit()
{
    return FallbackStar(IsPointCloseToLine{.line = "${switch_line_ref_line}",
                                           .point = "${current_coord}",
                                           .threshold_grid = "-1",
                                           .threshold_mm = "150"},
                        key::follow_wall_limit_final.copy_to(key::follow_wall_limit));
}

Node follow_till_limit()
{
    return Sequence(
        SetMapDrawMode{.draw_mode = "Default"},
        Named("GoTillRectLimit", Fallback(CheckCurrentLineBump{.current_line = "${current_line}",
                                                               .gong_vertically = "${gong_vertically}",
                                                               .next_line = "${next_line_to_clean}"},
                                          Inverter(CheckFollowWallRectLimit{}),
                                          Sequence(FollowWallNotLooped{.out_loop_num = ""},
                                                   ForceFailure(SubtreeCondition{"FollowWallProc.xml"})))));
}

}  // namespace

// Follows a wall from one line to the next, within a rectangle.
TREE(SwitchLineFollowWall)
{
    return without_sensor(
        "SubregionBorder",
        Named("FollowWallTillRectLimit", IfThenElseStar(DoWhile(narrow_limit(), follow_till_limit()),
                                                        ForceSuccess(SubtreeCondition{"Back2cm.xml"}),
                                                        ForceFailure(SubtreeCondition{"Back2cm.xml"}))));
}
