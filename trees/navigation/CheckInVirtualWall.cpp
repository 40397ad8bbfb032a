#include "trees/idioms.h"
#include "trees/navigation/goal.h"

namespace {

// The long pause gives the report time to be taken before the task goes on. At the start of a cleaning the
// report also tells the search for the charger to leave the walls out of account.
Node set_trapped()
{
    return SubTree(
        "SetTrapped",
        IfThenElseStar(
            present("clean_start_vw_check"),
            FallbackStar(
                ForceFailure(SaySomething{"tolvar clean_start_vw_check"}), present("have_trapped_type"),
                SequenceStar(SetBlackboard{"start_vw_trapped", "true"}, set_flag("have_trapped_type"),
                             set_flag("SFC_trapped"), erase("clean_start_vw_check"), Delay{500})),
            FallbackStar(present("have_trapped_type"),
                         SequenceStar(SetBlackboard{"polygon_vw_trapped", "true"},
                                      set_flag("have_trapped_type"), Delay{500}))));
}

// Spot cleaning may stand where it likes.
Node shut_in()
{
    return SequenceStar(erase("out_vw_point"), Inverter(key_is("task_state", "part_cleaning")),
                        PromptInVirtualWall{});
}

// The wall that the robot is to leave must not stop it on its way.
Node walk_to_way_out()
{
    return SequenceStar(
        SetMapDrawMode{.draw_mode = "None"},
        DoWhile(TemporarilyDisableSensor{.lock_status = "false", .sensor = "PolygonVirtualWall"},
                SubtreeCondition{"NaviOnePointProc.xml"}));
}

// Without a way out named, the robot stands outside.
Node leave_virtual_wall()
{
    return FallbackStar(
        Inverter(SequenceStar(present("out_vw_point"),
                              BlackboardCopy{.source = "out_vw_point", .target = "navi_target_point"})),
        goal_within("25"),
        IfThenElseStar(
            walk_to_way_out(), AlwaysSuccess{},
            IfThenElseStar(PromptInVirtualWall{}, SequenceStar(Delay{50}, set_trapped()), AlwaysSuccess{})));
}

}  // namespace

// Finds out whether the robot stands inside a virtual wall, leads it out, and reports a trap when there is no
// way out or the way does not lead outside.
TREE(CheckInVirtualWall)
{
    return DoWhile(StackBlackboard{"out_vw_point"},
                   IfThenElseStar(shut_in(), set_trapped(), leave_virtual_wall()));
}
