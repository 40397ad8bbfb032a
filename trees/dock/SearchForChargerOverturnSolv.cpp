#include "trees/dock/search.h"

namespace {

Nodes copy_marker(const std::string& from, const std::string& to)
{
    return row(BlackboardCopy{"marker_dir" + from, "marker_dir" + to},
               BlackboardCopy{"marker_signal_type" + from, "marker_signal_type" + to},
               BlackboardCopy{"marker_in_dock_field" + from, "marker_in_dock_field" + to});
}

Nodes erase_copies()
{
    return row(erase(key::marker_dir_bak, key::marker_signal_type_bak, key::marker_in_dock_field_bak));
}

}  // namespace

// A fresh direction after the robot has turned too far; the old one comes back where there is none.
TREE(SearchForChargerOverturnSolv)
{
    return SequenceStar(
        key::current_yaw_deg.copy_to(key::turn_around_start), copy_marker("", "_bak"),
        SubtreeCondition{"GoChargingFullRoundTurn"},
        IfThenElseStar(Fallback(marked("None"), marked("Mixed")),
                       ForceFailure(SequenceStar(copy_marker("_bak", ""), erase_copies())),
                       SequenceStar(erase_copies(), key::marker_dir.copy_to(key::turn_target_angle),
                                    SubTree("TurnToTargetAngle",
                                            SequenceStar(SetMapDrawMode{.draw_mode = "None"},
                                                         guarded_turn_to("${turn_target_angle}", "60"))))));
}
