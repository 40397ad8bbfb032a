#include "trees/coverage/shared.h"

#include "trees/idioms.h"

namespace vemra::trees {

Node prove_way()
{
    return DoWhile(sensor_held_off("LaserTofPointcloud"), key::ignore_pointcloud_during_escaping.kept(),
                   draw_locked("BlockOnly"),
                   SequenceStar(key::ignore_pointcloud_during_escaping.set("true"), drive_or_follow_walls()));
}

Node report_clean_blocked()
{
    return unless(key::have_trapped_type.present(), ValidateAllBridges{}, key::clean_vw_blocked.flag(),
                  key::have_trapped_type.flag(), Delay{50});
}

Node find_second_chance(const Node& worth_the_trip)
{
    return SequenceStar(
        RetryUntilSuccesful(
            -1, SequenceStar(key::SlamRetry_find_none.erase(),
                             FallbackStar(search_map("SlamRetry"), key::SlamRetry_find_none.set("true")),
                             FallbackStar(key::SlamRetry_find_none.present(), worth_the_trip))),
        key::SlamRetry_find_none.absent());
}

}  // namespace vemra::trees
