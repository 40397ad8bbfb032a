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
            key::clean_start_vw_check.present(),
            FallbackStar(
                ForceFailure(SaySomething{"tolvar clean_start_vw_check"}), key::have_trapped_type.present(),
                SequenceStar(key::start_vw_trapped.set("true"), key::have_trapped_type.flag(),
                             key::SFC_trapped.flag(), key::clean_start_vw_check.erase(), Delay{500})),
            FallbackStar(key::have_trapped_type.present(),
                         SequenceStar(key::polygon_vw_trapped.set("true"), key::have_trapped_type.flag(),
                                      Delay{500}))));
}

// Spot cleaning may stand where it likes.
Node shut_in()
{
    return SequenceStar(key::out_vw_point.erase(), Inverter(key::task_state.is("part_cleaning")),
                        PromptInVirtualWall{});
}

// The wall that the robot is to leave must not stop it on its way.
Node walk_to_way_out()
{
    return SequenceStar(SetMapDrawMode{.draw_mode = "None"},
                        without_sensor("PolygonVirtualWall", SubtreeCondition{"NaviOnePointProc.xml"}));
}

// Without a way out named, the robot stands outside.
Node leave_virtual_wall()
{
    return FallbackStar(Inverter(SequenceStar(key::out_vw_point.present(),
                                              key::out_vw_point.copy_to(key::navi_target_point))),
                        goal_within("25"),
                        choose({{walk_to_way_out(), AlwaysSuccess{}},
                                {PromptInVirtualWall{}, SequenceStar(Delay{50}, set_trapped())}}));
}

}  // namespace

// Finds out whether the robot stands inside a virtual wall, leads it out, and reports a trap when there is no
// way out or the way does not lead outside.
TREE(CheckInVirtualWall)
{
    return DoWhile(key::out_vw_point.kept(), IfThenElseStar(shut_in(), set_trapped(), leave_virtual_wall()));
}
