#include "robot/services/coverage/rooms.h"

#include <algorithm>
#include <string>

#include "robot/planning/rooms.h"
#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/blackboard/number_list.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/coverage/run_search.h"
#include "robot/services/maps/grid_maps.h"
#include "robot/services/navigation/goals/navigation_goals.h"

namespace vemra::robot {
namespace {

constexpr char kCurrent[] = "current_area_val";
constexpr char kGoal[] = "navi_target_point";

constexpr double kHalfPointMm = 750;
constexpr double kHalfBesideMm = 1500;
constexpr double kGrownMm = 200;
constexpr double kInRoomMm = 100;
// Another room counts once the robot is so deep in it, for so long.
constexpr double kElsewhereMm = 300;
constexpr std::uint64_t kElsewhereFrames = 50;
constexpr double kSameGoalMm = 300;

bool isTrue(const BT::Blackboard& keys, const char* key)
{
    bool value = false;
    return keys.get(key, value) && value;
}

/// What the app has just sent, else what the task was begun with.
std::vector<double> inputOf(const BT::Blackboard& keys, const char* fresh, const char* taken)
{
    return numbersOf(keys, keys.contains(fresh) ? fresh : taken);
}

}  // namespace

// --- the rooms of a task ------------------------------------------------------------------------

RoomLeaves::Room* RoomLeaves::find(std::uint8_t number)
{
    const auto room =
        std::find_if(rooms_.begin(), rooms_.end(), [number](const Room& r) { return r.number == number; });
    return room == rooms_.end() ? nullptr : &*room;
}

void RoomLeaves::setMap(std::shared_ptr<const RoomGrid> map)
{
    map_ = std::move(map);
    fences_.clear();
}

// Rooms that the task has already keep what is known of them.
BT::NodeStatus RoomLeaves::setList(const std::vector<Room>& wanted)
{
    std::vector<Room> rooms;
    const std::vector<RoomShape> shapes = map_ ? roomsOf(*map_) : std::vector<RoomShape>{};
    for (Room room : wanted) {
        const bool exists = std::any_of(shapes.begin(), shapes.end(),
                                        [&](const RoomShape& shape) { return shape.number == room.number; });
        if (exists) {
            if (const Room* before = find(room.number)) {
                room.reached = before->reached;
                room.mopped = before->mopped;
            }
            rooms.push_back(room);
        }
    }
    rooms_ = std::move(rooms);
    return passed(!rooms_.empty());
}

BT::NodeStatus RoomLeaves::takeStoredMap()
{
    setMap(store_.map ? store_.map->rooms : nullptr);
    if (!map_) {
        return BT::NodeStatus::FAILURE;
    }
    std::vector<Room> all;
    for (const RoomShape& shape : roomsOf(*map_)) {
        all.push_back({.number = shape.number});
    }
    return setList(all);
}

BT::NodeStatus RoomLeaves::takeSelected()
{
    setMap(store_.map ? store_.map->rooms : nullptr);
    std::vector<Room> selected;
    for (const double number :
         inputOf(parts_.blackboard, "Areas_Clean_Set_List_Ping", "Areas_Clean_Set_List")) {
        if (number > kNoRoom && number < kFirstReservedRoom) {
            selected.push_back({.number = static_cast<std::uint8_t>(number), .passes = passes_});
        }
    }
    return setList(selected);
}

BT::NodeStatus RoomLeaves::takeDrawn()
{
    std::vector<double> edges = inputOf(parts_.blackboard, "Draw_Area_Set_Ping", "Draw_Area_Set");
    std::vector<std::pair<std::uint8_t, BoxMm>> boxes;
    if (point_area_) {
        boxes.emplace_back(kPointRoom, *point_area_);
    } else {
        for (std::size_t i = 0; i + 3 < edges.size() && boxes.size() + 1 < kFirstReservedRoom; i += 4) {
            boxes.emplace_back(boxes.size() + 1,
                               BoxMm{{edges[i], edges[i + 1]}, {edges[i + 2], edges[i + 3]}});
        }
    }
    point_area_.reset();
    if (boxes.empty()) {
        return BT::NodeStatus::FAILURE;
    }
    setMap(std::make_shared<const RoomGrid>(drawnRooms(boxes)));
    std::vector<Room> rooms;
    rooms.reserve(boxes.size());
    for (const auto& box : boxes) {
        rooms.push_back({.number = box.first, .passes = passes_});
    }
    return setList(rooms);
}

// A square around the point; not where the robot knows that there is no floor.
BT::NodeStatus RoomLeaves::takePoint()
{
    const std::vector<double> point = inputOf(parts_.blackboard, "Select_Point_Set_Ping", "Select_Point_Set");
    point_area_.reset();
    if (point.size() < 2) {
        return BT::NodeStatus::FAILURE;
    }
    const PointMm place{point[0], point[1]};
    if (ground_.map().known().at(cellAt(place)) == CellState::Occupied) {
        return BT::NodeStatus::FAILURE;
    }
    point_area_ = squareAround(place, kHalfPointMm);
    return BT::NodeStatus::SUCCESS;
}

// --- the room in hand ---------------------------------------------------------------------------

std::uint8_t RoomLeaves::roomAt(PointMm place) const
{
    const std::uint8_t room = map_ ? map_->at(cellAt(place)) : kNoRoom;
    return room == kNoRoom ? kBesideRooms : room;
}

std::optional<std::uint8_t> RoomLeaves::inHand() const
{
    int number = 0;
    if (!map_ || !parts_.blackboard.get(kCurrent, number) || number <= 0 || number > kBesideRooms) {
        return std::nullopt;
    }
    return static_cast<std::uint8_t>(number);
}

bool RoomLeaves::near(PointMm place, std::uint8_t room, double within_mm) const
{
    if (roomAt(place) == room) {
        return true;
    }
    const CellIndex middle = cellAt(place);
    const int within = static_cast<int>(within_mm / kCellMm);
    for (int row = -within; row <= within; ++row) {
        for (int column = -within; column <= within; ++column) {
            if (row * row + column * column <= within * within && room != kBesideRooms &&
                map_->at({middle.column + column, middle.row + row}) == room) {
                return true;
            }
        }
    }
    return false;
}

BT::NodeStatus RoomLeaves::takeRoomOfGoal()
{
    const auto goal = pointOf(parts_.blackboard, kGoal);
    if (!map_ || !goal) {
        return BT::NodeStatus::FAILURE;
    }
    const std::uint8_t number = roomAt(*goal);
    parts_.blackboard.set(kCurrent, static_cast<int>(number));
    parts_.blackboard.set("in_new_area", number == kBesideRooms ? "true" : "false");
    parts_.blackboard.set("current_subregion", boxOfRoom(number, *goal));
    return BT::NodeStatus::SUCCESS;
}

// What is cleaned at a time: a room with its borders, or beside the rooms a square around a place.
BoxMm RoomLeaves::boxOfRoom(std::uint8_t number, PointMm place) const
{
    for (const RoomShape& shape : roomsOf(*map_)) {
        if (shape.number == number) {
            const PointMm grown{kGrownMm, kGrownMm};
            return {shape.box.low - grown, shape.box.high + grown};
        }
    }
    return squareAround(place, kHalfBesideMm);
}

const RoomFence& RoomLeaves::fenceAround(std::uint8_t room, bool within)
{
    const auto [fence, fresh] = fences_.try_emplace(std::pair{room, within});
    if (fresh) {
        fence->second = fenceOf(*map_, room, within);
    }
    return fence->second;
}

BT::NodeStatus RoomLeaves::fence(const BT::TreeNode& node)
{
    const bool within = node.getParam<bool>("in_area").value_or(false);
    if (const auto room = inHand(); room && fenced_ != std::pair{*room, within}) {
        fenced_ = std::pair{*room, within};
        ground_.map().setRoomFence(fenceAround(*room, within));
    }
    return BT::NodeStatus::RUNNING;
}

std::uint8_t RoomLeaves::roomThatIsKept() const
{
    return isTrue(parts_.blackboard, "are_other_areas_closed") ? inHand().value_or(kNoRoom) : kNoRoom;
}

void RoomLeaves::closeOthers(PlanningMap& plan)
{
    const std::uint8_t room = roomThatIsKept();
    if (room == kNoRoom) {
        return;
    }
    const RoomFence& fence = fenceAround(room, false);
    // From without, the rooms are what the way in leads through.
    if (fence.closed.at(cellAt(ground_.map().pose().at)) == 0) {
        closeRooms(plan, fence.closed);
    }
}

void RoomLeaves::update()
{
    // What is swept along a wall counts for all passes, since walls are followed once.
    constexpr int kAllPasses = 255;
    const auto room = inHand();
    int times = 1;
    if (!room || !parts_.blackboard.get("current_clean_times", times)) {
        times = 1;
    }
    CleanedFloor& cleaned = ground_.map().cleaned();
    if (times >= kAllPasses) {
        cleaned.setPass(kAllPasses);
    } else {
        // The trees count on until the room has been cleaned once too often; that pass does not begin.
        const Room* in_hand = room ? find(*room) : nullptr;
        const int pass = std::clamp(times, 1, in_hand == nullptr ? 1 : in_hand->passes);
        cleaned.setPass(static_cast<std::uint8_t>(pass));
        if (pass != pass_) {
            pass_ = pass;
            ground_.offers().forget("line");
        }
    }
    const PointMm at = ground_.map().pose().at;
    const bool elsewhere = room && roomAt(at) != kBesideRooms && !near(at, *room, kElsewhereMm);
    elsewhere_since_ = !elsewhere ? 0 : elsewhere_since_ == 0 ? parts_.state.frame : elsewhere_since_;
}

// --- searches -----------------------------------------------------------------------------------

bool RoomLeaves::isWanted(const Room& room) const
{
    return !isTrue(parts_.blackboard, "use_mop_clean_list") ||
           !isTrue(parts_.blackboard, "avoid_mopped_areas") || !room.mopped;
}

// As the planner would drive them once the robot is in the room, without what of them lies across the border.
std::vector<CleaningRun> RoomLeaves::runsIn(const SearchGround& ground, std::uint8_t room)
{
    if (room == kBesideRooms) {
        return ground_.runsNeverDriven(ground.plan, ground.region, [this](CellIndex cell) {
            return roomAt(centreOf(cell)) == kBesideRooms;
        });
    }
    PlanningMap plan = ground.plan;
    closeRooms(plan, fenceAround(room, true).closed);
    std::vector<CleaningRun> runs = ground_.runsNeverDriven(plan, boxOfRoom(room, {}), {});
    for (CleaningRun& run : runs) {
        const CellIndex step = run.step();
        while (map_->at(run.first) != room && run.first != run.last) {
            run.first = {run.first.column + step.column, run.first.row + step.row};
        }
        while (map_->at(run.last) != room && run.first != run.last) {
            run.last = {run.last.column - step.column, run.last.row - step.row};
        }
    }
    std::erase_if(runs, [&](const CleaningRun& run) { return map_->at(run.first) != room; });
    return runs;
}

std::optional<GridPath> RoomLeaves::placeIn(const SearchGround& ground,
                                            const std::vector<std::uint8_t>& rooms)
{
    std::vector<CleaningRun> runs;
    for (const std::uint8_t room : rooms) {
        const std::vector<CleaningRun> more = runsIn(ground, room);
        runs.insert(runs.end(), more.begin(), more.end());
    }
    // A room that is entered for the same floor again and again is given up.
    return wayToNearestRun(ground, std::move(runs), ground_.offers(), [this](const CleaningRun& run) {
        return ground_.offers().take("floor of a room", centreOf(run.first));
    });
}

// Floor that is left: in the room in hand while the others are shut, else in any room of the task, the
// nearest first unless the task has an order.
std::optional<GridPath> RoomLeaves::nextPlace(const SearchGround& ground)
{
    const BT::Blackboard& keys = parts_.blackboard;
    if (!map_) {
        return std::nullopt;
    }
    if (isTrue(keys, "are_other_areas_closed")) {
        const auto room = inHand();
        return room ? placeIn(ground, {*room}) : std::nullopt;
    }
    std::vector<std::uint8_t> wanted;
    for (const Room& room : rooms_) {
        if (isWanted(room)) {
            wanted.push_back(room.number);
        }
    }
    if (!isTrue(keys, "is_ordering_task") && !isTrue(keys, "use_mop_clean_list")) {
        return placeIn(ground, wanted);
    }
    for (const std::uint8_t room : wanted) {
        if (auto way = placeIn(ground, {room})) {
            return way;
        }
    }
    return std::nullopt;
}

std::optional<GridPath> RoomLeaves::unreached(const SearchGround& ground)
{
    for (const Room& room : rooms_) {
        if (room.reached) {
            continue;
        }
        auto way = findNearest(ground.costs, ground.from, [&](CellIndex cell) {
            return ground.plan.at(cell) == Ground::Open && roomAt(centreOf(cell)) == room.number;
        });
        if (way && ground_.offers().take("room", centreOf(way->cells.back()))) {
            return way;
        }
    }
    return std::nullopt;
}

// --- leaves -------------------------------------------------------------------------------------

void RoomLeaves::install(leaf::LeafHost& host)
{
    installLists(host);
    installRoom(host);
    installTests(host);
}

void RoomLeaves::installLists(leaf::LeafHost& host)
{
    host.action("SetAutomodeCleaningArea", [this](BT::TreeNode&) { return takeStoredMap(); });
    host.action("SetSelectAreaCleanList", [this](BT::TreeNode&) { return takeSelected(); });
    host.action("SetPointCleaningArea", [this](BT::TreeNode&) { return takePoint(); });
    host.action("SetDrawAreaSegmentMap", [this](BT::TreeNode&) { return takeDrawn(); });
    // A room that was mopped goes behind those that were not.
    host.action("SearchPartitionTargetArea", [this](BT::TreeNode&) {
        int last = 0;
        if (parts_.blackboard.get("last_mopped_area_val", last)) {
            if (Room* room = find(static_cast<std::uint8_t>(last))) {
                room->mopped = true;
            }
        }
        std::stable_partition(rooms_.begin(), rooms_.end(), [](const Room& room) { return !room.mopped; });
        return passed(!rooms_.empty());
    });
    host.action("SearchUntriedArea", [this](BT::TreeNode& node) {
        const auto threshold = node.getParam<int>("area_threshold");
        if (!threshold) {
            return BT::NodeStatus::FAILURE;
        }
        const PlanningMap plan = ground_.plan();
        std::size_t left = 0;
        for (const CleaningRun& run : ground_.runsLeft(plan, std::nullopt, std::nullopt)) {
            left += static_cast<std::size_t>(kRowsPerLine) *
                    static_cast<std::size_t>(std::max(std::abs(run.last.column - run.first.column),
                                                      std::abs(run.last.row - run.first.row)) +
                                             1);
        }
        return passed(left >= static_cast<std::size_t>(std::max(1, *threshold)));
    });
}

void RoomLeaves::installRoom(leaf::LeafHost& host)
{
    host.action("SetCurrentArea", [this](BT::TreeNode&) { return takeRoomOfGoal(); });
    host.action("SetAreaReached", [this](BT::TreeNode&) {
        if (const auto number = inHand()) {
            if (Room* room = find(*number)) {
                room->reached = true;
            }
        }
        return BT::NodeStatus::SUCCESS;
    });
    host.builder("UpdateSegmentMap",
                 RunningAction::builder([this](BT::TreeNode& node) { return fence(node); },
                                        [this] {
                                            fenced_.reset();
                                            ground_.map().setRoomFence(std::nullopt);
                                        }));
}

void RoomLeaves::installTests(leaf::LeafHost& host)
{
    const auto inRoom = [this](double within_mm) {
        const auto room = inHand();
        return room && near(ground_.map().pose().at, *room, within_mm);
    };
    host.condition("InCurrentDomain", [inRoom](BT::TreeNode&) { return passed(inRoom(kInRoomMm)); });
    // A crossing into the room ends as soon as the robot is in it; one within the room does not.
    host.condition("InCurrentArea", [this, inRoom](BT::TreeNode&) {
        const auto from = pointOf(parts_.blackboard, "bridge_from_point");
        return passed(inRoom(0) && from && !near(*from, *inHand(), kInRoomMm));
    });
    host.condition("ExceedMaxTimes", [this](BT::TreeNode&) {
        int times = 0;
        const auto number = inHand();
        const Room* room = number ? find(*number) : nullptr;
        return passed(!parts_.blackboard.get("current_clean_times", times) ||
                      times > (room == nullptr ? 1 : room->passes));
    });
    host.condition("TrappedInOtherArea", [this](BT::TreeNode&) {
        return passed(elsewhere_since_ != 0 && parts_.state.frame >= elsewhere_since_ + kElsewhereFrames);
    });
    host.condition("TrappedInSth", [this](BT::TreeNode& node) {
        const auto number = node.getParam<int>("value");
        return passed(map_ && number && roomAt(ground_.map().pose().at) == *number);
    });
    host.condition("CheckSuccessiveNavigation", [this](BT::TreeNode&) {
        const auto goal = pointOf(parts_.blackboard, kGoal);
        const bool again = goal && driven_to_ && distance(*goal, *driven_to_) <= kSameGoalMm;
        driven_to_ = goal;
        return passed(again);
    });
    host.condition("CurrentAreaNeedsFollowwall", [this](BT::TreeNode&) {
        const PlanningMap plan = ground_.plan();
        const auto room = inHand();
        const CellWindow& window = plan.window();
        for (std::size_t i = 0; room && i < window.cells(); ++i) {
            const CellIndex cell = window.cellOf(i);
            if (ground_.map().occupancy().at(cell) == CellState::Occupied &&
                !ground_.map().tracedWalls().isTraced(cell) && near(centreOf(cell), *room, kInRoomMm)) {
                return BT::NodeStatus::SUCCESS;
            }
        }
        return BT::NodeStatus::FAILURE;
    });
}

}  // namespace vemra::robot
