#include "trees/coverage/shared.h"

#include "trees/conditions.h"

namespace vemra::trees {

Node prove_way()
{
    return DoWhile(
        TemporarilyDisableSensor{.lock_status = "true", .sensor = "LaserTofPointcloud"},
        StackBlackboard{"ignore_pointcloud_during_escaping"}, draw_locked("BlockOnly"),
        SequenceStar(SetBlackboard{"ignore_pointcloud_during_escaping", "true"}, drive_or_follow_walls()));
}

Node report_clean_blocked()
{
    return unless(present("have_trapped_type"), ValidateAllBridges{}, set_flag("clean_vw_blocked"),
                  set_flag("have_trapped_type"), Delay{50});
}

Node find_second_chance(const Node& worth_the_trip)
{
    return SequenceStar(
        RetryUntilSuccesful(-1, SequenceStar(erase("SlamRetry_find_none"),
                                             FallbackStar(search_map("SlamRetry"),
                                                          SetBlackboard{"SlamRetry_find_none", "true"}),
                                             FallbackStar(present("SlamRetry_find_none"), worth_the_trip))),
        absent("SlamRetry_find_none"));
}

}  // namespace vemra::trees
