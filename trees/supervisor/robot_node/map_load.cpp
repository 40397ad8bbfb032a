// The saved map: loading and checking it on request, and closing a cleaning task, which stores or clears it.

#include "trees/idioms.h"
#include "trees/supervisor/robot_node/start_up.h"

namespace vemra::trees::robot_node {

namespace {

Node save_reuse_info()
{
    return ForceSuccess(SaveReuseInfo{"${reuseinfo_fullfilename}"});
}

// --- loading ------------------------------------------------------------------------------------

// SLAM answers 0 when it knows the map. Any other answer, fractions included, condemns it.
Node check_saved_map()
{
    return optionally(switched_on(), key::check_map_flag.set("true"), SlamCleanComplete{},
                      key::slam_save_map_reta.present(),
                      FallbackStar(key::slam_save_map_reta.above(0), key::slam_save_map_reta.below(0),
                                   Inverter(key::slam_save_map_reta.below(1))),
                      key::startup_clear_flag.set("check_map_id_failed"),
                      Log{"err", "at startup check reuse map_id return failed. clear map."});
}

// The rooms of the stored map. This product does not divide a map anew when they cannot be read.
Node get_rooms()
{
    const Node divide_anew = SequenceStar(
        key::start_segment_map_using_reuse_map.set("true"), StartSegmentMap{},
        FallbackStar(SequenceStar(GetSegmentMap{"${reuse_map_id}"}, UpdateReuseAppMap{.mode = ""}),
                     SequenceStar(key::startup_clear_flag.set("get_segmap_failed_twice"),
                                  SaySomething{"On startup get segment map failed twice. clear map."})));

    return optionally(
        key::RobotReuseMapEnable.above(0), key::reuse_map_id.present(),
        FallbackStar(
            GetSegmentMap{"${reuse_map_id}"},
            IfThenElseStar(switched_off(), divide_anew,
                           SequenceStar(key::startup_clear_flag.set("get_segmap_failed"),
                                        SaySomething{"On startup get segment map failed. clear map."}))));
}

// What other services have left to be done at the next load.
template <NodeLike... Steps>
Node on_request(const Key& key, const char* message, Steps&&... steps)
{
    return optionally(key.present(), key.erase(), trace(message), std::forward<Steps>(steps)...);
}

// Nothing of a condemned map is kept, and no cleaning log is made for the clearing.
Node clear_condemned_map()
{
    return optionally(key::startup_clear_flag.present(), key::clear_map_flag.set("true"),
                      key::CleanCompleteWithoutCleaningLog.set("true"),
                      key::AdvCleanCompleteStart.set("true"), adv_clean_complete_impl(),
                      key::AdvCleanCompleteEnd.erase());
}

// --- completion ---------------------------------------------------------------------------------

// An order to clear the map waits until the cleaning log has been made from it, unless no log is wanted.
Node put_off_clearing()
{
    return optionally(key::clear_map_flag.present(), trace("clear_map_flag is set"),
                      key::clear_map_after.set("true"), key::CleanCompleteWithoutCleaningLog.absent(),
                      key::clear_map_flag.erase(), key::clear_map_after_log.set("true"),
                      trace("clear_map_after_log is set"));
}

Node clear_map()
{
    return SequenceStar(trace("clear_map_after begin"),
                        optionally(key::clear_map_after_log.take(), trace("clear_map real"),
                                   key::clear_map_flag.set("true"), SlamCleanComplete{}),
                        key::clear_map_after.erase(), ResetMap{}, PresetBlackboard{}, ResetReuseInfo{},
                        key::clear_blocked_trapped.flag(), key::actively_upload_appmap_once.set_typed(1));
}

}  // namespace

Node map_load()
{
    return SubTree(
        "MapLoad",
        SequenceStar(
            key::Start_Map_Load.take(), erase(key::startup_clear_flag, key::Draw_Area_Set_Pong), ResetMap{},

            key::map_loading.set("true"), ForceSuccess(LoadReuseInfo{"${reuseinfo_fullfilename}"}),
            check_saved_map(), key::map_loading.erase(), get_rooms(),
            optionally(key::startup_clear_flag.present(), key::reuse_map_id.erase()),

            on_request(key::update_reuse_app_map_startup,
                       "UpdateReuseAppMap at startup with mode load_charger_del_tr",
                       UpdateReuseAppMap{"load_charger_del_tr"}),
            on_request(key::update_reuse_app_map_mult_map, "UpdateReuseAppMap at startup without mode",
                       UpdateReuseAppMap{.mode = ""},
                       BlackboardFunc{.func_name = "UpdateMultiAppMapsFuc", .para_1 = ""}),
            on_request(key::save_reuse_info_startup, "SaveReuseInfo at startup", save_reuse_info()),
            on_request(key::MultmapRecoverDelTrFlag, "UpdateReuseAppMap  if get MultmapRecoverDelTrFlag",
                       UpdateReuseAppMap{"load_charger_del_tr"}),

            clear_condemned_map(), CheckSegmentMap{"${map_id_with_order}"},
            key::mult_map_req_flag.set("true")));
}

// The work is done beside the mode that asked for it, and outlives that mode. The lock is released here only
// when a load follows; otherwise it holds mode changes back until the watchdog takes it away.
Node adv_clean_complete_impl()
{
    return SubTree(
        "AdvCleanCompleteImpl",
        SequenceStar(
            RetryUntilSuccesful("-1", key::AdvCleanCompleteStart.present()),
            SaySomething{"RobotNode.xml impl wifi"}, key::AdvCleanCompleteStart.erase(),
            key::RobotModeSwitchLock.set("true"),
            erase(key::need_back_mode_changed, key::clear_map_after, key::clear_map_after_log),

            put_off_clearing(), SlamCleanComplete{}, GenerateCleaningLog{"${last_clean_mode}"},
            ResetReuseInfoTrans{}, key::task_state.set("init"),
            when(key::clear_map_after.present(), clear_map()),

            // The mode that waits for the end goes on from here.
            key::AdvCleanCompleteEnd.set("true"), save_reuse_info(), key::SaveReuseInfoEnd.set("true"),
            FallbackStar(SequenceStar(key::xq6_notupdate_rism.take()), key::mult_map_req_flag.set("true")),
            key::MockCleaningLog.erase(),

            SequenceStar(key::Load_After_Complete.present(), key::Start_Map_Load.set("true"),
                         key::Load_After_Complete.erase()),
            key::RobotModeSwitchLock.erase()));
}

}  // namespace vemra::trees::robot_node
