#include "trees/coverage/whole_home.h"

namespace vemra::trees {

Node prove_way_home(const Node& prove)
{
    return SequenceStar(
        find_track_near_origin(),
        IfThenElseStar(search_way_to_origin("1"),
                       IfThenElseStar(way_is_sound(), AlwaysSuccess{}, ForceFailure(prove)),
                       FallbackStar(only_polygon_wall_bars(search_way_to_origin("1")), key::OnElave.flag())));
}

Node parked_wall_check()
{
    return SequenceStar(AlwaysFailure{}, SubtreeCondition{"CheckInVirtualWall.xml"});
}

}  // namespace vemra::trees
