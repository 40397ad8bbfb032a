#include "robot/services/maps/maps.h"

#include <fmt/format.h>

#include <array>
#include <memory>
#include <string>
#include <utility>

#include "robot/planning/rooms.h"
#include "robot/services/blackboard/number_list.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/maps/forbidden.h"

namespace vemra::robot {
namespace {

constexpr std::array kWallKeys = {"virtual_wall_lines", "virtual_wall_rects", "virtual_wall_mop_rects",
                                  "polygon_virtual_walls"};

}  // namespace

MapService::MapService(const RobotParts& parts, RobotMap& map, MapStore& store, const ScenarioStart& start)
    : parts_(parts), map_(map), store_(store), check_result_(start.map.check)
{
    store_.present = start.map.present;
    store_.in_use = start.map.present;
    if (start.map.present && start.map.known)
        keep(true);
}

// The floor as it is known now. Rooms stay as they were divided, so that their numbers go on to mean the
// same, until a new map is begun.
void MapService::keep(bool anew)
{
    const Grid<CellState> floor = map_.occupancy().states(map_.occupancy().window());
    if (anew || !store_.map) {
        store_.map.emplace();
        store_.map->rooms = std::make_shared<const RoomGrid>(divideIntoRooms(floor));
    }
    store_.map->floor = floor;
    if (parts_.state.contacts.touching())
        store_.map->docked = map_.pose();
    keepWalls();
    store_.present = true;
    store_.in_use = true;
}

void MapService::keepWalls()
{
    for (const char* key : kWallKeys)
        walls_[key] = numbersOf(parts_.blackboard, key);
}

// What the app has put down since is newer than what is stored.
void MapService::showWalls()
{
    for (const auto& [key, stored] : walls_)
        if (!parts_.blackboard.contains(key) && !stored.empty())
            parts_.blackboard.set(key, stored);
    keepWalls();
    map_.setVirtualWalls(virtualWallsOf(parts_.blackboard));
}

void MapService::forget()
{
    store_.present = false;
    store_.in_use = false;
    store_.map.reset();
    walls_.clear();
    for (const char* key : {"reuse_map_id", "segment_map", "segments_layer"})
        parts_.blackboard.erase(key);
}

// A task begins on the stored map: its walls are known.
void MapService::takeUp()
{
    if (store_.map && store_.in_use)
        map_.occupancy().load(store_.map->floor);
}

void MapService::showRooms()
{
    if (!store_.map)
        return;
    parts_.blackboard.set("reuse_map_id", 1);
    parts_.blackboard.set("segment_map", store_.map->rooms);
    parts_.blackboard.set("segments_layer", store_.map->rooms);
    std::string told;
    for (const RoomShape& room : roomsOf(*store_.map->rooms))
        told += fmt::format("{}{} at {:.1f}, {:.1f} m ({:.1f} m2)", told.empty() ? "" : "; ", room.number,
                            room.middle.x / 1e3, room.middle.y / 1e3,
                            static_cast<double>(room.cells) * kCellMm * kCellMm / 1e6);
    parts_.report(event::Note{"rooms of the stored map: " + told, "rooms"});
}

void MapService::presetKeys()
{
    parts_.blackboard.set("RobotReuseMapEnable", 1);
    parts_.blackboard.set("reuseinfo_fullfilename", "reuse_info");
    parts_.blackboard.set("map_id_with_order", "1");
    if (store_.present)
        parts_.blackboard.set("reuse_map_id", 1);
}

void MapService::cleanComplete()
{
    if (parts_.blackboard.erase("check_map_flag")) {
        parts_.blackboard.set("slam_save_map_reta", check_result_);
        return;
    }
    const bool clear = parts_.blackboard.erase("clear_map_flag");
    // A spot is no home.
    std::string mode;
    parts_.blackboard.get("last_clean_mode", mode);
    drawn_ = store_.slam_holds && !clear && mode != "PartCleanMode";
    if (clear)
        forget();
    store_.slam_holds = false;
    parts_.report(event::Note{clear ? "map cleared" : "map closed", "map", {{"cleared", clear}}});
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
    installStore(host);
    for (const char* leaf : {"CheckSegmentMap", "ResetReuseInfoTrans", "UpdateReuseAppMap", "BlackboardFunc",
                             "MultMapRecover", "RestoreCaCt", "CleanInfoSave"})
        host.action(leaf, succeed);
    // What a task starts from.
    host.action("PresetBlackboard", [this](BT::TreeNode&) {
        for (const char* key : {"subregion_fixed", "subregion_offset_grid", "subregion_offset_x_fix",
                                "subregion_offset_y_fix", "mop_dirty"})
            parts_.blackboard.erase(key);
        for (const char* account : {"clean_time_for_app", "follow_wall_frames_consumption"})
            parts_.blackboard.set(account, 0);
        return BT::NodeStatus::SUCCESS;
    });
    host.condition("NeedToMergeRegion", [this](BT::TreeNode& node) {
        const auto order = modeFromText(textOf(node, "mode_order"));
        return passed(order && takesOrder(*order));
    });
    host.action("SlamCleanComplete", [this](BT::TreeNode&) {
        cleanComplete();
        return BT::NodeStatus::SUCCESS;
    });
    host.action("ChargingReloc", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
}

void MapService::installStore(leaf::LeafHost& host)
{
    host.action("LoadReuseInfo", [this](BT::TreeNode&) {
        takeUp();
        return passed(store_.present);
    });
    host.action("SaveReuseInfo", [this](BT::TreeNode&) {
        if (drawn_) {
            drawn_ = false;
            keep(!store_.in_use);
            showRooms();
        }
        return BT::NodeStatus::SUCCESS;
    });
    host.condition("IsReuseInfoExist", [this](BT::TreeNode&) { return passed(store_.present); });
    host.action("GetSegmentMap", [this](BT::TreeNode&) {
        showRooms();
        return passed(store_.present);
    });
    host.action("ResetReuseInfo", [this](BT::TreeNode&) {
        forget();
        return BT::NodeStatus::SUCCESS;
    });
    // The task is done on the stored map. 1: it has rooms; 2: it has none.
    host.action("GetReuseInfoInitValue", [this](BT::TreeNode& node) {
        const std::string key = textOf(node, "key");
        if (key.empty() || !store_.present) {
            return BT::NodeStatus::FAILURE;
        }
        takeUp();
        node.blackboard()->set(key, store_.map && !roomsOf(*store_.map->rooms).empty() ? 1 : 2);
        return BT::NodeStatus::SUCCESS;
    });
    host.action("SetVirtualWallFromReuse", [this](BT::TreeNode&) {
        showWalls();
        return BT::NodeStatus::SUCCESS;
    });
    host.action("PresetBlackboardForMaps", [this](BT::TreeNode&) {
        parts_.blackboard.erase("order_map");
        if (parts_.blackboard.contains("segment_map"))
            parts_.blackboard.set("segment_map_info", "segment_map");
        return BT::NodeStatus::SUCCESS;
    });
}

}  // namespace vemra::robot
