#include "robot/services/maps/maps.h"

#include <utility>

#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {

MapService::MapService(const RobotParts& parts, const ScenarioStart& start)
    : parts_(parts), stored_(start.map.present), check_result_(start.map.check)
{}

void MapService::presetKeys()
{
    parts_.blackboard.set("RobotReuseMapEnable", 1);
    parts_.blackboard.set("reuseinfo_fullfilename", "reuse_info");
    parts_.blackboard.set("map_id_with_order", "1");
    if (stored_)
        parts_.blackboard.set("reuse_map_id", 1);
}

void MapService::cleanComplete()
{
    if (parts_.blackboard.erase("check_map_flag")) {
        parts_.blackboard.set("slam_save_map_reta", check_result_);
        return;
    }
    const bool clear = parts_.blackboard.erase("clear_map_flag");
    if (clear)
        stored_ = false;
    slam_resumable_ = false;
    parts_.report("custom", clear ? "map cleared" : "map closed", {{"what", "map"}, {"cleared", clear}});
}

bool MapService::takesOrder(Mode order) const
{
    const Mode now = parts_.state.modes.current();
    std::string task;
    const bool open_task = parts_.blackboard.get("task_state", task) && task != "init";
    switch (now) {
        case Mode::Charging:
            return true;
        case Mode::Standby:
        case Mode::Sleep:
        case Mode::PauseAndStop:
        case Mode::ErrRepot:
            return !open_task;
        default:
            return now == order;
    }
}

void MapService::install(leaf::LeafHost& host)
{
    const auto succeed = [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; };
    // Keys that belong to the map stand before the first of its leaves asks for them.
    presetKeys();
    host.action("LoadReuseInfo", [this](BT::TreeNode&) { return passed(stored_); });
    host.action("SaveReuseInfo", [this](BT::TreeNode&) {
        stored_ = stored_ || slam_resumable_;
        return BT::NodeStatus::SUCCESS;
    });
    host.condition("IsReuseInfoExist", [this](BT::TreeNode&) { return passed(stored_); });
    host.action("GetSegmentMap", [this](BT::TreeNode&) { return passed(stored_); });
    host.action("ResetReuseInfo", [this](BT::TreeNode&) {
        stored_ = false;
        parts_.blackboard.erase("reuse_map_id");
        return BT::NodeStatus::SUCCESS;
    });
    for (const char* leaf : {"CheckSegmentMap", "ResetReuseInfoTrans", "UpdateReuseAppMap", "BlackboardFunc",
                             "MultMapRecover", "GenerateCleaningLog", "RestoreCaCt", "CleanInfoSave"})
        host.action(leaf, succeed);
    // What a task starts from.
    host.action("PresetBlackboard", [this](BT::TreeNode&) {
        for (const char* key : {"subregion_fixed", "subregion_offset_grid", "subregion_offset_x_fix",
                                "subregion_offset_y_fix", "mop_dirty"})
            parts_.blackboard.erase(key);
        parts_.blackboard.set("clean_time_for_app", 0);
        return BT::NodeStatus::SUCCESS;
    });
    host.condition("NeedToMergeRegion", [this](BT::TreeNode& node) {
        const auto order = modeFromText(textOf(node, "mode_order"));
        return passed(order && takesOrder(*order));
    });
    installSlam(host);
}

void MapService::installSlam(leaf::LeafHost& host)
{
    host.action("SlamCleanComplete", [this](BT::TreeNode&) {
        cleanComplete();
        return BT::NodeStatus::SUCCESS;
    });
    host.action("SlamStart", [this](BT::TreeNode&) {
        slam_resumable_ = true;
        return BT::NodeStatus::SUCCESS;
    });
    host.action("SlamPause", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
    host.condition("SlamIsResumable", [this](BT::TreeNode&) { return passed(slam_resumable_); });
    host.action("ChargingReloc", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
}

}  // namespace vemra::robot
