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
            BoolMatch{"${map_id_in_map_ids}", "true"}),
        GetReuseInfoInitValue{"reuse_cleaning"}, SetBlackboardWithType{"reuse_cleaning", "int", "4"});
}

}  // namespace

// Begins the task on the stored map.
TREE(ReuseRestartCleaning)
{
    return SequenceStar(GetTimeUsInt64{"cleaning_start_time_us"},
                        BlackboardCopy{"current_pose", "initial_pose"}, ResetMap{}, PresetBlackboard{},
                        reset_task({}),

                        decide_on_map(),

                        erase("virtual_wall_temp_flag"), SetVirtualWallFromReuse{},
                        IfThenElseStar(present("pretend_reuse_cleaning_token"),
                                       SequenceStar(erase("pretend_reuse_cleaning_token"),
                                                    SetBlackboard{"pretend_reuse_cleaning", "true"}),
                                       SetBlackboard{"pretend_reuse_cleaning", "false"}),
                        forget_start());
}
