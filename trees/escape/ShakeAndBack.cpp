#include "trees/idioms.h"

namespace {

// Ten centimetres are enough to be off the contacts; the label still tells of the thirty it once was.
Node back_off_the_contacts()
{
    return ForceSuccess(
        Frameout(200, Named("Back30cm", Sequence(near(key::back_origin_point, 100), GoBackwards{}))));
}

// Straight away from the dock, whose field must not turn the robot back here.
Node drive_out_of_the_field()
{
    return ForceSuccess(without_sensor(
        "DockField", FallbackStar(Sequence(SubtreeCondition{"Escape.xml"},
                                           Inverter(SensorCheckBumped{.out_bump_dir = "bump_dir"}),
                                           Frameout(150, OpenCloseMove{.left_mm_s = 120, .right_mm_s = 120})),
                                  SubtreeCondition{"Back2cm.xml"})));
}

}  // namespace

// Leaves the dock: back off the contacts, and where the robot still stands in the dock's field, turn the back
// on it, drive out, and turn round to face it again. No tree runs it at present.
TREE(ShakeAndBack)
{
    return ForceSuccess(Named(
        "ShakeAndBack",
        SequenceStar(Delay{20}, key::current_pose.copy_to(key::back_origin_point),
                     key::is_go_backword.set("true"), SetMapDrawMode{.draw_mode = "None"},
                     back_off_the_contacts(), InDockField{}, guarded_turn(-180, 60), drive_out_of_the_field(),
                     SetMapDrawMode{.draw_mode = "None"}, guarded_turn(180, 60))));
}
