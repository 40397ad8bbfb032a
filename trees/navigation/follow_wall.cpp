#include "trees/navigation/follow_wall.h"

namespace vemra::trees {

Node order_follow(const FollowWallManner& manner)
{
    return SetFollowWallCmd{.ignorebase = manner.ignore_base, .lowspeed = "false", .precise = manner.precise};
}

Node not_looped()
{
    return FollowWallNotLooped{.out_loop_num = ""};
}

Node not_looped(const char* base)
{
    return FollowWallNotLooped{.out_loop_num = "", .base = base};
}

Node follow_wall(const FollowWallManner& manner)
{
    return Sequence(order_follow(manner), SubtreeCondition{"Escape.xml"}, SubtreeCondition{"FollowWallDeal"});
}

Node follow_till_rect_limit(const char* label, const Node& follow)
{
    const SubtreeCondition step_back{"Back2cm.xml"};
    return Named(label, IfThenElseStar(
                            Named("GoTillRectLimit", Fallback(Inverter(CheckFollowWallRectLimit{}), follow)),
                            ForceSuccess(step_back), ForceFailure(step_back)));
}

}  // namespace vemra::trees
