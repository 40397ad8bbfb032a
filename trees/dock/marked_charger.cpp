#include "trees/dock/marked_charger.h"

namespace vemra::trees {

Node walk_to_marked_charger()
{
    return SubTree(
        "NavigateNoneStop",
        SequenceStar(snap_to_track("${navi_target_point}"),
                     ForceSuccess(FallbackStar(search_known_floor(),
                                               SequenceStar(only_polygon_wall_bars(search_known_floor()),
                                                            report_barred_by_wall()))),
                     walk_to_dock({.last_search = "Origin"}), goal_within("150"),
                     when(switched_off(), key::charger_type.set_typed(1), face_dock())));
}

}  // namespace vemra::trees
