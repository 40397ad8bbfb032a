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
    return optionally(switched_on(), SetBlackboard{"check_map_flag", "true"}, SlamCleanComplete{},
                      present("slam_save_map_reta"),
                      FallbackStar(IsAGreaterThanBFloat{.A = "${slam_save_map_reta}", .B = "0"},
                                   IsAGreaterThanBFloat{.A = "0", .B = "${slam_save_map_reta}"},
                                   Inverter(IsAGreaterThanBFloat{.A = "1", .B = "${slam_save_map_reta}"})),
                      SetBlackboard{"startup_clear_flag", "check_map_id_failed"},
                      Log{"err", "at startup check reuse map_id return failed. clear map."});
}

// The rooms of the stored map. This product does not divide a map anew when they cannot be read.
Node get_rooms()
{
    const Node divide_anew = SequenceStar(
        SetBlackboard{"start_segment_map_using_reuse_map", "true"}, StartSegmentMap{},
        FallbackStar(SequenceStar(GetSegmentMap{"${reuse_map_id}"}, UpdateReuseAppMap{.mode = ""}),
                     SequenceStar(SetBlackboard{"startup_clear_flag", "get_segmap_failed_twice"},
                                  SaySomething{"On startup get segment map failed twice. clear map."})));

    return optionally(
        IsAGreaterThanBInt{.A = "${RobotReuseMapEnable}", .B = "0"}, present("reuse_map_id"),
        FallbackStar(
            GetSegmentMap{"${reuse_map_id}"},
            IfThenElseStar(switched_off(), divide_anew,
                           SequenceStar(SetBlackboard{"startup_clear_flag", "get_segmap_failed"},
                                        SaySomething{"On startup get segment map failed. clear map."}))));
}

// What other services have left to be done at the next load.
template <NodeLike... Steps>
Node on_request(const std::string& key, const char* message, Steps&&... steps)
{
    return optionally(present(key), erase(key), trace(message), std::forward<Steps>(steps)...);
}

// Nothing of a condemned map is kept, and no cleaning log is made for the clearing.
Node clear_condemned_map()
{
    return optionally(present("startup_clear_flag"), SetBlackboard{"clear_map_flag", "true"},
                      SetBlackboard{"CleanCompleteWithoutCleaningLog", "true"},
                      SetBlackboard{"AdvCleanCompleteStart", "true"}, adv_clean_complete_impl(),
                      erase("AdvCleanCompleteEnd"));
}

// --- completion ---------------------------------------------------------------------------------

// An order to clear the map waits until the cleaning log has been made from it, unless no log is wanted.
Node put_off_clearing()
{
    return optionally(present("clear_map_flag"), trace("clear_map_flag is set"),
                      SetBlackboard{"clear_map_after", "true"}, absent("CleanCompleteWithoutCleaningLog"),
                      erase("clear_map_flag"), SetBlackboard{"clear_map_after_log", "true"},
                      trace("clear_map_after_log is set"));
}

Node clear_map()
{
    return SequenceStar(
        trace("clear_map_after begin"),
        optionally(present("clear_map_after_log"), erase("clear_map_after_log"), trace("clear_map real"),
                   SetBlackboard{"clear_map_flag", "true"}, SlamCleanComplete{}),
        erase("clear_map_after"), ResetMap{}, PresetBlackboard{}, ResetReuseInfo{},
        set_flag("clear_blocked_trapped"),
        SetBlackboardWithType{.key = "actively_upload_appmap_once", .type = "int", .value = "1"});
}

}  // namespace

Node map_load()
{
    return SubTree(
        "MapLoad",
        SequenceStar(
            present("Start_Map_Load"), erase("Start_Map_Load"), erase("startup_clear_flag"),
            erase("Draw_Area_Set_Pong"), ResetMap{},

            SetBlackboard{"map_loading", "true"}, ForceSuccess(LoadReuseInfo{"${reuseinfo_fullfilename}"}),
            check_saved_map(), erase("map_loading"), get_rooms(),
            optionally(present("startup_clear_flag"), erase("reuse_map_id")),

            on_request("update_reuse_app_map_startup",
                       "UpdateReuseAppMap at startup with mode load_charger_del_tr",
                       UpdateReuseAppMap{"load_charger_del_tr"}),
            on_request("update_reuse_app_map_mult_map", "UpdateReuseAppMap at startup without mode",
                       UpdateReuseAppMap{.mode = ""},
                       BlackboardFunc{.func_name = "UpdateMultiAppMapsFuc", .para_1 = ""}),
            on_request("save_reuse_info_startup", "SaveReuseInfo at startup", save_reuse_info()),
            on_request("MultmapRecoverDelTrFlag", "UpdateReuseAppMap  if get MultmapRecoverDelTrFlag",
                       UpdateReuseAppMap{"load_charger_del_tr"}),

            clear_condemned_map(), CheckSegmentMap{"${map_id_with_order}"},
            SetBlackboard{"mult_map_req_flag", "true"}));
}

// The work is done beside the mode that asked for it, and outlives that mode. The lock is released here only
// when a load follows; otherwise it holds mode changes back until the watchdog takes it away.
Node adv_clean_complete_impl()
{
    return SubTree(
        "AdvCleanCompleteImpl",
        SequenceStar(RetryUntilSuccesful("-1", present("AdvCleanCompleteStart")),
                     SaySomething{"RobotNode.xml impl wifi"}, erase("AdvCleanCompleteStart"),
                     SetBlackboard{"RobotModeSwitchLock", "true"}, erase("need_back_mode_changed"),
                     erase("clear_map_after"), erase("clear_map_after_log"),

                     put_off_clearing(), SlamCleanComplete{}, GenerateCleaningLog{"${last_clean_mode}"},
                     ResetReuseInfoTrans{}, SetBlackboard{"task_state", "init"},
                     IfThenElseStar(present("clear_map_after"), clear_map(), AlwaysSuccess{}),

                     // The mode that waits for the end goes on from here.
                     SetBlackboard{"AdvCleanCompleteEnd", "true"}, save_reuse_info(),
                     SetBlackboard{"SaveReuseInfoEnd", "true"},
                     FallbackStar(SequenceStar(present("xq6_notupdate_rism"), erase("xq6_notupdate_rism")),
                                  SetBlackboard{"mult_map_req_flag", "true"}),
                     erase("MockCleaningLog"),

                     SequenceStar(present("Load_After_Complete"), SetBlackboard{"Start_Map_Load", "true"},
                                  erase("Load_After_Complete")),
                     erase("RobotModeSwitchLock")));
}

}  // namespace vemra::trees::robot_node
