#include "robot/services/maps.h"

#include <utility>

#include "robot/services/leaf_functions.h"

namespace vemra::robot {

MapService::MapService(BT::Blackboard& blackboard, Report report, const Config& config)
    : blackboard_(blackboard), report_(std::move(report)), config_(config)
{}

void MapService::presetKeys()
{
    blackboard_.set("RobotReuseMapEnable", config_.reuse_enabled ? 1 : 0);
    blackboard_.set("reuseinfo_fullfilename", "reuse_info");
    blackboard_.set("map_id_with_order", "1");
    if (config_.stored)
        blackboard_.set("reuse_map_id", 1);
}

void MapService::cleanComplete()
{
    if (blackboard_.erase("check_map_flag"))
    {
        blackboard_.set("slam_save_map_reta", config_.check_result);
        return;
    }
    const bool clear = blackboard_.erase("clear_map_flag");
    if (clear)
        config_.stored = false;
    slam_running_ = false;
    slam_resumable_ = false;
    report_("custom", clear ? "map cleared" : "map closed", {{"what", "map"}, {"cleared", clear}});
}

void MapService::install(leaf::LeafHost& host)
{
    const auto succeed = [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; };
    // Keys that belong to the map stand before the first of its leaves asks for them.
    presetKeys();
    host.action("LoadReuseInfo", [this](BT::TreeNode&) { return passed(config_.stored); });
    host.action("SaveReuseInfo", [this](BT::TreeNode&) {
        config_.stored = config_.stored || slam_resumable_;
        return BT::NodeStatus::SUCCESS;
    });
    host.condition("IsReuseInfoExist", [this](BT::TreeNode&) { return passed(config_.stored); });
    host.action("GetSegmentMap", [this](BT::TreeNode&) { return passed(config_.stored && config_.segment_map); });
    host.action("CheckSegmentMap", [this](BT::TreeNode&) { return passed(config_.segments_ok); });
    host.action("ResetReuseInfo", [this](BT::TreeNode&) {
        config_.stored = false;
        blackboard_.erase("reuse_map_id");
        return BT::NodeStatus::SUCCESS;
    });
    for (const char* leaf : {"ResetReuseInfoTrans", "UpdateReuseAppMap", "BlackboardFunc", "ResetMap",
                             "GenerateCleaningLog", "PresetBlackboard", "RestoreCaCt", "CleanInfoSave"})
        host.action(leaf, succeed);
    installSlam(host);
}

void MapService::installSlam(leaf::LeafHost& host)
{
    host.action("SlamCleanComplete", [this](BT::TreeNode&) {
        cleanComplete();
        return BT::NodeStatus::SUCCESS;
    });
    host.action("SlamStart", [this](BT::TreeNode&) {
        slam_running_ = true;
        slam_resumable_ = true;
        return BT::NodeStatus::SUCCESS;
    });
    host.action("SlamPause", [this](BT::TreeNode&) {
        slam_running_ = false;
        return BT::NodeStatus::SUCCESS;
    });
    host.condition("SlamIsResumable", [this](BT::TreeNode&) { return passed(slam_resumable_); });
    host.action("ChargingReloc", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
}

}  // namespace vemra::robot
