// A change of mode, and the choice of the tree that the mode has.

#include "trees/supervisor/robot_node/mode_runner.h"

#include <utility>

#include "trees/idioms.h"
#include "trees/supervisor/robot_node/station.h"

namespace vemra::trees::robot_node {

namespace {

// --- a change of mode ---------------------------------------------------------------------------

// A robot that goes out to clean leaves the dust station at rest.
Node stop_dust_work()
{
    return SequenceStar(
        in_any_mode(kCleaningModes, "RemoteCtrlMode"), key::dust_delay_end.flag(),
        erase(key::dust_handle, key::breakpoint_moved, key::APPDustHandle, key::Have_dust_task),
        SetDustLight{"STATTON_LED_WhiteTwinkleSlow"},
        DustContrlSet{.dust_status = "DUST_QUIT", .time_set = "0"});
}

// The like for a wash station.
Node stop_wash_work()
{
    return FallbackStar(
        SequenceStar(in_any_mode(kCleaningModes), SaySomething{"Mode changed wash init..."},
                     erase(key::wash_dry_end, key::hand_wash_flag, key::breakpoint_moved),
                     SetWashStatus{"WASH_IDLE"},
                     erase(key::mop_clean_task_end, key::wash_dry_pause_falg, key::dry_procssing)),
        SequenceStar(in_any_mode("RemoteCtrlMode", "OtaModeMode"), wash_init_subtree()));
}

Node mode_changed_handle()
{
    return SubTree("ModeChangedHandle", IfThenElse(switched_on(), stop_dust_work(), stop_wash_work()));
}

// `task_state` and `task_type` stay as they are: by them the new mode knows whether it takes up a task.
Node clean_up_after_change()
{
    return SequenceStar(optionally(switched_on(), InDockField{}, key::shutdown_cliff.flag()),

                        erase(key::on_charger_pose, key::reuse_from_charger, key::start_from_charger_yaw_deg,
                              key::disable_reuse_reloc_once, key::mapping_no_reloc,
                              key::disable_reuse_reloc_music, key::mica_on_charger, key::draw_area_reloc_flag,
                              key::auto_mode_reloc_flag, key::select_area_reloc_flag, key::keep_clean_area,
                              key::reset_map_remain_submap, key::stop_charging_flag),

                        ForceSuccess(mode_changed_handle()), key::map_loading.erase(),
                        Loop("5", SaySomething{"Robot Mode Changed!"}));
}

// --- the tree of the mode -----------------------------------------------------------------------

Node enter(const char* path)
{
    return SubtreeCondition{.subtree_file_path = path, .expand_in_logger = "true"};
}

// The first condition that holds has its tree run, and cuts off any that stands below it.
Node mode_schedule()
{
    // Last choice first: each stands in the else-branch of the one before it.
    Node choice = ThrowErrMSG{"Err!!!!!!!  No This Mode"};
    const auto or_before_it = [&choice](const Node& condition, const char* path) {
        choice = IfThenElse(condition, enter(path), std::move(choice));
    };
    or_before_it(in_mode("FastMapBuildMode"), "MapBuildModeIndex.xml");
    or_before_it(in_mode("SelectPointCleanMode"), "PointSelectModeIndex");
    or_before_it(in_mode("DrawAreaCleanMode"), "DrawAreaModeIndex");
    or_before_it(in_mode("SelectAreaCleanMode"), "AreaSelectModeIndex");
    or_before_it(NeedToEnterStandbyMode{}, "StandbyModeIndex");
    or_before_it(NeedToEnterChargingMode{}, "StopChargingIndex");
    or_before_it(NeedToEnterPartCleanMode{}, "PartCleanModeIndex.xml");
    or_before_it(NeedToEnterFactoryRunMode{}, "FactoryRunModeIndex");
    or_before_it(NeedToEnterRemoteCtrlMode{}, "RemoteCtrlModeIndex");
    or_before_it(NeedToEnterFactoryMode{}, "FactoryModeIndex");
    or_before_it(NeedToEnterWIFISetMode{}, "SetWIFIModeIndex");
    or_before_it(NeedToEnterFollowWallMode{}, "FollowWallModeIndex");
    or_before_it(NeedToEnterErrorReportMode{}, "ErrorReportIndex");
    or_before_it(NeedToEnterBackHomeMode{}, "BackHomeIndex");
    or_before_it(NeedToEnterAutoMode{}, "AutoModeIndex");
    or_before_it(NeedToEnterStopMode{}, "StopModeIndex");
    or_before_it(NeedToEnterSleepMode{}, "SleepModeDealIndex");
    or_before_it(NeedToEnterOTAMode{}, "OTAModeDealIndex");
    or_before_it(NeedToEnterPowerOffMode{}, "PowerOffModeIndex");
    return SubTree("Mode Schedule and  Condition Initial", std::move(choice));
}

// Music is played from here alone: none during a change of mode or a self test.
Node mode_and_its_frame()
{
    return DoWhile(GetMcuTime{}, RobotMusicPlay{"${RobotMusic}"}, WIFIState_Send{}, UpdateRobotBoxState{},
                   box_check(), Loop("-1", mode_schedule()));
}

}  // namespace

Node run_mode()
{
    return keep_choosing(
        {{DoesRobotModeChanged{}, clean_up_after_change()}, {NeedToEnterRobotSelfTestMode{}, self_test()}},
        mode_and_its_frame());
}

}  // namespace vemra::trees::robot_node
