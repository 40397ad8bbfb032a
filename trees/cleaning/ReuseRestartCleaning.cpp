#include "trees/cleaning/restart.h"

namespace {

// 1 is a stored map with rooms; 4 says that the map in use is none of the stored ones.
Node decide_on_map()
{
    return IfThenElseStar(
        SequenceStar(
            IfThenElseStar(
                SlamIsResumable{}, trace("ReuseRestartCleaning map_id_in_map_ids = ${map_id_in_map_ids}"),
                ForceFailure(Log{"err",
                                 "ReuseRestartCleaning while slam is not resumable. map_id_in_map_ids = "
                                 "${map_id_in_map_ids}"})),
            key::map_id_in_map_ids.holds("true")),
        GetReuseInfoInitValue{"reuse_cleaning"}, key::reuse_cleaning.set_typed(4));
}

}  // namespace

// Begins the task on the stored map.
TREE(ReuseRestartCleaning)
{
    return SequenceStar(
        GetTimeUsInt64{"cleaning_start_time_us"}, key::current_pose.copy_to(key::initial_pose), ResetMap{},
        PresetBlackboard{}, reset_task({}),

        decide_on_map(),

        key::virtual_wall_temp_flag.erase(), SetVirtualWallFromReuse{},
        IfThenElseStar(
            key::pretend_reuse_cleaning_token.present(),
            SequenceStar(key::pretend_reuse_cleaning_token.erase(), key::pretend_reuse_cleaning.set("true")),
            key::pretend_reuse_cleaning.set("false")),
        forget_start());
}
